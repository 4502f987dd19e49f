import { E, unsupportedTests } from '../support/cases.mjs';

const NOTHING = E('GetModemLogLogMasksCallback: callbackConfigs is null');
const UNREADABLE = E('GetModemLogLogMasksCallback: Failed to parse json');
const good = '{"configKey":"a","value":"b"}';

const readTests = unsupportedTests('getModemLogLogMasks', {
  answer: ['{"configKey":"ap","value":"{\\"n\\":1}"}', '{"configKey":"cp","value":"0x0"}'],
  value: [{ configKey: 'ap', value: '{"n":1}' }, { configKey: 'cp', value: '0x0' }],
});

// The two members that are strings are copied, and nothing is expanded.
readTests([
  [['{"configKey":"a","value":5}'], [{ configKey: 'a' }]],
  [['{"configKey":7,"value":"","other":"x"}'], [{ value: '' }]],
  [['{"configKey":"a\\u0000b","value":"{\\"n\\":4294967296}"}'],
    [{ configKey: 'a\0b', value: '{"n":4294967296}' }]],
  [['{}', '{"value":{}}', '[1]', '5', 'null', '"a"'], [{}, {}, {}, {}, {}, {}]],
  [[], undefined, NOTHING],
  ...['no json', '', '{"configKey":"a"', '['.repeat(2000) + ']'.repeat(2000)].map((bad) =>
    [[good, bad, good], undefined, UNREADABLE]),
]);
