'use strict';

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

const text = (answer) => answer;

const masks = (items, { strong }) =>
  items.map(({ configKey, value }) => `${strong(configKey)} ${value}`).join('\n');

function configs(items, { strong, weak }) {
  return items.map(({ configKey, value }) => {
    const settings = Object.entries(value).map(([name, setting]) => `  ${name} = ${JSON.stringify(setting)}`);
    return [strong(configKey), ...(settings.length > 0 ? settings : [weak('  (nothing set)')])].join('\n');
  }).join('\n');
}

module.exports = { painterFor, status, verdict, done, text, masks, configs };
