// Saving an area: all of its changes or none, and what to do when they are refused. A page is what
// app.js shares: the draft, the place, and the functions that show them.
import { byId, say } from "./dom.js";
import { t } from "./text.js";
import * as api from "./api.js";
import { pathOf, pointerOf } from "./draft.js";
import { hrefOf } from "./places.js";
import { ask } from "./dialogs.js";
import { idOf } from "./fields.js";
import { wordsOfChanges } from "./changes.js";
import { reasonOf } from "./reasons.js";

let isSaving = false;

// Puts the keyboard into the field of a path, or into the nearest part around it.
function focusOn(path, place) {
  for (let length = path.length; length > place.length; length -= 1) {
    const element = byId(idOf(path.slice(0, length)));
    if (element !== null) {
      element.focus();
      element.scrollIntoView({ block: "center" });
      return;
    }
  }
}

// Shows the first field that is refused, at its place.
function showRefusal(page) {
  const path = pathOf([...page.draft.refusals.keys()][0]);
  const target = page.draft.placeOf(path);
  if (pointerOf(target) !== pointerOf(page.place.path)) {
    history.pushState({ n: (history.state.n || 1) + 1 }, "", hrefOf(page.draft.area, target));
    page.place = { area: page.draft.area, path: target };
  }
  page.render();
  page.changed();
  say(
    t(
      "Nothing was saved: {0}",
      `${page.draft.nameOf(path)} ${[...page.draft.refusals.values()][0]}`,
    ),
    "bad",
  );
  focusOn(path, target);
}

// Somebody else has changed the area: their values are taken over, and ours stay unsaved.
async function takeOver(page) {
  const document = await api.read(page.draft.area);
  if (api.isDone(document)) {
    page.draft.rebase(document.value);
    page.render();
    page.changed();
    say(
      t(
        "Nothing was saved: somebody else has changed this meanwhile. Their values are shown, and your changes are still here. Look through them and save again.",
      ),
      "bad",
    );
  }
}

// The changes are in the gateway: what it has now is shown.
async function showSaved(page) {
  const document = await api.read(page.draft.area);
  if (api.isDone(document)) {
    page.draft.take(document.value);
    page.render();
    page.changed();
  } else {
    page.draft = null;
    await page.show(page.place);
  }
  say(t("Saved."), "good");
}

async function refused(page, answer) {
  const violations = (answer.status === 422 && answer.value && answer.value.violations) || [];
  if (answer.status === 409) {
    await takeOver(page);
  } else if (violations.length > 0) {
    page.draft.refuse(violations);
    showRefusal(page);
  } else if (answer.status !== 401) {
    say(t("Nothing was saved: {0}", reasonOf(answer)), "bad");
  }
}

async function send(page) {
  const answer = await api.patch(page.draft.area, page.draft.patch());
  await (api.isDone(answer) ? showSaved(page) : refused(page, answer));
  return api.isDone(answer);
}

// Answers whether nothing is unsaved afterwards.
export async function save(page) {
  if (page.draft === null || !page.draft.isDirty()) {
    say(t("Nothing has changed."));
    return true;
  }
  if (isSaving) {
    return false;
  }
  if (!page.draft.check()) {
    showRefusal(page);
    return false;
  }
  isSaving = true;
  try {
    return await send(page);
  } finally {
    isSaving = false;
  }
}

export async function discard(page) {
  const answer = await ask(
    t("Discard your changes?"),
    t("What you have changed here is lost."),
    wordsOfChanges(page.draft),
    [
      ["keep", t("Keep them")],
      ["discard", t("Discard")],
    ],
  );
  if (answer === "discard") {
    page.draft.take(page.draft.base);
    await page.show(page.place);
    say(t("Your changes are discarded."));
  }
}
