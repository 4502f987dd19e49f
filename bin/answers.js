'use strict';

const { visible, visibleInLine } = require('./output.js');

// How an answer looks on a terminal. Each function takes the answer and a painter { good, weak, strong }.

const PLAIN = { good: String, weak: String, strong: String };

const paint = (on, off) => (text) => `\u001b[${on}m${text}\u001b[${off}m`;

const COLOURS = { good: paint(32, 39), weak: paint(2, 22), strong: paint(1, 22) };

function painterFor(stream) {
  return stream.isTTY && !process.env.NO_COLOR ? COLOURS : PLAIN;
}

const status = (on, { good, weak }) => (on ? good('on') : weak('off'));

const verdict = (accepted, { good, strong }) => (accepted ? good('accepted') : strong('not accepted'));

// The Bluetooth switch answers false whenever it succeeds.
const done = (answer, { good }) => good('done');

const text = (answer) => visible(answer);

// A service may leave out a key or a value.
const word = (value) => visibleInLine(value ?? '(missing)');

const masks = (items, { strong }) =>
  items.map(({ configKey, value }) => `${strong(word(configKey))} ${word(value)}`).join('\n');

const json = (value) => visibleInLine(JSON.stringify(value));

function configs(items, { strong, weak }) {
  return items.map(({ configKey, value }) => {
    const parameters = Object.entries(value)
      .map(([name, setting]) => `  ${visibleInLine(name)} = ${json(setting)}`);
    const lines = parameters.length > 0 ? parameters : [weak('  (nothing set)')];
    return [strong(word(configKey)), ...lines].join('\n');
  }).join('\n');
}

module.exports = { painterFor, status, verdict, done, text, masks, configs, json };
