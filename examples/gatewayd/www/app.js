// The page of a gateway's owner: an overview, and a form for every area, made from the area's schema.
// This file ties the others together: who is logged in, which place is shown, what is unsaved.
import { button, byId, make, say } from "./dom.js";
import { language, languages, speak, t } from "./text.js";
import * as api from "./api.js";
import { Draft, pathOf, pointerOf } from "./draft.js";
import { follow, here, hrefOf } from "./places.js";
import { ask, askForPassword } from "./dialogs.js";
import { askToLogIn, listenForLogIn, showEntry, whoIsThere } from "./account.js";
import { areaTitle, showAreas, showCrumbs } from "./navigation.js";
import { idOf } from "./fields.js";
import { showBar, wordsOfChanges } from "./changes.js";
import { overview } from "./overview.js";
import { place as formOf } from "./form.js";
import { reasonOf } from "./reasons.js";

let user = null;    // {user, role, idleSeconds}
let areas = [];
let draft = null;   // the area that is open
let place = { area: null, path: [] };
let idle = 0;       // the timer of the session
const schemas = new Map();

const isDirty = () => draft !== null && draft.changes().length > 0;

// --- What may be changed -----------------------------------------------------------------------

function mayChange(path) {
  if (user.role === "administer") {
    return true;
  }
  return user.role === "change" && !(draft.area === "gateway" && path[0] === "users");
}

// --- What is unsaved ---------------------------------------------------------------------------

function changed() {
  showBar(draft);
  showAreas(areas, place, draft);
}

// Whether the open area may be left: it has no changes, or somebody says what becomes of them.
async function mayLeave(next) {
  if (!isDirty() || (next && next.area === draft.area)) {
    return true;
  }
  const answer = await ask(t("Save your changes?"), t("{0} has changes that are not saved.", areaTitle(draft.area)),
    wordsOfChanges(draft), [["save", t("Save")], ["discard", t("Discard")], ["stay", t("Stay here")]]);
  if (answer === "discard") {
    draft.take(draft.base);
    return true;
  }
  return answer === "save" ? save() : false;
}

// --- Places ------------------------------------------------------------------------------------

const theForm = () => ({
  draft,
  mayChange,
  changed,
  hrefOf: (path) => hrefOf(draft.area, path),
  go: (path) => { location.hash = hrefOf(draft.area, path); },
  passwordOf,
  rearranged,
});

// A list has other elements than before: the form is made anew, and the keyboard stays where it was.
function rearranged(focus, path = null) {
  const inside = path === null ? null : idOf(path);
  render();
  changed();
  const target = inside === null ? byId(focus) : document.querySelector(
    `[id="${inside}"], [id^="${inside}/"]`);
  const next = target && target.disabled ? target.parentElement.querySelector("button:not(:disabled)") : target;
  (next || byId("heading")).focus();
}

// The password of a user is no value of the form: it is set by a request of its own.
function passwordOf(path) {
  const { name } = draft.valueAt(path.slice(0, -1));
  const isStored = draft.valueBefore(path.slice(0, -1)) !== undefined;
  const isOwn = name === user.user;
  if (!isOwn && user.role !== "administer") {
    return null;
  }
  return make("div", { className: "field" }, make("strong", {}, t("Password")), make("div", {}, isStored ? button(t("Set the password…"), () => changePassword(name, isOwn), { "aria-label": t("Set the password of {0}", name) })
      : make("p", { className: "about" }, t("Save the new user first, then set a password."))));
}

async function changePassword(name, isOwn) {
  if (await askForPassword(name, isOwn)) {
    say(t("The password of {0} is set.", name), "good");
  }
}

function render() {
  const { path } = place;
  const value = draft.valueAt(path);
  const isThere = value !== undefined;
  const schema = draft.schemaAt(path);
  heading(isThere ? (path.length === 0 ? areaTitle(draft.area) : draft.titleOf(path)) : t("Nothing here"),
    isThere ? t(schema.description || "") : t("There is nothing at this place any more."));
  showCrumbs(place, draft);
  byId("settings").replaceChildren(...(isThere ? formOf(theForm(), path).filter(Boolean) : []));
}

function heading(title, about) {
  byId("heading").textContent = title;
  byId("about").textContent = about;
  document.title = `${title} – ${t("Home gateway")}`;
}

async function openArea(area) {
  if (draft !== null && draft.area === area && isDirty()) {
    return true;
  }
  const [schema, document] = await Promise.all(
    [schemas.has(area) ? { status: 200, value: schemas.get(area) } : api.schemaOf(area), api.read(area)]);
  const bad = [schema, document].find((answer) => !api.isDone(answer));
  if (bad) {
    if (bad.status !== 401) {
      draft = null;
      heading(areaTitle(area), reasonOf(bad));
      byId("settings").replaceChildren();
      byId("crumbs").replaceChildren();
    }
    return false;
  }
  schemas.set(area, schema.value);
  draft = new Draft(area, schema.value, document.value);
  return true;
}

async function openOverview() {
  draft = null;
  const made = await overview();
  if (made.problem && made.problem.status === 401) {
    return;
  }
  heading(t("Overview"), made.problem ? reasonOf(made.problem) : "");
  byId("crumbs").replaceChildren();
  byId("settings").replaceChildren(...(made.tiles ? [made.tiles] : []));
}

async function show(next, takesFocus = true) {
  place = next;
  byId("menu").setAttribute("aria-expanded", "false");
  if (next.area === null) {
    await openOverview();
  } else if (await openArea(next.area)) {
    render();
  }
  if (user === null || place !== next) {
    return;
  }
  changed();
  if (takesFocus) {
    byId("heading").focus();
    window.scrollTo(0, 0);
  }
}

// --- Saving ------------------------------------------------------------------------------------

// Shows the first field that is refused, at its place.
async function showRefusal() {
  const path = pathOf([...draft.refusals.keys()][0]);
  const target = draft.placeOf(path);
  if (pointerOf(target) !== pointerOf(place.path)) {
    history.pushState({ n: (history.state.n || 1) + 1 }, "", hrefOf(draft.area, target));
    place = { area: draft.area, path: target };
  }
  render();
  changed();
  say(t("Nothing was saved: {0}", `${draft.nameOf(path)} ${[...draft.refusals.values()][0]}`), "bad");
  for (let length = path.length; length > target.length; length -= 1) {
    const element = byId(idOf(path.slice(0, length)));
    if (element !== null) {
      element.focus();
      element.scrollIntoView({ block: "center" });
      return;
    }
  }
}

// Somebody else has changed the area: their values are taken over, and ours stay unsaved.
async function takeOver() {
  const document = await api.read(draft.area);
  if (api.isDone(document)) {
    draft.rebase(document.value);
    render();
    changed();
    say(t("Nothing was saved: somebody else has changed this meanwhile. Their values are shown, and your changes are still here. Look through them and save again."), "bad");
  }
}

async function save() {
  if (!isDirty()) {
    say(t("Nothing has changed."));
    return true;
  }
  if (!draft.check()) {
    showRefusal();
    return false;
  }
  const answer = await api.patch(draft.area, draft.patch());
  if (api.isDone(answer)) {
    const document = await api.read(draft.area);
    if (api.isDone(document)) {
      draft.take(document.value);
      render();
      changed();
      say(t("Saved."), "good");
    }
    return true;
  }
  if (answer.status === 409) {
    await takeOver();
  } else if (answer.status === 422 && answer.value && (answer.value.violations || []).length > 0) {
    draft.refuse(answer.value.violations);
    showRefusal();
  } else if (answer.status !== 401) {
    say(t("Nothing was saved: {0}", reasonOf(answer)), "bad");
  }
  return false;
}

async function discard() {
  const answer = await ask(t("Discard your changes?"), t("What you have changed here is lost."), wordsOfChanges(draft),
    [["keep", t("Keep them")], ["discard", t("Discard")]]);
  if (answer === "discard") {
    draft.take(draft.base);
    await show(place);
    say(t("Your changes are discarded."));
  }
}

// --- Sessions ----------------------------------------------------------------------------------

function sessionEnded() {
  if (user !== null) {
    byId("bar").hidden = true;
    clearTimeout(idle);
    askToLogIn(isDirty() ? t("Your session has ended. Log in again; your changes are still here.")
      : t("Your session has ended. Log in again."));
    say("");
  }
}

// A session that nothing was asked in ends by itself.
function wasAsked() {
  clearTimeout(idle);
  if (user !== null && user.idleSeconds > 0) {
    idle = setTimeout(sessionEnded, user.idleSeconds * 1000);
  }
}

async function arrived(session) {
  const isSame = user !== null && user.user === session.user;
  user = session;
  if (!isSame) {
    draft = null;
  }
  const answer = await api.areas();
  if (!api.isDone(answer)) {
    askToLogIn(reasonOf(answer));
    return;
  }
  areas = answer.value;
  showEntry(false);
  byId("who").textContent = user.user;
  say(t("Logged in as {0}.", user.user));
  await show(here());
}

async function leave() {
  if (!await mayLeave(null)) {
    return;
  }
  await api.logOut();
  clearTimeout(idle);
  user = null;
  draft = null;
  byId("bar").hidden = true;
  byId("settings").replaceChildren();
  askToLogIn("");
  say(t("Logged out."));
}

// --- Language and colours ----------------------------------------------------------------------

function translate() {
  document.documentElement.lang = language();
  for (const element of document.querySelectorAll("[data-t]")) {
    element.textContent = t(element.dataset.t);
  }
  document.title = t("Home gateway");
}

function chooseColours(name) {
  document.documentElement.dataset.theme = name;
  localStorage.setItem("gatewayd-theme", name);
  byId("theme").value = name;
}

function listen() {
  byId("language").append(...Object.entries(languages).map(([value, name]) =>
    make("option", { value, lang: value, selected: value === language() }, name)));
  byId("language").addEventListener("change", async () => {
    speak(byId("language").value);
    translate();
    say("");
    if (user !== null && byId("entry").hidden) {
      await show(place, false);
    }
  });
  byId("theme").addEventListener("change", () => chooseColours(byId("theme").value));
  byId("menu").addEventListener("click", () => byId("menu").setAttribute("aria-expanded",
    String(byId("menu").getAttribute("aria-expanded") !== "true")));
  byId("skip").addEventListener("click", (event) => {
    event.preventDefault();
    byId("heading").focus();
  });
  byId("logout").addEventListener("click", leave);
  byId("own-password").addEventListener("click", () => changePassword(user.user, true));
  byId("discard").addEventListener("click", discard);
  byId("settings").addEventListener("submit", (event) => {
    event.preventDefault();
    save();
  });
  window.addEventListener("beforeunload", (event) => {
    if (isDirty()) {
      event.preventDefault();
    }
  });
}

async function start() {
  chooseColours(localStorage.getItem("gatewayd-theme") || "system");
  listen();
  translate();
  api.listen(sessionEnded, wasAsked);
  listenForLogIn(arrived);
  follow(mayLeave, show);
  const session = await whoIsThere();
  if (session === null) {
    askToLogIn("");
  } else {
    arrived(session);
  }
}

start();
