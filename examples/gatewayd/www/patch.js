// From an edited document to a JSON Patch (RFC 6902), and from somebody else's document to one that
// has our edits too.
//
// The elements of a list know where they come from: `origins` leads from an element of the edited
// document to its index in the document that was read. So an element that moved is moved, and its
// secrets, which this page never saw, go with it.

export const origins = new WeakMap();

const isObject = (value) => value !== null && typeof value === "object" && !Array.isArray(value);
export const isList = (value) => Array.isArray(value) && value.some(isObject);
const step = (path, name) => `${path}/${String(name).replace(/~/g, "~0").replace(/\//g, "~1")}`;

// A copy to edit.
export function copyToEdit(value) {
  if (Array.isArray(value)) {
    return value.map((element, index) => {
      const copy = copyToEdit(element);
      if (isObject(copy)) {
        origins.set(copy, index);
      }
      return copy;
    });
  }
  return isObject(value)
    ? Object.fromEntries(Object.entries(value).map(([name, member]) => [name, copyToEdit(member)]))
    : value;
}

export function isSame(left, right) {
  if (Array.isArray(left) && Array.isArray(right)) {
    return left.length === right.length && left.every((one, index) => isSame(one, right[index]));
  }
  if (isObject(left) && isObject(right)) {
    const names = Object.keys(left);
    return (
      names.length === Object.keys(right).length &&
      names.every((name) => name in right && isSame(left[name], right[name]))
    );
  }
  return left === right;
}

// True when elements were added, removed or moved.
const isRearranged = (base, work) =>
  work.length !== base.length || work.some((element, index) => origins.get(element) !== index);

function patchObject(base, work, path, out) {
  for (const name of new Set([...Object.keys(base), ...Object.keys(work)])) {
    const at = step(path, name);
    if (!(name in work)) {
      out.operations.push({ op: "remove", path: at });
    } else if (!(name in base)) {
      out.operations.push({ op: "add", path: at, value: work[name] });
    } else {
      patchValue(base[name], work[name], at, out);
    }
  }
}

function rearrange(base, work, path, out) {
  out.operations.push(...out.guard(base, path));
  const kept = new Set(work.map((element) => origins.get(element)));
  const order = base.map((element, index) => index);
  for (let index = base.length - 1; index >= 0; index -= 1) {
    if (!kept.has(index)) {
      out.operations.push({ op: "remove", path: step(path, index) });
      order.splice(index, 1);
    }
  }
  work.forEach((element, index) => {
    const origin = origins.get(element);
    const at = step(path, index);
    if (origin === undefined) {
      out.operations.push({ op: "add", path: at, value: element });
      order.splice(index, 0, undefined);
    } else if (order[index] !== origin) {
      const from = order.indexOf(origin);
      out.operations.push({ op: "move", from: step(path, from), path: at });
      order.splice(index, 0, ...order.splice(from, 1));
    }
  });
}

function patchList(base, work, path, out) {
  if (isRearranged(base, work)) {
    rearrange(base, work, path, out);
  }
  work.forEach((element, index) => {
    const origin = origins.get(element);
    if (origin !== undefined) {
      patchValue(base[origin], element, step(path, index), out);
    }
  });
}

function patchValue(base, work, path, out) {
  if (isObject(base) && isObject(work)) {
    patchObject(base, work, path, out);
  } else if (Array.isArray(base) && Array.isArray(work) && (isList(base) || isList(work))) {
    patchList(base, work, path, out);
  } else if (!isSame(base, work)) {
    out.operations.push({ op: "test", path, value: base }, { op: "replace", path, value: work });
  }
}

// The operations that make `work` of `base`. guard(list, path) gives the tests that must hold before
// a list is rearranged.
export function patchOf(base, work, guard) {
  const out = { operations: [], guard };
  patchValue(base, work, "", out);
  return out.operations;
}

const keyOf = (element) => element.id ?? element.name ?? element.mac ?? element.host ?? undefined;

// Adds our new elements; one whose number they have given, too, gets the next free one.
function addTo(list, added) {
  for (const element of added) {
    while (element.id !== undefined && list.some((one) => one.id === element.id)) {
      element.id += 1;
    }
    list.push(element);
  }
  return list;
}

// Elements of theirs that we kept, with our edits, and then those that we added.
function rebaseList(base, work, theirs) {
  const ours = new Map(
    work.filter((one) => origins.has(one)).map((one) => [origins.get(one), one]),
  );
  const merged = [];
  theirs.forEach((element, index) => {
    const was = base.findIndex((one, place) =>
      keyOf(one) === undefined ? place === index : keyOf(one) === keyOf(element),
    );
    if (was >= 0 && !ours.has(was)) {
      return;
    }
    const copy = was < 0 ? copyToEdit(element) : rebase(base[was], ours.get(was), element);
    origins.set(copy, index);
    merged.push(copy);
  });
  return addTo(
    merged,
    work.filter((one) => !origins.has(one)),
  );
}

// What was read anew, with the edits that led from `base` to `work`.
export function rebase(base, work, theirs) {
  if (isObject(base) && isObject(work) && isObject(theirs)) {
    const merged = {};
    for (const name of new Set([...Object.keys(theirs), ...Object.keys(work)])) {
      if (name in base && !(name in work)) {
        continue;
      }
      if (name in theirs && name in work && name in base) {
        merged[name] = rebase(base[name], work[name], theirs[name]);
      } else if (name in work && !(name in base)) {
        merged[name] = work[name];
      } else if (name in theirs) {
        merged[name] = copyToEdit(theirs[name]);
      }
    }
    return merged;
  }
  if (Array.isArray(theirs) && (isList(base) || isList(work)) && isList(theirs)) {
    return rebaseList(base, work, theirs);
  }
  return isSame(base, work) ? copyToEdit(theirs) : work;
}
