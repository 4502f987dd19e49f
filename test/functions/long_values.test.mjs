// Lists, items and replies of unusual length.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { fail, run, service, trace, zelk } from '../support/zelk.mjs';

const numbers = Array.from({ length: 5000 }, (_, i) => i);
const members = Object.fromEntries(numbers.map((i) => [`member${i}`, i]));
const texts = Object.keys(members).map((name) => `"${name}":${members[name]}`);
const change = (value) => zelk.changeModemLogConfig([{ configKey: 'k', value }]);
const MOST_CALLS = 3000; // Without a new scope. Each loop over such a list makes more in all.

// The most calls of the module without a new scope.
function longestRun() {
  const runs = [0];
  for (const [call, status] of trace()) {
    if (call === 'napi_open_handle_scope' && status === 0) {
      runs.push(0);
    }
    ++runs[runs.length - 1];
  }
  return Math.max(...runs);
}

// The handles of a long list, item or reply are released in the course of it. No value is lost or changed by
// that, nor where a scope cannot be opened.
for (const { title, call, sent, resolved } of [
  { title: 'a list of numbers', call: () => change({ numbers }),
    sent: [`{"configKey":"k","value":{"numbers":[${numbers.slice(0, -1)},"4999"]}}`], resolved: false },
  { title: 'a list of items', call: () => zelk.changeModemLogConfig(numbers.map((n) => ({ value: { n } }))),
    sent: numbers.map((n) => `{"configKey":"","value":{"n":${n}}}`), resolved: false },
  { title: 'an item', call: () => change(members),
    sent: [`{"configKey":"k","value":{${texts}}}`], resolved: false },
  { title: 'a reply', call: () => zelk.getModemLogConfig(['k']),
    sent: ['k'], resolved: [{ configKey: 'k', value: members }] },
]) {
  test(`${title} of 5,000 values is complete, and takes few handles at a time`, async () => {
    const reply = { configKey: 'k', value: JSON.stringify(members) };
    service({ GetModemLogConfig: { answer: [JSON.stringify(reply)] } });
    fail({ name: 'napi_open_handle_scope', nth: 5 });
    const seen = await run(call);
    assert.deepEqual({ sent: seen.requests[0][1], resolved: seen.resolved }, { sent, resolved });
    assert.ok(longestRun() <= MOST_CALLS, `${longestRun()} calls without a new scope`);
  });
}
