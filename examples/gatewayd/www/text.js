// The page's language. English is written where it is used, and in the schemas; a table leads from
// an English text to one of another language. What a table lacks stays English.
import { german } from "./german.js";
import { about } from "./german_about.js";

const TABLES = { en: {}, de: { ...german, ...about } };
const KEPT = "gatewayd-language";

export const languages = { en: "English", de: "Deutsch" };

function firstLanguage() {
  const kept = localStorage.getItem(KEPT);
  return kept in TABLES ? kept : navigator.language.startsWith("de") ? "de" : "en";
}

let current = firstLanguage();

export const language = () => current;

export function speak(name) {
  current = name;
  localStorage.setItem(KEPT, name);
}

// The text in the page's language, with {0}, {1} ... replaced.
export function t(english, ...values) {
  const text = Object.hasOwn(TABLES[current], english) ? TABLES[current][english] : english;
  return text.replace(/\{(\d)\}/g, (all, index) => String(values[Number(index)]));
}

export const number = (value) =>
  new Intl.NumberFormat(current, { maximumFractionDigits: 2 }).format(value);

export const moment = (text) => {
  const time = new Date(text);
  return Number.isNaN(time.getTime())
    ? text
    : new Intl.DateTimeFormat(current, { dateStyle: "medium", timeStyle: "short" }).format(time);
};

// 93784 seconds are "1 d 2 h".
export function duration(seconds) {
  const parts = [
    [86400, "d"],
    [3600, "h"],
    [60, "min"],
    [1, "s"],
  ].map(([length, unit], index, all) => [
    Math.floor((index ? seconds % all[index - 1][0] : seconds) / length),
    unit,
  ]);
  const first = parts.findIndex(([count]) => count > 0);
  return first < 0
    ? "0 s"
    : parts
        .slice(first, first + 2)
        .filter(([count]) => count > 0)
        .map(([count, unit]) => `${number(count)} ${unit}`)
        .join(" ");
}

// 91823344512 bytes are "91.8 GB".
export function amount(bytes) {
  const units = ["B", "kB", "MB", "GB", "TB", "PB"];
  let left = bytes;
  let unit = 0;
  while (left >= 1000 && unit < units.length - 1) {
    left /= 1000;
    unit += 1;
  }
  return `${new Intl.NumberFormat(current, { maximumFractionDigits: left < 100 ? 1 : 0 }).format(left)} ${units[unit]}`;
}
