// An area that is being edited: the document as it was read, the edited copy, and why parts of it
// were refused. A path is a list of member names and indices.
import { t } from "./text.js";
import {
  brokenKeyword,
  choiceTitle,
  explain,
  hasInside,
  isLarge,
  isScalar,
  isSecret,
  isState,
  newElement,
  resolve,
  schemaOfChild,
  typeOf,
} from "./schema.js";
import { copyToEdit, isSame, origins, patchOf, rebase } from "./patch.js";

export const pointerOf = (path) =>
  path.map((step) => "/" + String(step).replace(/~/g, "~0").replace(/\//g, "~1")).join("");
export const pathOf = (pointer) =>
  pointer
    .split("/")
    .slice(1)
    .map((step) => step.replace(/~1/g, "/").replace(/~0/g, "~"));

const NAMES = [
  "ssid",
  "name",
  "hostName",
  "label",
  "host",
  "pattern",
  "user",
  "path",
  "category",
  "zone",
  "version",
  "mac",
  "code",
  "id",
];

export class Draft {
  constructor(area, schema, document) {
    this.area = area;
    this.root = schema;
    this.refusals = new Map();
    this.take(document);
  }

  // The document as it is now; edits are dropped.
  take(document) {
    this.base = document;
    this.work = copyToEdit(document);
    this.refusals.clear();
  }

  // The document has been changed by somebody else; edits are kept.
  rebase(document) {
    const before = this.base;
    this.work = rebase(before, this.work, document);
    this.base = document;
    this.refusals.clear();
  }

  valueAt(path) {
    return path.reduce(
      (value, step) => (value === null || value === undefined ? undefined : value[step]),
      this.work,
    );
  }

  // What was read for the value that is now at the path.
  valueBefore(path) {
    let base = this.base;
    let work = this.work;
    for (const step of path) {
      work = work === undefined || work === null ? undefined : work[step];
      const from = origins.has(Object(work))
        ? origins.get(work)
        : Array.isArray(base) && typeof work === "object"
          ? undefined
          : step;
      base = base === undefined || base === null || from === undefined ? undefined : base[from];
    }
    return base;
  }

  schemaAt(path) {
    let value = this.work;
    let schema = resolve(this.root, this.root, value);
    for (const step of path) {
      value = value === undefined || value === null ? undefined : value[step];
      schema = schemaOfChild(this.root, schema, step, value);
    }
    return schema;
  }

  set(path, value) {
    const parent = this.valueAt(path.slice(0, -1));
    if (value === undefined) {
      delete parent[path[path.length - 1]];
    } else {
      parent[path[path.length - 1]] = value;
    }
    this.refusals.delete(pointerOf(path));
  }

  // A new element at the end of a list; its index.
  add(path) {
    const list = this.valueAt(path);
    const items = resolve(this.root, this.schemaAt(path).items);
    list.push(newElement(this.root, items, list));
    this.refusals.clear();
    return list.length - 1;
  }

  removeElement(path, index) {
    this.valueAt(path).splice(index, 1);
    this.refusals.clear();
  }

  moveElement(path, from, to) {
    const list = this.valueAt(path);
    list.splice(to, 0, ...list.splice(from, 1));
    this.refusals.clear();
  }

  isChanged(path) {
    return !isSame(this.valueBefore(path), this.valueAt(path));
  }

  patch() {
    return patchOf(this.base, this.work, (list, pointer) => this.guard(list, pointer));
  }

  // What is unsaved: the operations that change something.
  changes() {
    return this.patch().filter((one) => one.op !== "test");
  }

  isDirty() {
    return this.changes().length > 0;
  }

  // A list is tested as a whole, unless it has secrets, which cannot be tested, or values that the
  // gateway itself changes all the time; then by the names of its elements.
  guard(list, pointer) {
    const schema = this.schemaAt(pathOf(pointer));
    if (
      !hasInside(this.root, { ...schema, readOnly: false }, (one) => isSecret(one) || isState(one))
    ) {
      return [{ op: "test", path: pointer, value: list }];
    }
    const tests = [];
    list.forEach((element, index) => {
      const name = ["id", "name", "mac", "host"].find((one) => element[one] !== undefined);
      if (name) {
        tests.push({ op: "test", path: `${pointer}/${index}/${name}`, value: element[name] });
      }
    });
    return tests;
  }

  // Looks through the edited copy for what the schema refuses, as far as this page can tell.
  check() {
    this.refusals.clear();
    this.checkValue([], this.schemaAt([]), this.work, false);
    return this.refusals.size === 0;
  }

  checkValue(path, schema, value, isNew) {
    if (isState(schema)) {
      return;
    }
    if (value !== null && typeof value === "object") {
      this.checkInside(path, schema, value, isNew);
    } else {
      const keyword = brokenKeyword(schema, value);
      if (keyword) {
        this.refusals.set(pointerOf(path), explain(schema, keyword));
      }
    }
  }

  checkInside(path, schema, value, isNew) {
    for (const name of Object.keys(value)) {
      const child = value[name];
      const isAdded = isNew || (Array.isArray(value) && !origins.has(Object(child)));
      this.checkValue(
        [...path, name],
        schemaOfChild(this.root, schema, name, child),
        child,
        isAdded,
      );
    }
    for (const name of schema.required || []) {
      const member = schemaOfChild(this.root, schema, name);
      if (!(name in value) && (isNew || !isSecret(member)) && !member.set) {
        this.refusals.set(pointerOf([...path, name]), t("is missing"));
      }
    }
  }

  // Takes the gateway's refusals over, in the words of the fields.
  refuse(violations) {
    this.refusals.clear();
    for (const one of violations) {
      const path = pathOf(one.path);
      const schema = this.schemaAt(path);
      const missing =
        one.keyword === "required" && typeOf(schema) === "object"
          ? (schema.required || []).find((name) => !(name in (this.valueAt(path) || {})))
          : null;
      this.refusals.set(
        pointerOf(missing ? [...path, missing] : path),
        explain(schema, one.keyword, one.message),
      );
    }
  }

  // The place that shows a path: a group of the area, or a large element of a list.
  placeOf(path) {
    let place = path.slice(0, 1);
    if (place.length === 1 && isScalar(this.schemaAt(place))) {
      place = [];
    }
    for (let length = 2; length <= path.length; length += 1) {
      const list = this.schemaAt(path.slice(0, length - 1));
      const here = path.slice(0, length);
      if (typeOf(list) === "array" && isLarge(this.root, this.schemaAt(here))) {
        place = here;
      }
    }
    return place;
  }

  // What a path is called: "Networks, Garden Path, Hidden".
  nameOf(path) {
    return path.map((step, index) => this.titleOf(path.slice(0, index + 1))).join(", ");
  }

  titleOf(path) {
    const schema = this.schemaAt(path);
    const last = path[path.length - 1];
    return typeOf(this.schemaAt(path.slice(0, -1))) === "array"
      ? this.titleOfElement(schema, this.valueAt(path), last)
      : t(schema.title || String(last));
  }

  // An element is called by its first member that is a name, or else by its number.
  titleOfElement(schema, element, index) {
    const name =
      element !== null && typeof element === "object"
        ? NAMES.find((one) => element[one] !== undefined && element[one] !== "")
        : undefined;
    return name === undefined || typeof element[name] === "number"
      ? `${t(schema.title || "")} ${Number(index) + 1}`
      : choiceTitle(schemaOfChild(this.root, schema, name), element[name]);
  }
}
