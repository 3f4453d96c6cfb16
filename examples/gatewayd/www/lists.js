// Lists in a form. What each element looks like depends on its schema: a choice of fixed values is a
// row of boxes, a scalar a field, a small object a row of fields, a large one a link to its own place.
import { button, make, say } from "./dom.js";
import { t } from "./text.js";
import { choiceTitle, isLarge, isScalar, resolve, schemaOfChild, typeOf } from "./schema.js";
import { pointerOf } from "./draft.js";
import { changeMark, field, idOf } from "./fields.js";

// A list with refusals of its own, such as "has the same entry twice".
function frame(form, path, schema, ...inside) {
  const problem = form.draft.refusals.get(pointerOf(path));
  const title = t(schema.title);
  const isChanged = form.draft.isChanged(path);
  return make(
    "fieldset",
    { className: isChanged ? "list changed" : "list", id: idOf(path), tabIndex: -1 },
    make("legend", {}, title, changeMark(isChanged)),
    schema.description ? make("p", { className: "about" }, t(schema.description)) : null,
    make("p", { className: "problem", hidden: !problem }, problem ? `${title}: ${problem}` : ""),
    ...inside,
  );
}

function boxes(form, path, schema, items) {
  const chosen = new Set(form.draft.valueAt(path));
  const all = make(
    "div",
    { className: "boxes" },
    ...items.enum.map((value) => {
      const box = make("input", { type: "checkbox", checked: chosen.has(value) });
      box.addEventListener("change", () => {
        box.checked ? chosen.add(value) : chosen.delete(value);
        form.draft.set(
          path,
          items.enum.filter((one) => chosen.has(one)),
        );
        form.changed();
        const list = box.closest("fieldset");
        list.querySelector(".mark").hidden = !form.draft.isChanged(path);
      });
      return make("label", { className: "box" }, box, " ", choiceTitle(items, value));
    }),
  );
  return frame(form, path, schema, all);
}

// The three buttons of an element.
function tools(form, path, index, name, schema) {
  if (schema.fixed) {
    return null;
  }
  const list = form.draft.valueAt(path);
  const id = idOf([...path, index]);
  const move = (to, words) => () => {
    form.draft.moveElement(path, index, to);
    form.rearranged(`${idOf([...path, to])}-${to < index ? "up" : "down"}`);
    say(t(words, name));
  };
  const remove = () => {
    form.draft.removeElement(path, index);
    form.rearranged(
      list.length > 0
        ? `${idOf([...path, Math.min(index, list.length - 1)])}-remove`
        : `${idOf(path)}-add`,
    );
    say(t("{0} is taken out when you save.", name));
  };
  const tool = (sign, action, end, words, disabled) =>
    button(sign, action, { id: `${id}-${end}`, disabled, "aria-label": words, title: words });
  return make(
    "div",
    { className: "tools" },
    tool("↑", move(index - 1, "{0} has moved up."), "up", t("Move {0} up", name), index === 0),
    tool(
      "↓",
      move(index + 1, "{0} has moved down."),
      "down",
      t("Move {0} down", name),
      index === list.length - 1,
    ),
    tool("✕", remove, "remove", t("Remove {0}", name), list.length <= (schema.minItems || 0)),
  );
}

function adder(form, path, schema, isPlace) {
  if (schema.fixed) {
    return null;
  }
  const list = form.draft.valueAt(path);
  const items = resolve(form.draft.root, schema.items);
  const isFull = schema.maxItems !== undefined && list.length >= schema.maxItems;
  const add = () => {
    const index = form.draft.add(path);
    if (isPlace) {
      form.changed();
      form.go([...path, index]);
    } else {
      form.rearranged(null, [...path, index]);
    }
  };
  const text = isFull ? t("No more than {0}", schema.maxItems) : t("Add: {0}", t(items.title));
  return button(text, add, { className: "add", id: `${idOf(path)}-add`, disabled: isFull });
}

// What tells elements apart: choices, ranges, addresses, and that one is switched off.
function words(root, schema, value) {
  if (value === null || value === undefined || value === "") {
    return [];
  }
  if (schema.enum || schema.format === "ipv4") {
    return [choiceTitle(schema, value)];
  }
  if (schema.title === "Enabled") {
    return value ? [] : [t("off")];
  }
  if (typeOf(schema) !== "object") {
    return [];
  }
  const { from, to } = value;
  return from !== undefined && to !== undefined
    ? [from === to ? String(from) : `${from}–${to}`]
    : Object.keys(value).flatMap((name) =>
        words(root, schemaOfChild(root, schema, name, value[name]), value[name]),
      );
}

function summary(form, path) {
  const value = form.draft.valueAt(path);
  const title = form.draft.titleOf(path);
  return words(form.draft.root, form.draft.schemaAt(path), value)
    .filter((one) => one !== title)
    .slice(0, 4)
    .join(" · ");
}

function linked(form, path, schema, index) {
  const here = [...path, index];
  const name = form.draft.titleOf(here);
  return make(
    "li",
    { className: form.draft.isChanged(here) ? "row changed" : "row" },
    make(
      "a",
      { href: form.hrefOf(here), className: "row-link" },
      make("strong", {}, name),
      make("span", { className: "about" }, summary(form, here)),
    ),
    changeMark(form.draft.isChanged(here)),
    tools(form, path, index, name, schema),
  );
}

function inline(form, path, schema, index) {
  const here = [...path, index];
  const items = form.draft.schemaAt(here);
  const name = form.draft.titleOf(here);
  const inside = isScalar(items)
    ? [field(form, here, items, `${t(items.title)} ${index + 1}`)]
    : Object.keys(items.properties).map((member) => form.member([...here, member], 2));
  const role = isScalar(items) ? {} : { role: "group", "aria-label": name };
  return make(
    "li",
    { className: "row inline" },
    make("div", { className: "inside", ...role }, ...inside),
    tools(form, path, index, name, schema),
  );
}

export function list(form, path, schema) {
  const { draft } = form;
  const items = resolve(draft.root, schema.items);
  if (items.enum && schema.uniqueItems) {
    return boxes(form, path, schema, items);
  }
  const isPlace = typeOf(items) === "object" && isLarge(draft.root, items);
  const rows = draft
    .valueAt(path)
    .map((element, index) => (isPlace ? linked : inline)(form, path, schema, index));
  return frame(
    form,
    path,
    schema,
    rows.length > 0
      ? make("ol", { className: "rows" }, ...rows)
      : make("p", { className: "about" }, t("None yet.")),
    adder(form, path, schema, isPlace),
  );
}
