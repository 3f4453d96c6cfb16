// Logging in, and passwords. The log-in form is all there is until somebody has logged in, and gone
// afterwards.
import { button, byId, make } from "./dom.js";
import { t } from "./text.js";
import { isDone, logIn, session } from "./api.js";
import { reasonOf } from "./reasons.js";

// Shows the form, or all the rest.
export function showEntry(isEntry) {
  byId("entry").hidden = !isEntry;
  byId("gateway").hidden = isEntry;
  for (const id of ["logout", "own-password", "who", "menu", "skip"]) {
    byId(id).hidden = isEntry;
  }
}

export function askToLogIn(note) {
  showEntry(true);
  byId("login-note").textContent = note;
  byId("login-problem").textContent = "";
  byId("password").value = "";
  document.title = `${t("Log in")} – ${t("Home gateway")}`;
  byId("password").focus();
}

function problemOf(answer) {
  if (answer.status === 401 || answer.status === 422 || answer.status === 400) {
    return t("Wrong user or password.");
  }
  return reasonOf(answer);
}

// A user's password is no value of the form: a button asks for it, and it is set by a request of its
// own. Nothing for who may not set it. `me` is the session.
export function passwordRow(draft, path, me, set) {
  const parent = path.slice(0, -1);
  const { name } = draft.valueAt(parent);
  const isOwn = name === me.user;
  if (!isOwn && me.role !== "administer") {
    return null;
  }
  const isStored = draft.valueBefore(parent) !== undefined;
  return make(
    "div",
    { className: "field" },
    make("strong", {}, t("Password")),
    make(
      "div",
      {},
      isStored
        ? button(t("Set the password…"), () => set(name, isOwn), {
            "aria-label": t("Set the password of {0}", name),
          })
        : make("p", { className: "about" }, t("Save the new user first, then set a password.")),
    ),
  );
}

// Who is logged in: {user, role, idleSeconds}; null when nobody is.
export async function whoIsThere() {
  const answer = await session();
  return isDone(answer) ? answer.value : null;
}

// Calls arrived(session) when somebody has logged in.
export function listenForLogIn(arrived) {
  byId("login").addEventListener("submit", async (event) => {
    event.preventDefault();
    const answer = await logIn(byId("user").value.trim(), byId("password").value);
    byId("password").value = "";
    const found = isDone(answer) ? await whoIsThere() : null;
    if (found !== null) {
      byId("login-problem").textContent = "";
      arrived(found);
      return;
    }
    byId("login-problem").textContent = problemOf(answer);
    byId("password").focus();
  });
}
