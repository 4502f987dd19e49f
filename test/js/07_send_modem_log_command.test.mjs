import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, calls, E, FAILS, ITEMS, MISMATCH, NO, NO_FUNCTIONS, NO_OBJECTS, PENDING, READ, REFUSED,
  TEXT, THROWS, UNCALLABLE, W, WRITTEN, YES,
} from '../support/cases.mjs';
import { run, zelk } from '../support/zelk.mjs';

const name = 'sendModemLogCommand';
const op = 'SendModemLogCommand';
const [command] = ITEMS;
const SENT = [...READ, WRITTEN];
const mismatch = [MISMATCH, MISMATCH, E('SendModemLogCommand: Illegal params')];
const NO_KEY = E('GetString: get len error');
const NO_VALUE = E('failed to get property names.');

calls('takes a command and, of two arguments, any callback; a failure is neither answered nor logged', name, [
  [YES, () => [command], { resolved: true }, [[op, TEXT]], SENT],
  [NO, () => [command], { resolved: false }, [[op, TEXT]], SENT],
  [YES, (cb) => [command, cb], { callback: [[true]] }, [[op, TEXT]], SENT],
  [YES, (cb) => [command, cb, 1], { resolved: true }, [[op, TEXT]], SENT],
  ...NO_FUNCTIONS.map((second) => [YES, () => [command, second], UNCALLABLE, [[op, TEXT]], SENT]),
  [YES, () => [], THROWS, [], mismatch],
  ...NO_OBJECTS.map((value) => [YES, (cb) => [value, cb], REFUSED, [], mismatch]),
  [FAILS, () => [command], PENDING, [[op, TEXT]], SENT],
  [AWAY, () => [command], PENDING, [], [...READ, W(`[${op}]"get proxy fail."`)]],
]);

calls('sends the parts of the command that it can read', name, [
  [{}, '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [[1], '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [{ configKey: 'k' }, '{"configKey":"k","value":}}', NO_VALUE],
  [{ configKey: '', value: {} }, '{"configKey":"","value":}}', E('GetString: len error')],
  [{ configKey: 5, value: 'x' }, '{"configKey":"","value":}}', NO_KEY, NO_VALUE],
  [Object.assign([], command), TEXT, ...READ],
].map(([value, text, ...lines]) => [
  YES, () => [value], { resolved: true }, [[op, text]], [...lines, E(`GetJsonParams ostringstream ${text}`)],
]));

test(`${name} keeps any callback while an exception of the caller's own getter is pending`, async () => {
  const own = new Error("the caller's own");
  const hostile = {
    get configKey() {
      throw own;
    },
  };
  const { thrown, requests } = await run(() => zelk[name](hostile, 5));
  assert.deepEqual([thrown, requests], [own, [[op, '{"configKey":"","value":}}']]]);
});
