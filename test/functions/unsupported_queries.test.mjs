// All that an unsupported query does: it throws, and is carried out all the same.
import {
  AWAY, CALLBACK, E, FORGOTTEN, I, MISMATCH, noService, PENDING, testCalls,
} from '../support/cases.mjs';

const throwing = (op) => `6: ${op} current function not support in current time`;
const UNMATCHED = [MISMATCH, I('current paramCount is zero, so return true')];

const pack = throwing('GetModemLogDirectPackConfig');
const UNPACKED = E('GetModemLogDirectPackConfigCallback: callbackConfigs is null');
const NO_PACK = [noService('GetModemLogDirectPackConfig'), UNPACKED];
const UNTHROWN = [E(`failed to throw error, code = 6, msg=${pack.slice(3)}`), ...UNMATCHED];
const text = '{"directPack":false}';
const service = { answer: text };
const FAILS = { code: 9, answer: text };
testCalls('getModemLogDirectPackConfig', [
  // The caller does not get the promise, but it is settled: nothing is kept.
  { args: [], service, thrown: pack, request: [], lines: UNMATCHED },
  { args: [7, CALLBACK], service, thrown: pack, request: [], lines: UNMATCHED },
  { args: [CALLBACK, 7], service, thrown: pack, request: [] },
  { args: [0], service, faults: ['napi_throw_error'], resolved: text, request: [], lines: UNTHROWN },
  { args: [], faults: ['napi_get_cb_info'], thrown: pack },
  // A query that fails is never answered.
  { args: [CALLBACK], service: FAILS, thrown: pack, ...FORGOTTEN, request: [], lines: [UNPACKED] },
  { args: [], service: AWAY, thrown: pack, kept: PENDING.kept, lines: [...UNMATCHED, ...NO_PACK] },
  // The text up to its first NUL, also an empty one.
  ...[['', ''], ['größe', 'größe'], ['a\0b', 'a']].map(([answer, received]) => (
    { args: [CALLBACK], service: { answer }, thrown: pack, callback: [[received]], request: [] })),
]);

const thrown = throwing('GetModemLogLogMasks');
const NOTHING = E('GetModemLogLogMasksCallback: callbackConfigs is null');
const NO_SERVICE = [noService('GetModemLogLogMasks'), NOTHING];
testCalls('getModemLogLogMasks', [
  ...[
    [{ code: 9, answer: ['{}'] }, NOTHING],
    [{ answer: [] }, NOTHING],
    [{ answer: ['no json', '{}'] }, E('GetModemLogLogMasksCallback: Failed to parse json')],
  ].map(([service, line]) => (
    { args: [CALLBACK], service, thrown, ...FORGOTTEN, request: [], lines: [line] })),
  { args: [CALLBACK], service: AWAY, thrown, ...FORGOTTEN, lines: NO_SERVICE },
  // The two members that are strings are copied, and nothing is expanded.
  ...[
    [['{"configKey":"ap","value":"{\\"n\\":1}"}', '{"configKey":"a","value":5}'],
      [{ configKey: 'ap', value: '{"n":1}' }, { configKey: 'a' }]],
    [['{"configKey":"a\\u0000b","value":"","other":"x"}'], [{ configKey: 'a\0b', value: '' }]],
    [['{}', '{"value":{}}', '[1]', 'null'], [{}, {}, {}, {}]],
  ].map(([answer, masks]) => (
    { args: [CALLBACK], service: { answer }, thrown, callback: [[masks]], request: [] })),
]);
