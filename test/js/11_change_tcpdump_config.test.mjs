import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, calls, changeTests, E, expectCall, FAILS, I, ITEMS, PENDING, READ, TEXT, W, WRITTEN,
} from '../support/cases.mjs';

const name = 'changeTcpdumpConfig';
const op = 'ChangeTcpdumpConfig';
// At ERROR level on every call, although nothing is wrong; the first one even before the gate.
const ENTER = E('[TCP dump] napi ChangeTcpdumpConfig: enter');
const END = E('[TCP dump] napi ChangeTcpdumpConfig: end');

changeTests(name, { refused: '[TCP dump] napi ChangeTcpdumpConfig', enter: [ENTER], end: [END] });

// Not even logged.
calls('never answers a failure or an empty list', name, [
  [FAILS, () => [ITEMS], PENDING, [[op, [TEXT]]], [ENTER, ...READ, END, WRITTEN]],
  [AWAY, () => [ITEMS], PENDING, [], [ENTER, ...READ, END, W(`[${op}]"get proxy fail."`)]],
  [FAILS, () => [[]], PENDING, [], [ENTER, END]],
]);

test(`${name} writes "end" before the work is queued, and makes the texts after`, async () => {
  const { lines } = await expectCall(name, () => [ITEMS], { resolved: false }, [[op, [TEXT]]]);
  const queued = lines.indexOf(I('HandleAsyncWork: workName = [ChangeTcpdumpConfig]'));
  assert.equal(lines.indexOf(END), queued - 1);
  assert.ok(lines.indexOf(WRITTEN) > queued);
});
