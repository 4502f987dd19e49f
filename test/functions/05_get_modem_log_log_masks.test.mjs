import {
  AWAY, CALLBACK, E, FORGOTTEN, I, MISMATCH, noService, PENDING, testCalls,
} from '../support/cases.mjs';

const name = 'getModemLogLogMasks';
const thrown = '6: GetModemLogLogMasks current function not support in current time';
const UNMATCHED = [MISMATCH, I('current paramCount is zero, so return true')];
const NOTHING = E('GetModemLogLogMasksCallback: callbackConfigs is null');
const UNPARSED = E('GetModemLogLogMasksCallback: Failed to parse json');
const good = '{"configKey":"ap","value":"{\\"n\\":1}"}';
const FAILS = { code: 9, answer: [good] };
const NO_SERVICE = [noService('GetModemLogLogMasks'), NOTHING];

testCalls(name, [
  { args: [], service: { answer: [good] }, thrown, request: [], lines: UNMATCHED },
  { args: [], service: FAILS, thrown, kept: PENDING.kept, request: [], lines: [...UNMATCHED, NOTHING] },
  { args: [CALLBACK], service: AWAY, thrown, ...FORGOTTEN, lines: NO_SERVICE },
  { args: [CALLBACK], service: { answer: [] }, thrown, ...FORGOTTEN, request: [], lines: [NOTHING] },
  ...['no json', '', '{"configKey":"a"', '['.repeat(2000) + ']'.repeat(2000)].map((bad) => {
    const service = { answer: [bad, good] };
    return { args: [CALLBACK], service, thrown, ...FORGOTTEN, request: [], lines: [UNPARSED] };
  }),
]);

// The two members that are strings are copied, and nothing is expanded.
testCalls(name, [
  [[good, '{"value":"0x0"}'], [{ configKey: 'ap', value: '{"n":1}' }, { value: '0x0' }]],
  [['{"configKey":"a","value":5}'], [{ configKey: 'a' }]],
  [['{"configKey":7,"value":"","other":"x"}'], [{ value: '' }]],
  [['{"configKey":"a\\u0000b","value":"{\\"n\\":4294967296}"}'],
    [{ configKey: 'a\0b', value: '{"n":4294967296}' }]],
  [['{}', '{"value":{}}', '[1]', '5', 'null', '"a"'], [{}, {}, {}, {}, {}, {}]],
].map(([answer, masks]) => (
  { args: [CALLBACK], service: { answer }, thrown, callback: [[masks]], request: [] })));
