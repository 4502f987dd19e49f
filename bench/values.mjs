// Arguments that become items, and replies that become objects. All of this happens on the JavaScript thread,
// whose own time is measured.
import assert from 'node:assert/strict';

import { addon, average, compare } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const askedReader = addon('asked_reader');
const bareReply = addon('bare_reply');
const parts = addon('product_parts');
const { answerWith } = addon('many_replies');

const ROUNDS = 31;
const FEW = 1_000;
const SOME = 10_000;
const MANY = 100_000;
// Batches of few are as long as one of many.
const REPEATS = MANY / FEW;

const turn = () => new Promise((resolve) => setImmediate(resolve));

function timeOf(run) {
  const start = parts.threadNanoseconds();
  run();
  return parts.threadNanoseconds() - start;
}

const scalars = (i) => ({
  configKey: `key${i}`,
  value: { enable: i % 2 === 0, level: i, path: '/data/log/modem', size: 4096, name: 'modem', loop: false },
});
const lists = (i) => ({
  configKey: `key${i}`,
  value: {
    enable: i % 2 === 0, level: i, path: '/data/log/modem',
    masks: [1, 2, 3], flags: [true, false, true], names: ['ap', 'cp'],
  },
});
const itemsOf = (length, item) => Array.from({ length }, (_, i) => item(i));

// The items are complete when the call returns; the rest of the call is awaited but not counted.
const toItems = (items) => async () => {
  let answer;
  const time = timeOf(() => {
    answer = zelk.changeModemLogConfig(items);
  });
  await answer.catch(() => {}); // The service refuses more items than it keeps.
  await turn();
  return time / items.length;
};
const toItemsAsAsked = (items) => () => {
  const time = timeOf(() => askedReader.readItems(items));
  askedReader.dropItems();
  return time / items.length;
};

for (const [name, item] of [['items', scalars], ['items-lists', lists]]) {
  const items = itemsOf(SOME, item);
  await compare(name, ROUNDS, toItems(items), toItemsAsAsked(items));
}

const fewItems = itemsOf(FEW, scalars);
const manyItems = itemsOf(MANY, scalars);
await compare('items-growth', 5, toItems(manyItems), () => average(REPEATS, toItems(fewItems)));

const members = Object.fromEntries(Array.from({ length: SOME }, (_, i) =>
  [`member${i}`, [i, `text ${i}`, i % 3 === 0, i + 0.5, null][i % 5]]));
const reply = JSON.stringify(members);
const toObject = (convert) => () => timeOf(() => convert(reply, {})) / SOME;
await compare('reply', ROUNDS, toObject(parts.convertReply), toObject(bareReply.setMembers));

// Parts of a reply that cost time without becoming properties; whoever stored the text chose their number.
const partsOf = (count) => {
  const list = (part) => `[${Array(count).fill(part)}]`;
  const depth = 500;
  const deep = Array(Math.ceil(count / depth)).fill('['.repeat(depth) + ']'.repeat(depth));
  const text = String.raw`\n\u00e9\ud83d\ude00`.repeat(count);
  const members = [...Array(count).fill('"equal":1'), `"deep":[${deep}]`, `"text":"${text}"`,
    `"numbers":${list('12,-3.25e7')}`, `"texts":${list('"ap"')}`, `"long":0.${'1'.repeat(count)}`];
  return `{${members}${'/**/ //\n'.repeat(count)}${' \t\r\n'.repeat(count)}}`;
};
const parsed = (count) => {
  const text = partsOf(count);
  const object = {};
  parts.convertReply(text, object);
  assert.deepEqual(Object.keys(object), ['equal', 'long', 'text']);
  return () => timeOf(() => parts.convertReply(text, {})) / count;
};
const parsedFew = parsed(FEW);
await compare('reply-growth', 5, parsed(MANY), () => average(REPEATS, parsedFew));

// From a service of our own: the reference service's answers are smaller.
const answered = (count) => async () => {
  answerWith(count);
  const answer = zelk.getModemLogConfig(['key']);
  const start = parts.threadNanoseconds();
  await answer;
  return (parts.threadNanoseconds() - start) / count;
};
await compare('replies-growth', 5, answered(MANY), () => average(REPEATS, answered(FEW)));
await compare('replies-million', 3, answered(1_000_000), () => average(10, answered(SOME)));
