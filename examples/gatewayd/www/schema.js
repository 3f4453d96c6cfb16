// What a schema says about a value: the shape of a form. References are followed, "if" and "then"
// are decided by the value, so that a form sees one flat schema of each value.
//
// Only what the areas' schemas use is understood. The gateway checks every change against the whole
// schema; what is found wrong here is only found sooner.
import { t } from "./text.js";

export const typeOf = (schema) => (Array.isArray(schema.type) ? schema.type[0] : schema.type);
export const mayBeNull = (schema) => Array.isArray(schema.type) && schema.type.includes("null");
export const isScalar = (schema) => !["object", "array"].includes(typeOf(schema));
export const isSecret = (schema) => schema.writeOnly === true;
export const isState = (schema) => schema.readOnly === true;

// Two schemas of one value as one; what `more` says wins.
function merge(schema, more) {
  const merged = { ...schema, ...more };
  if (schema.properties && more.properties) {
    merged.properties = { ...schema.properties };
    for (const [name, member] of Object.entries(more.properties)) {
      merged.properties[name] = { ...schema.properties[name], $also: member };
    }
  }
  if (schema.required && more.required) {
    merged.required = [...new Set([...schema.required, ...more.required])];
  }
  if (schema.items && more.items) {
    merged.items = { ...schema.items, $also: more.items };
  }
  return merged;
}

// Whether a value meets a condition: members that are a constant.
function meets(condition, value) {
  return Object.entries(condition.properties || {}).every(
    ([name, member]) => !value || value[name] === undefined || value[name] === member.const,
  );
}

// The schema of a value, with references followed and conditions decided.
export function resolve(root, schema, value) {
  let flat = schema;
  while (flat.$ref) {
    const { $ref, ...own } = flat;
    flat = { ...root.$defs[$ref.slice("#/$defs/".length)], ...own };
  }
  if (flat.$also) {
    const { $also, ...own } = flat;
    flat = merge(own, $also);
  }
  for (const rule of [flat, ...(flat.allOf || [])]) {
    if (rule.if && rule.then && meets(rule.if, value)) {
      flat = merge(flat, rule.then);
    }
  }
  return flat;
}

// The schema of a member, or of the elements.
export function schemaOfChild(root, schema, name, value) {
  const child =
    typeOf(schema) === "array"
      ? schema.items
      : (schema.properties && schema.properties[name]) || schema.additionalProperties || {};
  return resolve(root, child, value);
}

// True when a place of its own, and not a row, shows an element: it has many members or deep ones.
export function isLarge(root, schema) {
  const members = Object.values(schema.properties || {}).map((one) => resolve(root, one));
  return (
    typeOf(schema) === "object" &&
    (members.length > 4 || members.some((one) => !isScalar(one) || isSecret(one)))
  );
}

// True when some value below has this: isSecret or isState. The number of an element does not count:
// it is given once.
export function hasInside(root, schema, test) {
  if (test(schema)) {
    return true;
  }
  const members = Object.entries(schema.properties || {}).filter(([name]) => name !== "id");
  const below = schema.items ? [schema.items] : members.map(([, member]) => member);
  return below.some((one) => hasInside(root, resolve(root, one), test));
}

// What a new value starts with.
export function newValue(root, schema) {
  if (schema.default !== undefined) {
    return structuredClone(schema.default);
  }
  switch (typeOf(schema)) {
    case "object":
      return Object.fromEntries(
        (schema.required || [])
          .filter((name) => !resolve(root, schema.properties[name]).set)
          .map((name) => [name, newValue(root, resolve(root, schema.properties[name]))]),
      );
    case "array":
      return schema.minItems ? [newValue(root, resolve(root, schema.items))] : [];
    case "boolean":
      return false;
    case "integer":
    case "number":
      return schema.enum ? schema.enum[0] : Math.max(schema.minimum ?? 0, 0);
    default:
      return mayBeNull(schema) ? null : schema.enum ? schema.enum[0] : "";
  }
}

// A new element of a list; an "id" is the smallest that is free.
export function newElement(root, schema, elements) {
  const element = newValue(root, schema);
  const id = schema.properties && schema.properties.id && resolve(root, schema.properties.id);
  if (id && typeOf(id) === "integer") {
    const taken = new Set(elements.map((one) => one.id));
    element.id = id.minimum;
    while (taken.has(element.id)) {
      element.id += 1;
    }
  }
  return element;
}

// The title of a choice.
export function choiceTitle(schema, value) {
  const label = schema.labels && schema.labels[value];
  return label ? t(label) : String(value);
}

function rangeSentence(low, high, unit) {
  const end = unit ? " " + unit : "";
  if (low !== undefined && high !== undefined) {
    return t("must be from {0} to {1}", low, high + end);
  }
  return low !== undefined
    ? t("must be at least {0}", low + end)
    : t("must be at most {0}", high + end);
}

function lengthSentence({ minLength, maxLength }) {
  if (minLength && maxLength) {
    return t("must have {0} to {1} characters", minLength, maxLength);
  }
  return minLength
    ? t("must have at least {0} characters", minLength)
    : t("must have at most {0} characters", maxLength);
}

// Why a value is refused, in the words of its own schema. `message` is the gateway's sentence.
export function explain(schema, keyword, message) {
  switch (keyword) {
    case "minimum":
    case "maximum":
    case "exclusiveMinimum":
    case "exclusiveMaximum":
      return rangeSentence(schema.minimum, schema.maximum, schema.unit);
    case "minLength":
    case "maxLength":
      return lengthSentence(schema);
    case "pattern":
    case "format":
    case "anyOf":
      return schema.hint ? t("is not valid") + ". " + t(schema.hint) : t("is not valid");
    case "enum":
    case "const":
      return t("must be one of the choices");
    case "type":
      return ["integer", "number"].includes(typeOf(schema))
        ? t("must be a number")
        : t("is not valid");
    case "required":
      return t("is missing");
    case "uniqueItems":
      return t("has the same entry twice");
    case "minItems":
      return t("must have at least {0} entries", schema.minItems);
    case "maxItems":
      return t("must have at most {0} entries", schema.maxItems);
    default:
      return message || t("is refused");
  }
}

function brokenNumber(schema, value) {
  if (typeof value !== "number") {
    return "type";
  }
  if (value < schema.minimum || (typeOf(schema) === "integer" && !Number.isInteger(value))) {
    return "minimum";
  }
  return value > schema.maximum ? "maximum" : null;
}

function brokenText(schema, value) {
  const length = [...value].length;
  if (length < schema.minLength || length > schema.maxLength) {
    return length < schema.minLength ? "minLength" : "maxLength";
  }
  return schema.pattern && !new RegExp(schema.pattern, "u").test(value) ? "pattern" : null;
}

// The keyword that a scalar breaks, or null.
export function brokenKeyword(schema, value) {
  if (value === null) {
    return mayBeNull(schema) ? null : "type";
  }
  if (schema.enum && !schema.enum.includes(value)) {
    return "enum";
  }
  if (["integer", "number"].includes(typeOf(schema))) {
    return brokenNumber(schema, value);
  }
  return typeof value === "string" ? brokenText(schema, value) : null;
}
