import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, CALLBACK, E, FAILS, I, ITEMS, MISMATCH, NO, noService, PENDING, READ, testCalls, TEXT, THROWS,
  UNTYPED, WRITTEN,
} from '../support/cases.mjs';
import { run, zelk } from '../support/zelk.mjs';

const name = 'changeTcpdumpConfig';
// At ERROR level on every call, although nothing is wrong; the first one even before the gate.
const ENTER = E('[TCP dump] napi ChangeTcpdumpConfig: enter');
const END = E('[TCP dump] napi ChangeTcpdumpConfig: end');
const READ_ALL = [ENTER, ...READ, END];
const SENT = [...READ_ALL, WRITTEN];
const MISMATCHES = [ENTER, MISMATCH, MISMATCH, E('[TCP dump] napi ChangeTcpdumpConfig: Illegal params')];

testCalls(name, [
  { args: [ITEMS], resolved: true, request: [[TEXT]], lines: SENT },
  { args: [ITEMS, 1], service: NO, resolved: false, request: [[TEXT]], lines: SENT },
  { args: [ITEMS, CALLBACK], callback: [[true]], request: [[TEXT]], lines: SENT },
  { args: [], ...THROWS, lines: MISMATCHES },
  { args: ['a', CALLBACK], lines: MISMATCHES },
  { args: [{ a: 1 }], lines: [ENTER, E('[TCP dump] napi ChangeTcpdumpConfig: error array type')] },
  { args: [ITEMS], faults: [UNTYPED],
    lines: [ENTER, E('[TCP dump] napi ChangeTcpdumpConfig: error object type')] },
  // A failure or an empty list is never answered, nor logged.
  { args: [ITEMS], service: FAILS, ...PENDING, request: [[TEXT]], lines: SENT },
  { args: [ITEMS], service: AWAY, ...PENDING, lines: [...READ_ALL, noService('ChangeTcpdumpConfig')] },
  { args: [[]], ...PENDING, lines: [ENTER, END] },
]);

test(`${name} writes "end" before the work is queued, and makes the texts after`, async () => {
  const { lines } = await run(() => zelk[name](ITEMS));
  const queued = I('HandleAsyncWork: workName = [ChangeTcpdumpConfig]');
  assert.deepEqual(lines.filter((line) => [END, queued, WRITTEN].includes(line)), [END, queued, WRITTEN]);
});
