// The gateway's page: log in, walk an area as a tree, change a value, read why a change was refused.
// Whatever comes from the gateway is put on the page as text, never as HTML.
"use strict";

const $ = (id) => document.getElementById(id);

function say(text, kind) {
  $("status").textContent = text;
  $("status").className = kind || "";
}

// Sends a request; gives the status and the JSON value of the answer.
async function ask(method, path, body) {
  const options = { method, headers: {} };
  if (body !== undefined) {
    options.headers["Content-Type"] = "application/json";
    options.body = JSON.stringify(body);
  }
  let response;
  try {
    response = await fetch("/api/v1/" + path, options);
  } catch (problem) {
    return { status: 0, value: { error: "the gateway does not answer" } };
  }
  const text = await response.text();
  let value = null;
  try {
    value = text === "" ? null : JSON.parse(text);
  } catch (problem) {
    value = { error: "the gateway's answer makes no sense" };
  }
  if (response.status === 401 && path !== "login") {
    showLogin("Your session has ended. Log in again.");
  }
  return { status: response.status, value };
}

function make(tag, properties, ...children) {
  const element = Object.assign(document.createElement(tag), properties);
  element.append(...children);
  return element;
}

// --- Logging in and out ------------------------------------------------------------------------

function showLogin(text) {
  $("gateway").hidden = true;
  $("logout").hidden = true;
  $("login").hidden = false;
  $("password").value = "";
  $("values").replaceChildren();
  say(text || "", text ? "bad" : "");
  $("password").focus();
}

async function showGateway() {
  const { status, value } = await ask("GET", "areas");
  if (status !== 200) {
    showLogin("");
    return;
  }
  $("login").hidden = true;
  $("logout").hidden = false;
  $("gateway").hidden = false;
  $("areas").replaceChildren(...value.map((area) => {
    const button = make("button", { type: "button", textContent: area });
    button.addEventListener("click", () => showArea(area));
    return make("li", {}, button);
  }));
  showArea(value[0]);
}

$("login").addEventListener("submit", async (event) => {
  event.preventDefault();
  const { status, value } = await ask("POST", "login",
    { user: $("user").value, password: $("password").value });
  $("password").value = "";
  if (status === 200) {
    say("Logged in.", "good");
    showGateway();
    return;
  }
  const wait = value && value.data ? value.data.waitMinutes : 0;
  if (wait > 0) {
    say(`Too many failed attempts. Wait ${wait} ${wait === 1 ? "minute" : "minutes"} before the next one.`, "bad");
  } else if (status === 401) {
    say("Wrong user or password.", "bad");
  } else {
    say((value && (value.error || (value.status && value.status.text))) || `Login failed (${status}).`, "bad");
  }
  $("password").focus();
});

$("logout").addEventListener("click", async () => {
  await ask("POST", "logout", {});
  showLogin("");
  say("Logged out.");
});

// --- The tree ----------------------------------------------------------------------------------

async function showArea(area) {
  const { status, value } = await ask("GET", area);
  if (status !== 200) {
    say(value && value.error ? value.error : `Cannot read ${area} (${status}).`, "bad");
    return;
  }
  for (const button of $("areas").querySelectorAll("button")) {
    button.setAttribute("aria-current", String(button.textContent === area));
  }
  $("area-name").textContent = area;
  $("values").replaceChildren(...branches(area, value));
  $("area-name").focus();
}

// One element for each member or element of a value. A branch is filled when it is first opened.
function branches(path, value) {
  return Object.keys(value).map((name) => {
    const child = value[name];
    const childPath = `${path}/${encodeURIComponent(name)}`;
    return child !== null && typeof child === "object" ? branch(childPath, name, child)
                                                       : leaf(childPath, name, child);
  });
}

function branch(path, name, value) {
  const count = Object.keys(value).length;
  const hint = value.ssid || value.name || value.label || value.host || value.id;
  const summary = make("summary", {}, name, " ");
  summary.append(make("small", { textContent: hint !== undefined && typeof hint !== "object"
    ? String(hint) : `${count} ${count === 1 ? "value" : "values"}` }));
  const details = make("details", {}, summary);
  details.addEventListener("toggle", () => {
    if (details.open && details.children.length === 1) {
      details.append(...branches(path, value));
    }
  });
  return details;
}

function leaf(path, name, value) {
  const id = `value-${path}`;
  const input = make("input", { id });
  if (typeof value === "boolean") {
    input.type = "checkbox";
    input.checked = value;
  } else if (typeof value === "number") {
    input.type = "number";
    input.step = "any";
    input.value = String(value);
  } else {
    input.type = "text";
    input.value = value === null ? "" : value;
    input.placeholder = value === null ? "nothing" : "";
  }
  const save = make("button", { type: "submit", className: "save", textContent: "Save", hidden: true });
  const problem = make("p", { className: "problem", id: `${id}-problem`, hidden: true });
  input.setAttribute("aria-describedby", problem.id);
  const form = make("form", { className: "value", noValidate: true },
    make("label", { htmlFor: id, textContent: name }), input, save, problem);

  const wanted = () => {
    if (input.type === "checkbox") return input.checked;
    if (input.type === "number") return input.value === "" ? null : Number(input.value);
    return value === null && input.value === "" ? null : input.value;
  };
  input.addEventListener("input", () => {
    save.hidden = wanted() === value;
    problem.hidden = true;
    input.removeAttribute("aria-invalid");
  });
  form.addEventListener("submit", async (event) => {
    event.preventDefault();
    const tried = wanted();
    const { status, value: answer } = await ask("PUT", path, tried);
    if (status === 200 || status === 201 || status === 204) {
      value = tried;
      save.hidden = true;
      say(`Saved ${name}.`, "good");
      return;
    }
    const why = answer && answer.error ? answer.error : `status ${status}`;
    problem.textContent = `Not saved: ${why}`;
    problem.hidden = false;
    input.setAttribute("aria-invalid", "true");
    say(`${name} was not saved.`, "bad");
    form.scrollIntoView({ block: "center" });
    input.focus({ preventScroll: true });
  });
  return form;
}

showGateway();
