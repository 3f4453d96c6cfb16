// The language and the colours of the page: chosen in the header, kept by the browser.
import { byId, make } from "./dom.js";
import { language, languages, speak, t } from "./text.js";

const KEPT = "gatewayd-theme";

// Texts of the page's own file carry their English in data-t.
function translate() {
  document.documentElement.lang = language();
  for (const element of document.querySelectorAll("[data-t]")) {
    element.textContent = t(element.dataset.t);
  }
}

// The device's wish, which the page follows when it is not told otherwise.
const wishesDark = matchMedia("(prefers-color-scheme: dark)");

function colour() {
  const theme = byId("theme").value;
  const isDark = theme === "dark" || (theme === "system" && wishesDark.matches);
  document.documentElement.dataset.theme = isDark ? "dark" : "light";
}

function choose(theme) {
  localStorage.setItem(KEPT, theme);
  byId("theme").value = theme;
  colour();
}

// Calls translated() whenever another language is chosen.
export function listenForLooks(translated) {
  byId("language").append(
    ...Object.entries(languages).map(([value, name]) =>
      make("option", { value, lang: value, selected: value === language() }, name),
    ),
  );
  byId("language").addEventListener("change", () => {
    speak(byId("language").value);
    translate();
    translated();
  });
  byId("theme").addEventListener("change", () => choose(byId("theme").value));
  wishesDark.addEventListener("change", colour);
  choose(localStorage.getItem(KEPT) || "system");
  translate();
}
