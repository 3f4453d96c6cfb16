// The form of a place: an area, one of its groups, or an element of a list. What may be changed
// becomes fields, the rest is shown.
//
// A form is an object that its parts are made with: the draft, member(path, level) for what is
// inside, and what to call when something has changed.
import { button, make } from "./dom.js";
import { t } from "./text.js";
import {
  isLarge,
  isScalar,
  isSecret,
  isState,
  newValue,
  resolve,
  schemaOfChild,
  typeOf,
} from "./schema.js";
import { field, idOf } from "./fields.js";
import { list } from "./lists.js";
import { inWords, line, part, show } from "./show.js";

// An object inside a form, with a button to take it away when it need not be there.
function group(form, path, schema, level) {
  const name = path[path.length - 1];
  const parent = form.draft.schemaAt(path.slice(0, -1));
  const isOptional = typeOf(parent) === "object" && !(parent.required || []).includes(name);
  const remove = isOptional
    ? button(
        t("Remove: {0}", t(schema.title)),
        () => {
          form.draft.set(path, undefined);
          form.rearranged(null);
        },
        { className: "quiet" },
      )
    : null;
  return make(
    "fieldset",
    { className: "group", id: idOf(path), tabIndex: -1 },
    make("legend", {}, t(schema.title)),
    schema.description ? make("p", { className: "about" }, t(schema.description)) : null,
    ...members(form, path, schema, level),
    remove,
  );
}

function shown(form, path, schema, level) {
  const value = form.draft.valueAt(path);
  const { root } = form.draft;
  const isPart =
    value !== null &&
    typeof value === "object" &&
    !(Array.isArray(value) && value.every((one) => typeof one !== "object"));
  return isPart && !(Array.isArray(value) && value.length === 0)
    ? part(root, schema, value, level)
    : make("dl", {}, line(t(schema.title), inWords(root, schema, value)));
}

// True for a list whose elements have places of their own.
function leadsOn(form, schema) {
  return (
    typeOf(schema) === "array" && isLarge(form.draft.root, resolve(form.draft.root, schema.items))
  );
}

// What is at the path: a field, a list, a group, or a value to look at.
function member(form, path, level) {
  const schema = form.draft.schemaAt(path);
  if (schema.set === "password") {
    return form.passwordOf(path);
  }
  if (!form.mayChange(path) && !isState(schema) && leadsOn(form, schema)) {
    return list(form, path, { ...schema, fixed: true });
  }
  if (!form.mayChange(path) || isState(schema)) {
    return isSecret(schema)
      ? make("dl", {}, line(t(schema.title), t("(secret)")))
      : shown(form, path, schema, level);
  }
  if (isScalar(schema)) {
    return field(form, path, schema);
  }
  return typeOf(schema) === "array" ? list(form, path, schema) : group(form, path, schema, level);
}

// A button for each member that is not there and could be.
function adder(form, path, name) {
  const { draft } = form;
  const schema = draft.schemaAt([...path, name]);
  const add = () => {
    draft.set([...path, name], newValue(draft.root, schema));
    form.rearranged(null, [...path, name]);
  };
  return button(t("Add: {0}", t(schema.title)), add, { className: "add" });
}

// The members of an object with their schemas; what only the gateway changes comes last.
function inOrder(form, schema, value) {
  const all = Object.keys(schema.properties || {}).map((name) => [
    name,
    schemaOfChild(form.draft.root, schema, name, value[name]),
  ]);
  return [...all.filter(([, one]) => !isState(one)), ...all.filter(([, one]) => isState(one))];
}

function members(form, path, schema, level) {
  const value = form.draft.valueAt(path);
  const parts = [];
  const missing = [];
  for (const [name, one] of inOrder(form, schema, value)) {
    if (value[name] !== undefined || isSecret(one)) {
      parts.push(form.member([...path, name], level));
    } else if (!isState(one) && form.mayChange([...path, name])) {
      missing.push(adder(form, path, name));
    }
  }
  return missing.length > 0 ? [...parts, make("p", { className: "adders" }, ...missing)] : parts;
}

// The groups of an area, as links, below its own scalars.
function contents(form) {
  const { draft } = form;
  const schema = draft.schemaAt([]);
  const scalars = [];
  const links = [];
  for (const [name, one] of inOrder(form, schema, draft.valueAt([]))) {
    if (isScalar(one)) {
      scalars.push(form.member([name], 2));
    } else {
      links.push(
        make(
          "li",
          {},
          make(
            "a",
            { href: form.hrefOf([name]), className: "card" },
            make("strong", {}, t(one.title)),
            make("span", { className: "about" }, t(one.description)),
          ),
        ),
      );
    }
  }
  return [make("ul", { className: "cards" }, ...links), ...scalars];
}

// The parts of a place, for the section that shows it.
export function place(form, path) {
  const { draft } = form;
  form.member = (inside, level) => member(form, inside, level);
  if (path.length === 0) {
    return contents(form);
  }
  const schema = draft.schemaAt(path);
  const value = draft.valueAt(path);
  if (typeOf(schema) === "array") {
    return [member(form, path, 2)];
  }
  if (isState(schema) || value === null) {
    return value === null ? [make("p", {}, t("None yet."))] : show(draft.root, schema, value, 2);
  }
  return members(form, path, resolve(draft.root, schema, value), 2);
}
