'use strict';

// Reads configuration items as a person types them: NAME key=value key=value …
//
//   key=true  key=false     a boolean
//   key=42                  a number
//   key=[1,2]               an array of booleans or numbers
//   key="42"                a text, without the quotes and otherwise unchanged
//   key:=JSON               any of these, written as JSON
//   key=anything else       a text

class InputError extends Error {}

const MAX_TEXT_BYTES = 8194;

// The module sends an empty text in place of a longer one, and only logs that.
function checkText(text, what) {
  if (Buffer.byteLength(text) > MAX_TEXT_BYTES) {
    throw new InputError(`${what} is longer than ${MAX_TEXT_BYTES} bytes`);
  }
  return text;
}

function checkNumber(number, what) {
  if (!Number.isInteger(number) || number !== (number | 0)) {
    throw new InputError(
      `${what}: ${number} is not a whole number of 32 bits (${what}="${number}" makes it a text)`);
  }
  return number;
}

function checkArray(array, what) {
  const types = new Set(array.map((element) => typeof element));
  if (types.size !== 1 || !(types.has('boolean') || types.has('number'))) {
    throw new InputError(`${what}: only arrays of booleans and arrays of numbers reach the service`);
  }
  return array.map((element) => checkValue(element, what));
}

function checkValue(value, what) {
  switch (typeof value) {
    case 'boolean':
      return value;
    case 'number':
      return checkNumber(value, what);
    case 'string':
      return checkText(value, what);
    default:
      if (Array.isArray(value)) {
        return checkArray(value, what);
      }
      throw new InputError(`${what}: a value is a boolean, a number, a text or an array`);
  }
}

function parseJson(text, what) {
  try {
    return JSON.parse(text);
  } catch {
    throw new InputError(`${what}: ${text} is not JSON`);
  }
}

function parseValue(text, what) {
  if (text === 'true' || text === 'false') {
    return text === 'true';
  }
  if (/^-?\d+$/.test(text)) {
    return Number(text);
  }
  if (text.startsWith('[')) {
    return parseJson(text, what);
  }
  return /^".*"$/s.test(text) ? text.slice(1, -1) : text;
}

function parseParameter(text) {
  const [, name, json, value] = /^([^=]+?)(:?)=(.*)$/s.exec(text) ?? [];
  if (name === undefined) {
    throw new InputError(`"${text}" is not of the form key=value`);
  }
  return [name, checkValue(json ? parseJson(value, name) : parseValue(value, name), name)];
}

function parseItem([name, ...parameters]) {
  const configKey = checkText(name, 'the name of an item');
  return { configKey, value: Object.fromEntries(parameters.map(parseParameter)) };
}

module.exports = { InputError, checkText, parseItem };
