// What is unsaved, in words: a line for each change, in the bar at the foot and in the questions.
import { byId, make } from "./dom.js";
import { t } from "./text.js";
import { isSecret, schemaOfChild } from "./schema.js";
import { inWords } from "./show.js";
import { pathOf } from "./draft.js";

// What is taken out is only in the document as it was read; elements go from the last to the first,
// so that each index is still the one that was read.
function removed(draft, path) {
  const parent = path.slice(0, -1);
  const name = path[path.length - 1];
  const before = draft.valueBefore(parent);
  const schema = schemaOfChild(draft.root, draft.schemaAt(parent), name, before[name]);
  const title = Array.isArray(before)
    ? draft.titleOfElement(schema, before[name], name)
    : t(schema.title);
  return [draft.nameOf(parent), title].filter(Boolean).join(", ");
}

function words(draft, { op, path, from, value }) {
  const at = pathOf(path);
  if (op === "remove") {
    return t("{0}: taken out", removed(draft, at));
  }
  const name = draft.nameOf(at);
  const schema = draft.schemaAt(at);
  if (op === "move") {
    return t(
      "{0}: moved from place {1} to {2}",
      name,
      Number(pathOf(from).pop()) + 1,
      Number(at[at.length - 1]) + 1,
    );
  }
  if (isSecret(schema)) {
    return t("{0}: set anew", name);
  }
  return op === "add"
    ? t("{0}: new", name)
    : `${name}: ${inWords(draft.root, schema, draft.valueBefore(at))} → ${inWords(draft.root, schema, value)}`;
}

export const wordsOfChanges = (draft) => draft.changes().map((change) => words(draft, change));

// The bar is there as long as something is unsaved.
export function showBar(draft) {
  const lines = draft === null ? [] : wordsOfChanges(draft);
  byId("bar").hidden = lines.length === 0;
  byId("bar").setAttribute("aria-label", t("Unsaved changes"));
  byId("count").textContent =
    lines.length === 1 ? t("1 unsaved change") : t("{0} unsaved changes", lines.length);
  byId("changes").replaceChildren(...lines.map((line) => make("li", {}, line)));
}
