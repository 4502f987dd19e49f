// Replies that become objects. All of this happens on the JavaScript thread, whose own time is measured.
import assert from 'node:assert/strict';

import { addon, average, compare } from './lib/rounds.mjs';
import { threadNanoseconds, threadTime } from './lib/thread_time.mjs';

const zelk = addon('zelklogservice');
const bareReply = addon('bare_reply');
const parts = addon('product_parts');
const { answerWith } = addon('many_replies');

const ROUNDS = 31;
const FEW = 1_000;
const SOME = 10_000;
const MANY = 100_000;
// Batches of few are as long as one of many.
const REPEATS = MANY / FEW;

const members = Object.fromEntries(Array.from({ length: SOME }, (_, i) =>
  [`member${i}`, [i, `text ${i}`, i % 3 === 0, i + 0.5, null][i % 5]]));
const reply = JSON.stringify(members);
const toObject = (convert) => () => threadTime(() => convert(reply, {})) / SOME;
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
  return () => threadTime(() => parts.convertReply(text, {})) / count;
};
const parsedFew = parsed(FEW);
await compare('reply-growth', 5, parsed(MANY), () => average(REPEATS, parsedFew));

// From a service of our own: the reference service's answers are smaller.
const answered = (count) => async () => {
  answerWith(count);
  const answer = zelk.getModemLogConfig(['key']);
  const start = threadNanoseconds();
  await answer;
  return (threadNanoseconds() - start) / count;
};
await compare('replies-growth', 5, answered(MANY), () => average(REPEATS, answered(FEW)));
await compare('replies-million', 3, answered(1_000_000), () => average(10, answered(SOME)));
