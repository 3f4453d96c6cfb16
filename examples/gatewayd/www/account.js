// Logging in and out. The form is all there is until somebody has logged in, and gone afterwards.
import { byId } from "./dom.js";
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
