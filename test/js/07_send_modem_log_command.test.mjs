import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  ANSWERS, calls, E, FORGOTTEN, itemLines, items, itemText, MISMATCH, NO_FUNCTIONS, NO_OBJECTS, NO_PROXY, PENDING,
  RUNTIME, textLine, UNCALLABLE,
} from '../support/cases.mjs';
import { run, zelk } from '../support/zelk.mjs';

const [name, operation] = ['sendModemLogCommand', 'SendModemLogCommand'];
const [command] = items;
const sent = { requests: [[operation, itemText]], lines: [...itemLines, textLine] };
const failed = { code: 9, answer: true };
const mismatch = [MISMATCH, MISMATCH, E('SendModemLogCommand: Illegal params')];
const NO_KEY = E('GetString: get len error');
const NO_VALUE = E('failed to get property names.');

calls('takes a command and, of two arguments, any callback; a failure is neither answered nor logged', name, [
  ...ANSWERS.flatMap((answer) => [
    [{ answer }, () => [command], { resolved: answer, ...sent }],
    [{ answer }, (callback) => [command, callback], { callback: [[answer]], ...sent }],
    [{ answer }, (callback) => [command, callback, 1], { resolved: answer, ...sent }],
  ]),
  ...NO_FUNCTIONS.map((second) => [{}, () => [command, second], { ...UNCALLABLE, ...sent }]),
  [{}, () => [], { thrown: RUNTIME, lines: mismatch }],
  ...NO_OBJECTS.map((value) => [{}, (callback) => [value, callback], { lines: mismatch }]),
  [failed, () => [command], { ...PENDING, ...sent }],
  [failed, (callback) => [command, callback], { ...FORGOTTEN, ...sent }],
  [null, () => [command], { ...PENDING, lines: [...itemLines, NO_PROXY(operation)] }],
]);

calls('sends the command with what it can read of it', name, [
  [{}, '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [[1], '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [{ configKey: 'k' }, '{"configKey":"k","value":}}', NO_VALUE],
  [{ configKey: '', value: {} }, '{"configKey":"","value":}}', E('GetString: len error')],
  [{ configKey: 5, value: 'x' }, '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [Object.assign([], command), itemText, ...itemLines],
].map(([value, text, ...lines]) => [{}, () => [value], {
  resolved: false, requests: [[operation, text]], lines: [...lines, E(`GetJsonParams ostringstream ${text}`)],
}]));

test(`${name} keeps any callback while an exception of the caller's own getter is pending`, async () => {
  const own = new Error("the caller's own");
  const { thrown, requests } = await run(() => zelk[name]({ get configKey() { throw own; } }, 5));
  assert.deepEqual([thrown, requests], [own, [[operation, '{"configKey":"","value":}}']]]);
});
