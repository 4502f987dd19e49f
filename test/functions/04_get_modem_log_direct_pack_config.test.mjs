// All that an unsupported query does: it throws, and is carried out all the same.
import {
  AWAY, CALLBACK, E, FORGOTTEN, I, MISMATCH, noService, PENDING, testCalls,
} from '../support/cases.mjs';

const name = 'getModemLogDirectPackConfig';
const op = 'GetModemLogDirectPackConfig';
const thrown = '6: GetModemLogDirectPackConfig current function not support in current time';
const UNMATCHED = [MISMATCH, I('current paramCount is zero, so return true')];
const NOTHING = E('GetModemLogDirectPackConfigCallback: callbackConfigs is null');
const UNTHROWN = [E(`failed to throw error, code = 6, msg=${thrown.slice(3)}`), ...UNMATCHED];
const text = '{"directPack":false}';
const service = { answer: text };
const FAILS = { code: 9, answer: text };

testCalls(name, [
  // The caller does not get the promise, but it is settled: nothing is kept.
  { args: [], service, thrown, request: [], lines: UNMATCHED },
  { args: [7], service, thrown, request: [], lines: UNMATCHED },
  { args: [7, CALLBACK], service, thrown, request: [], lines: UNMATCHED },
  { args: [CALLBACK], service, thrown, callback: [[text]], request: [] },
  { args: [CALLBACK, 7], service, thrown, request: [] },
  { args: [0], service, faults: ['napi_throw_error'], resolved: text, request: [], lines: UNTHROWN },
  // A query that fails is never answered.
  { args: [], service: FAILS, thrown, kept: PENDING.kept, request: [], lines: [...UNMATCHED, NOTHING] },
  { args: [CALLBACK], service: AWAY, thrown, ...FORGOTTEN, lines: [noService(op), NOTHING] },
  // The text up to its first NUL, also an empty one.
  ...[['', ''], ['größe', 'größe'], ['a\0b', 'a']].map(([answer, received]) => (
    { args: [CALLBACK], service: { answer }, thrown, callback: [[received]], request: [] })),
]);
