// Requests to the gateway. Every answer is {status, value, wait}: the status (0 when none came), the
// JSON value, and the seconds to wait before the next attempt.
//
// A 401 means that the session has ended: whoever asked gets the answer too, but the listener hears
// of it first and shows the log-in form.

let whenSessionEnds = () => {};
let whenAsked = () => {};

export function listen(sessionEnded, asked) {
  whenSessionEnds = sessionEnded;
  whenAsked = asked;
}

function valueOf(text) {
  try {
    return text === "" ? null : JSON.parse(text);
  } catch {
    return { error: "" };
  }
}

async function ask(method, path, body, type = "application/json") {
  const options = { method, headers: {}, cache: "no-store" };
  if (body !== undefined) {
    options.headers["Content-Type"] = type;
    options.body = JSON.stringify(body);
  }
  let response;
  let text;
  try {
    response = await fetch("/api/v1/" + path, options);
    text = await response.text();
  } catch {
    return { status: 0, value: null, wait: 0 };
  }
  if (response.status === 401 && path !== "login" && path !== "session" && path !== "password") {
    whenSessionEnds();
  } else if (response.ok && path !== "logout") {
    whenAsked();
  }
  return {
    status: response.status,
    value: valueOf(text),
    wait: Number(response.headers.get("Retry-After")) || 0,
  };
}

export const isDone = (answer) => answer.status >= 200 && answer.status < 300;

export const logIn = (user, password) => ask("POST", "login", { user, password });
export const logOut = () => ask("POST", "logout", {});
export const session = () => ask("GET", "session");
export const areas = () => ask("GET", "areas");
export const read = (area) => ask("GET", area);
export const schemaOf = (area) => ask("GET", "schemas/" + area);
export const patch = (area, operations) =>
  ask("PATCH", area, operations, "application/json-patch+json");
export const setPassword = (user, password, current) =>
  ask("POST", "password", current === null ? { user, password } : { user, password, current });
