// Making elements. Whatever comes from the gateway is put on the page as text, never as HTML.

// An element with properties (or attributes, for names with a "-"), and children: elements, texts,
// or nothing.
export function make(tag, properties = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (value === undefined || value === null) {
      continue;
    }
    if (name.includes("-") || name === "role" || name === "for" || name === "list") {
      element.setAttribute(name, value);
    } else {
      element[name] = value;
    }
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

export function button(text, action, properties = {}) {
  const element = make("button", { type: "button", ...properties }, text);
  element.addEventListener("click", action);
  return element;
}

export const byId = (id) => document.getElementById(id);

// Tells a screen reader, and shows, what has just happened. `kind` is "good", "bad" or "".
export function say(text, kind = "") {
  byId("status").textContent = text;
  byId("status").className = kind;
}
