// Questions that must be answered before anything else, and the form that sets a password. Both are
// modal dialogs: the browser keeps the keyboard inside, and Escape is "no".
import { button, make } from "./dom.js";
import { t } from "./text.js";
import { isDone, setPassword } from "./api.js";
import { reasonOf } from "./reasons.js";

function open(dialog) {
  document.body.append(dialog);
  dialog.addEventListener("close", () => dialog.remove());
  dialog.showModal();
}

// Asks, with the choices as [value, text] from the safest on; answers the value, or null for Escape.
export function ask(title, text, lines, choices) {
  return new Promise((answer) => {
    const dialog = make(
      "dialog",
      { "aria-labelledby": "question" },
      make("h2", { id: "question" }, title),
      make("p", {}, text),
      lines.length > 0
        ? make("ul", { className: "list-of-changes" }, ...lines.map((one) => make("li", {}, one)))
        : null,
      make(
        "div",
        { className: "choices" },
        ...choices.map(([value, words], index) =>
          button(words, () => dialog.close(value), { className: index === 0 ? "primary" : "" }),
        ),
      ),
    );
    dialog.addEventListener("close", () => answer(dialog.returnValue || null));
    open(dialog);
  });
}

function passwordInput(id, autocomplete) {
  return make("input", { type: "password", id, autocomplete, required: true, maxLength: 64 });
}

const wrongLength = (password) => password.length < 8 || password.length > 64;

// Sets the password of a user; the own one needs the current one. Answers whether it was set.
export function askForPassword(user, isOwn) {
  return new Promise((answer) => {
    const current = passwordInput("password-current", "current-password");
    const fresh = passwordInput("password-new", "new-password");
    const again = passwordInput("password-again", "new-password");
    const problem = make("p", { className: "problem", role: "alert" });
    const form = make(
      "form",
      { className: "stacked", noValidate: true },
      make("h2", { id: "password-title" }, t("Password of {0}", user)),
      make("input", {
        type: "text",
        autocomplete: "username",
        value: user,
        hidden: true,
        "aria-label": t("User"),
      }),
      ...(isOwn ? [make("label", { htmlFor: current.id }, t("Current password")), current] : []),
      make("label", { htmlFor: fresh.id }, t("New password")),
      fresh,
      make("p", { className: "hint" }, t("8 to 64 characters.")),
      make("label", { htmlFor: again.id }, t("New password again")),
      again,
      problem,
      make(
        "div",
        { className: "choices" },
        make("button", { type: "submit", className: "primary" }, t("Set the password")),
        button(t("Cancel"), () => dialog.close()),
      ),
    );
    const dialog = make("dialog", { "aria-labelledby": "password-title" }, form);
    form.addEventListener("submit", async (event) => {
      event.preventDefault();
      if (wrongLength(fresh.value) || fresh.value !== again.value) {
        problem.textContent = wrongLength(fresh.value)
          ? t("The new password must have 8 to 64 characters.")
          : t("The two new passwords differ.");
        (wrongLength(fresh.value) ? fresh : again).focus();
        return;
      }
      const result = await setPassword(user, fresh.value, isOwn ? current.value : null);
      if (isDone(result)) {
        dialog.close("done");
      } else {
        problem.textContent =
          result.status === 401 || result.status === 403
            ? t("The current password is another one, or you may not do this.")
            : reasonOf(result);
      }
    });
    dialog.addEventListener("close", () => answer(dialog.returnValue === "done"));
    open(dialog);
  });
}
