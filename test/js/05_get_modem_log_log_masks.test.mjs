import { E, FORGOTTEN, unsupportedTests } from '../support/cases.mjs';

// The two members that are strings are copied, and nothing is expanded.
const MASKS = [
  ['{"configKey":"a","value":5}', { configKey: 'a' }],
  ['{"configKey":7,"value":"","other":"x"}', { value: '' }],
  ['{"configKey":"a\\u0000b","value":"{\\"n\\":4294967296}"}', { configKey: 'a\0b', value: '{"n":4294967296}' }],
  ...['{}', '{"value":{}}', '[1]', '5', 'null', '"a"'].map((text) => [text, {}]),
];
const good = '{"configKey":"a","value":"b"}';
const unanswered = (text) => ({ ...FORGOTTEN, lines: [E(`GetModemLogLogMasksCallback: ${text}`)] });

unsupportedTests('getModemLogLogMasks', {
  answer: ['{"configKey":"ap","value":"{\\"n\\":1}"}', '{"configKey":"cp","value":"0x0"}'],
  value: [{ configKey: 'ap', value: '{"n":1}' }, { configKey: 'cp', value: '0x0' }],
}, [
  [MASKS.map(([text]) => text), { callback: [[MASKS.map(([, mask]) => mask)]] }],
  [[], unanswered('callbackConfigs is null')],
  ...['no json', '', '{"configKey":"a"', '['.repeat(2000) + ']'.repeat(2000)].map((bad) =>
    [[good, bad, good], unanswered('Failed to parse json')]),
]);
