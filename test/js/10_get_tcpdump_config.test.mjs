import { answerTests, E, I, keyQueryTests } from '../support/cases.mjs';

const name = 'getTcpdumpConfig';
const UNREADABLE = E('ConvertJsonToObject: json parse error');
// The second at ERROR level on every completion, although nothing may be wrong: whether the answer is empty,
// whether it failed.
const log = (code, numbers) => [
  I(`[TCP dump] NativeGetTcpdumpConfig errorCode ${code}`),
  E(`[TCP dump] GetTcpdumpConfigCallback ${numbers}`),
];
const DONE = log(0, '0 - 0');

keyQueryTests(name, log);

// Every value is read as text and converted; a value without a text becomes "", which cannot be parsed.
answerTests(name, [
  ['{"configKey":"a","value":"{\\"n\\":-1,\\"l\\":[1]}"}', { configKey: 'a', value: { n: -1 } }, ...DONE],
  ...['5', '1.5', 'true', '"5"', '"[1]"', '"{}"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }, ...DONE]),
  ...['null', '[1]', '{"x":1}', '""', '"no json"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }, ...DONE, UNREADABLE]),
  ['{"configKey":"a"}', { configKey: 'a', value: {} }, ...DONE, UNREADABLE],
  ['{"configKey":7,"value":"{\\"n\\":4294967295}","other":1}', { value: { n: 4294967295 } }, ...DONE],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, { value: {} }, ...DONE, UNREADABLE]),
]);
