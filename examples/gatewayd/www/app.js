// The page of a gateway's owner: an overview, and a form for every area, made from the area's schema.
// This file ties the others together: who is logged in, which place is shown, what is unsaved.
import { byId, say } from "./dom.js";
import { t } from "./text.js";
import * as api from "./api.js";
import { Draft } from "./draft.js";
import { follow, here, hrefOf } from "./places.js";
import { ask, askForPassword } from "./dialogs.js";
import { askToLogIn, listenForLogIn, passwordRow, showEntry, whoIsThere } from "./account.js";
import { areaTitle, showAreas, showCrumbs } from "./navigation.js";
import { idOf } from "./fields.js";
import { showBar, wordsOfChanges } from "./changes.js";
import { listenForLooks } from "./looks.js";
import { overview } from "./overview.js";
import { place as formOf } from "./form.js";
import { reasonOf } from "./reasons.js";
import { discard, save } from "./saving.js";

// What the parts of the page share.
const page = {
  user: null, // {user, role, idleSeconds}
  areas: [],
  draft: null, // the area that is open
  place: { area: null, path: [] },
  render,
  changed,
  show,
};
let idle = 0; // the timer of the session
const schemas = new Map();

const isDirty = () => page.draft !== null && page.draft.isDirty();

// --- What may be changed -----------------------------------------------------------------------

function mayChange(path) {
  if (page.user.role === "administer") {
    return true;
  }
  return page.user.role === "change" && !(page.draft.area === "gateway" && path[0] === "users");
}

// --- What is unsaved ---------------------------------------------------------------------------

function changed() {
  showBar(page.draft);
  showAreas(page.areas, page.place, page.draft);
}

// Whether the open area may be left: it has no changes, or somebody says what becomes of them.
async function mayLeave(next) {
  if (!isDirty() || (next && next.area === page.draft.area)) {
    return true;
  }
  const answer = await ask(
    t("Save your changes?"),
    t("{0} has changes that are not saved.", areaTitle(page.draft.area)),
    wordsOfChanges(page.draft),
    [
      ["save", t("Save")],
      ["discard", t("Discard")],
      ["stay", t("Stay here")],
    ],
  );
  if (answer === "discard") {
    page.draft.take(page.draft.base);
    return true;
  }
  return answer === "save" ? save(page) : false;
}

// --- Places ------------------------------------------------------------------------------------

const theForm = () => ({
  draft: page.draft,
  mayChange,
  changed,
  hrefOf: (path) => hrefOf(page.draft.area, path),
  go: (path) => {
    location.hash = hrefOf(page.draft.area, path);
  },
  passwordOf: (path) => passwordRow(page.draft, path, page.user, changePassword),
  rearranged,
});

// A list has other elements than before: the form is made anew, and the keyboard stays where it was.
function rearranged(focus, path = null) {
  const inside = path === null ? null : idOf(path);
  render();
  changed();
  const target =
    inside === null ? byId(focus) : document.querySelector(`[id="${inside}"], [id^="${inside}/"]`);
  const next =
    target && target.disabled
      ? target.parentElement.querySelector("button:not(:disabled)")
      : target;
  (next || byId("heading")).focus();
}

async function changePassword(name, isOwn) {
  if (await askForPassword(name, isOwn)) {
    say(t("The password of {0} is set.", name), "good");
  }
}

function render() {
  const { path } = page.place;
  const value = page.draft.valueAt(path);
  const isThere = value !== undefined;
  const schema = page.draft.schemaAt(path);
  heading(
    isThere
      ? path.length === 0
        ? areaTitle(page.draft.area)
        : page.draft.titleOf(path)
      : t("Nothing here"),
    isThere ? t(schema.description || "") : t("There is nothing at this place any more."),
  );
  showCrumbs(page.place, page.draft);
  byId("settings").replaceChildren(...(isThere ? formOf(theForm(), path).filter(Boolean) : []));
}

function heading(title, about) {
  byId("heading").textContent = title;
  byId("about").textContent = about;
  document.title = `${title} – ${t("Home gateway")}`;
}

async function openArea(area) {
  if (page.draft !== null && page.draft.area === area && isDirty()) {
    return true;
  }
  const [schema, document] = await Promise.all([
    schemas.has(area) ? { status: 200, value: schemas.get(area) } : api.schemaOf(area),
    api.read(area),
  ]);
  const bad = [schema, document].find((answer) => !api.isDone(answer));
  if (bad) {
    if (bad.status !== 401) {
      page.draft = null;
      heading(areaTitle(area), reasonOf(bad));
      byId("settings").replaceChildren();
      byId("crumbs").replaceChildren();
    }
    return false;
  }
  schemas.set(area, schema.value);
  page.draft = new Draft(area, schema.value, document.value);
  return true;
}

async function openOverview() {
  page.draft = null;
  const made = await overview();
  if (made.problem && made.problem.status === 401) {
    return;
  }
  heading(t("Overview"), made.problem ? reasonOf(made.problem) : "");
  byId("crumbs").replaceChildren();
  byId("settings").replaceChildren(...(made.tiles ? [made.tiles] : []));
}

async function show(next, takesFocus = true) {
  page.place = next;
  byId("content").setAttribute("aria-busy", "true");
  if (takesFocus) {
    // Before the wait for the gateway: who opens the menu meanwhile wants it open.
    byId("menu").setAttribute("aria-expanded", "false");
  }
  if (next.area === null) {
    await openOverview();
  } else if (await openArea(next.area)) {
    render();
  }
  if (page.place !== next) {
    return; // another place is on its way
  }
  byId("content").setAttribute("aria-busy", "false");
  if (page.user === null) {
    return;
  }
  changed();
  if (takesFocus) {
    byId("heading").focus();
    window.scrollTo(0, 0);
  }
}

// --- Sessions ----------------------------------------------------------------------------------

function sessionEnded() {
  if (page.user !== null) {
    byId("bar").hidden = true;
    clearTimeout(idle);
    askToLogIn(
      isDirty()
        ? t("Your session has ended. Log in again; your changes are still here.")
        : t("Your session has ended. Log in again."),
    );
    say("");
  }
}

// A session that nothing was asked in ends by itself.
function wasAsked() {
  clearTimeout(idle);
  if (page.user !== null && page.user.idleSeconds > 0) {
    idle = setTimeout(sessionEnded, page.user.idleSeconds * 1000);
  }
}

async function arrived(session) {
  const isSame = page.user !== null && page.user.user === session.user;
  page.user = session;
  if (!isSame) {
    page.draft = null;
  }
  const answer = await api.areas();
  if (!api.isDone(answer)) {
    askToLogIn(reasonOf(answer));
    return;
  }
  page.areas = answer.value;
  showEntry(false);
  byId("who").textContent = page.user.user;
  say(t("Logged in as {0}.", page.user.user));
  await show(here());
}

async function leave() {
  if (!(await mayLeave(null))) {
    return;
  }
  await api.logOut();
  clearTimeout(idle);
  page.user = null;
  page.draft = null;
  byId("bar").hidden = true;
  byId("settings").replaceChildren();
  askToLogIn("");
  say(t("Logged out."));
}

// --- Starting ----------------------------------------------------------------------------------

function listen() {
  listenForLooks(async () => {
    say("");
    if (page.user !== null && byId("entry").hidden) {
      await show(page.place, false);
    }
  });
  byId("menu").addEventListener("click", () =>
    byId("menu").setAttribute(
      "aria-expanded",
      String(byId("menu").getAttribute("aria-expanded") !== "true"),
    ),
  );
  byId("skip").addEventListener("click", (event) => {
    event.preventDefault();
    byId("heading").focus();
  });
  byId("logout").addEventListener("click", leave);
  byId("own-password").addEventListener("click", () => changePassword(page.user.user, true));
  byId("discard").addEventListener("click", () => discard(page));
  byId("settings").addEventListener("submit", (event) => {
    event.preventDefault();
    save(page);
  });
  window.addEventListener("beforeunload", (event) => {
    if (isDirty()) {
      event.preventDefault();
    }
  });
}

async function start() {
  listen();
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
