// The fields of a form: one row for each scalar, made from its schema. A field keeps the draft up to
// date while somebody types; what is wrong is said beside it once they leave it.
import { button, make } from "./dom.js";
import { t } from "./text.js";
import { brokenKeyword, choiceTitle, explain, isSecret, mayBeNull, typeOf } from "./schema.js";
import { pointerOf } from "./draft.js";

export const idOf = (path) => "field-" + pointerOf(path);

const isNumber = (schema) => ["integer", "number"].includes(typeOf(schema));

function selectOf(schema, value) {
  const choices = schema.enum.includes(value) ? schema.enum : [value, ...schema.enum];
  const select = make(
    "select",
    {},
    ...choices.map((one) =>
      make("option", { value: String(one), selected: one === value }, choiceTitle(schema, one)),
    ),
  );
  return { control: select, read: () => choices[select.selectedIndex] };
}

function numberOf(schema, value) {
  const input = make("input", {
    type: "number",
    value: value === null ? "" : String(value),
    inputMode: "decimal",
    min: schema.minimum,
    max: schema.maximum,
    step: typeOf(schema) === "integer" ? "1" : "any",
  });
  return { control: input, read: () => (input.value === "" ? null : Number(input.value)) };
}

function textOf(schema, value) {
  const input =
    schema.widget === "text"
      ? make("textarea", { rows: 3 })
      : make("input", {
          type: schema.widget === "time" ? "time" : "text",
          autocapitalize: "none",
          spellcheck: false,
        });
  input.value = value ?? "";
  return {
    control: input,
    read: () => (mayBeNull(schema) && input.value === "" ? null : input.value),
  };
}

// A secret is never read: the field is empty, and stays unchanged while it is.
function secretOf(schema, value, isKnown) {
  const input = make("input", {
    type: "password",
    autocomplete: "new-password",
    value: value ?? "",
    placeholder: isKnown ? t("unchanged") : "",
  });
  const look = button(
    t("Show"),
    () => {
      input.type = input.type === "password" ? "text" : "password";
      look.textContent = input.type === "password" ? t("Show") : t("Hide");
      look.setAttribute("aria-pressed", String(input.type === "text"));
    },
    { "aria-pressed": "false", className: "quiet" },
  );
  return {
    control: input,
    after: look,
    read: () => (input.value === "" ? undefined : input.value),
  };
}

function switchOf(value) {
  const input = make("input", { type: "checkbox", checked: value === true });
  return { control: input, read: () => input.checked };
}

function controlOf(schema, value, isKnown) {
  if (isSecret(schema)) {
    return secretOf(schema, value, isKnown);
  }
  if (schema.enum) {
    return selectOf(schema, value);
  }
  if (typeOf(schema) === "boolean") {
    return switchOf(value);
  }
  return isNumber(schema) ? numberOf(schema, value) : textOf(schema, value);
}

// The limits of a number, or the form of a text, in a few words.
function hintOf(schema) {
  if (schema.hint) {
    return t(schema.hint);
  }
  if (
    isNumber(schema) &&
    !schema.enum &&
    schema.minimum !== undefined &&
    schema.maximum !== undefined
  ) {
    return t("From {0} to {1}", schema.minimum, schema.maximum);
  }
  return "";
}

// Shows or hides why a field is refused.
export function tell(row, control, sentence) {
  const problem = row.querySelector(":scope > .problem, :scope > .under > .problem");
  problem.textContent = sentence ? `${row.dataset.title}: ${sentence}` : "";
  problem.hidden = !sentence;
  if (sentence) {
    control.setAttribute("aria-invalid", "true");
  } else {
    control.removeAttribute("aria-invalid");
  }
}

function mark(row, isChanged) {
  row.classList.toggle("changed", isChanged);
  row.querySelector(".mark").hidden = !isChanged;
}

export const changeMark = (isChanged) =>
  make("span", { className: "mark", hidden: !isChanged }, t("changed"));

function watch(form, path, schema, row, { control, read }) {
  const take = () => {
    form.draft.set(path, read());
    tell(row, control, null);
    mark(row, form.draft.isChanged(path));
    form.changed();
  };
  control.addEventListener("input", take);
  control.addEventListener("change", () => {
    take();
    const value = form.draft.valueAt(path);
    const keyword = value === undefined ? null : brokenKeyword(schema, value);
    tell(row, control, keyword ? explain(schema, keyword) : null);
  });
}

// The row of a scalar at a path. `title` replaces the schema's where that says too little.
export function field(
  form,
  path,
  schema,
  title = t(schema.title || String(path[path.length - 1])),
) {
  const { draft } = form;
  const id = idOf(path);
  const isKnown = draft.valueBefore(path.slice(0, -1)) !== undefined;
  const made = controlOf(schema, draft.valueAt(path), isKnown);
  const hint = hintOf(schema);
  const describedBy = [schema.description && `${id}-about`, hint && `${id}-hint`, `${id}-problem`];
  made.control.id = id;
  made.control.setAttribute("aria-describedby", describedBy.filter(Boolean).join(" "));
  const isChanged = draft.isChanged(path);
  const row = make(
    "div",
    { className: isChanged ? "field changed" : "field" },
    make(
      "div",
      { className: "what" },
      make("label", { htmlFor: id }, title),
      changeMark(isChanged),
      schema.description
        ? make("p", { className: "about", id: `${id}-about` }, t(schema.description))
        : null,
    ),
    make(
      "div",
      { className: "under" },
      make(
        "div",
        { className: "control" },
        made.control,
        made.after,
        schema.unit ? make("span", { className: "unit" }, t(schema.unit)) : null,
      ),
      hint ? make("p", { className: "hint", id: `${id}-hint` }, hint) : null,
      make("p", { className: "problem", id: `${id}-problem`, hidden: true }),
    ),
  );
  row.dataset.title = title;
  watch(form, path, schema, row, made);
  tell(row, made.control, draft.refusals.get(pointerOf(path)));
  return row;
}
