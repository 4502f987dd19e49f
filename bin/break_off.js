'use strict';

// What broke a call over D-Bus off: the log's words, in words for people.

const { short } = require('./output.js');

const MISSING = ['UnknownMethod', 'UnknownInterface', 'UnknownObject']
  .map((name) => `org.freedesktop.DBus.Error.${name}`);

// An error's text may be a whole traceback, which ends with what matters.
const lastLine = (text) => text.split(/[\r\n]+/).filter((line) => line.trim() !== '').at(-1) ?? '';

const ERROR = /^(\w+(?:\.\w+)+): (.*)$/s;

// The text of a call that broke off, shorter where it has a D-Bus error with more than a line.
const brief = (text) => text.replace(ERROR, (all, name, message) => `${name}: ${short(lastLine(message))}`);

const WORDS = [
  [/^the (service is gone)$/, (method, text, isGone) => `the log ${isGone}`],
  [/^no answer in time$/, (method) => `the log service did not answer ${method} in time`],
  [/^the answer has (the types .*)$/, (method, text, types) =>
    `the log service answers ${method} with ${types}`],
  [ERROR, (method, text, name) => (MISSING.includes(name)
    ? `the log service has no method ${method} (${brief(text)})`
    : `the log service answers ${method} with an error (${brief(text)})`)],
  [/./, (method, text) => `${method}: ${text}`],
];

// For the log's line `<method>: code <code>: <why>`.
function inWords(line) {
  const [, method, why] = /^(\w+): code \d+: (.*)$/s.exec(line);
  const [form, words] = WORDS.find(([pattern]) => pattern.test(why));
  return words(method, ...form.exec(why));
}

module.exports = { MISSING, brief, inWords };
