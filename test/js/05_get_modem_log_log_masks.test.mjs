import {
  AWAY, CALLBACK, E, FORGOTTEN, I, MISMATCH, PENDING, testCalls, W,
} from '../support/cases.mjs';

const name = 'getModemLogLogMasks';
const thrown = '6: GetModemLogLogMasks current function not support in current time';
const UNMATCHED = [MISMATCH, I('current paramCount is zero, so return true')];
const NOTHING = E('GetModemLogLogMasksCallback: callbackConfigs is null');
const good = '{"configKey":"ap","value":"{\\"n\\":1}"}';
const FAILS = { code: 9, answer: [good] };

testCalls(name, [
  { args: [], service: { answer: [good] }, thrown, request: [], lines: UNMATCHED },
  { args: [], service: FAILS, thrown, kept: PENDING.kept, request: [], lines: [...UNMATCHED, NOTHING] },
  {
    args: [CALLBACK],
    service: AWAY,
    thrown,
    ...FORGOTTEN,
    lines: [W('[GetModemLogLogMasks]"get proxy fail."'), NOTHING],
  },
]);

// The two members that are strings are copied, and nothing is expanded.
testCalls(name, [
  { answer: [good, '{"value":"0x0"}'], masks: [{ configKey: 'ap', value: '{"n":1}' }, { value: '0x0' }] },
  { answer: ['{"configKey":"a","value":5}'], masks: [{ configKey: 'a' }] },
  { answer: ['{"configKey":7,"value":"","other":"x"}'], masks: [{ value: '' }] },
  {
    answer: ['{"configKey":"a\\u0000b","value":"{\\"n\\":4294967296}"}'],
    masks: [{ configKey: 'a\0b', value: '{"n":4294967296}' }],
  },
  { answer: ['{}', '{"value":{}}', '[1]', '5', 'null', '"a"'], masks: [{}, {}, {}, {}, {}, {}] },
].map(({ answer, masks }) => (
  { args: [CALLBACK], service: { answer }, thrown, callback: [[masks]], request: [] })));

const UNPARSED = E('GetModemLogLogMasksCallback: Failed to parse json');
testCalls(name, [
  { args: [CALLBACK], service: { answer: [] }, thrown, ...FORGOTTEN, request: [], lines: [NOTHING] },
  ...['no json', '', '{"configKey":"a"', '['.repeat(2000) + ']'.repeat(2000)].map((bad) => (
    { args: [CALLBACK], service: { answer: [bad, good] }, thrown, ...FORGOTTEN, request: [], lines: [UNPARSED] })),
]);
