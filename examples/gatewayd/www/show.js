// Values that are only looked at: what the gateway itself keeps, and everything for a user who may
// not change it. Members become lines, lists of objects become tables.
import { make } from "./dom.js";
import { amount, duration, moment, number, t } from "./text.js";
import { choiceTitle, isScalar, isSecret, resolve, schemaOfChild, typeOf } from "./schema.js";

// A scalar, or a list of scalars, in words.
export function inWords(root, schema, value) {
  if (value === null || value === undefined || value === "") {
    return "–";
  }
  if (Array.isArray(value)) {
    const items = resolve(root, schema.items || {});
    return value.map((one) => inWords(root, items, one)).join(", ") || "–";
  }
  if (typeof value === "boolean") {
    return value ? t("yes") : t("no");
  }
  if (typeof value === "number" && !schema.labels) {
    return withUnit(schema, value);
  }
  return schema.format === "date-time" ? moment(value) : choiceTitle(schema, value);
}

function withUnit(schema, value) {
  switch (schema.unit) {
    case undefined:
      return value < 100000 && Number.isInteger(value) ? String(value) : number(value);
    case "s":
      return duration(value);
    case "B":
      return amount(value);
    default:
      return `${number(value)} ${t(schema.unit)}`;
  }
}

const isTable = (value) =>
  Array.isArray(value) && value.some((one) => one !== null && typeof one === "object");

// The columns of a table: the scalars of an element, those of its objects with their titles before.
function columns(root, schema, element, path = [], title = "") {
  return Object.keys(schema.properties || {}).flatMap((name) => {
    const member = schemaOfChild(root, schema, name, element && element[name]);
    const here = title === "" ? t(member.title) : `${title}: ${t(member.title)}`;
    if (isSecret(member)) {
      return [];
    }
    if (typeOf(member) === "object") {
      return columns(root, member, element && element[name], [...path, name], here);
    }
    return [{ path: [...path, name], title: here, schema: member }];
  });
}

const at = (value, path) =>
  path.reduce((one, step) => (one === null || one === undefined ? undefined : one[step]), value);

function cellOf(root, schema, value) {
  return isTable(value) ? String(value.length) : inWords(root, schema, value);
}

export function table(root, schema, value, title) {
  const items = resolve(root, schema.items);
  const shown = columns(root, items, value[0]).filter((column) =>
    value.some((one) => at(one, column.path) !== undefined),
  );
  const head = make("tr", {}, ...shown.map((column) => make("th", { scope: "col" }, column.title)));
  const rows = value.map((one) =>
    make(
      "tr",
      {},
      ...shown.map((column) => make("td", {}, cellOf(root, column.schema, at(one, column.path)))),
    ),
  );
  return make(
    "div",
    { className: "scroll", tabIndex: 0, role: "region", "aria-label": title },
    make("table", {}, make("thead", {}, head), make("tbody", {}, ...rows)),
  );
}

// One member as a line of a list, or as a part of its own.
export function line(title, text) {
  return make("div", { className: "line" }, make("dt", {}, title), make("dd", {}, text));
}

// The members of an object: first the scalars, then what is inside others.
export function show(root, schema, value, level) {
  const lines = [];
  const parts = [];
  for (const name of Object.keys(schema.properties || value || {})) {
    const member = schemaOfChild(root, schema, name, value && value[name]);
    const one = value ? value[name] : undefined;
    const title = schema.properties ? t(member.title || name) : name;
    if (isSecret(member)) {
      lines.push(line(title, t("(secret)")));
    } else if (one === undefined) {
      continue;
    } else if (isScalar(member) || (Array.isArray(one) && !isTable(one)) || one === null) {
      lines.push(line(title, inWords(root, member, one)));
    } else {
      parts.push(part(root, member, one, level));
    }
  }
  return [lines.length > 0 ? make("dl", {}, ...lines) : null, ...parts];
}

export function part(root, schema, value, level) {
  const title = t(schema.title);
  const heading = make("h" + Math.min(level, 6), {}, title);
  const inside = Array.isArray(value)
    ? [table(root, schema, value, title)]
    : show(root, schema, value, level + 1);
  return make("section", { className: "part" }, heading, ...inside);
}
