import { answerTests, E, I, keyQueryTests } from '../support/cases.mjs';

const name = 'getTcpdumpConfig';
const executed = (code) => I(`[TCP dump] NativeGetTcpdumpConfig errorCode ${code}`);
// At ERROR level on every completion, although nothing may be wrong: whether the answer is empty, whether it
// failed.
const completed = (numbers) => E(`[TCP dump] GetTcpdumpConfigCallback ${numbers}`);
const NOTHING = E('GetTcpdumpConfigCallback: callbackConfigs is null');
const DONE = [executed(0), completed('0 - 0')];
const UNREADABLE = E('ConvertJsonToObject: json parse error');

keyQueryTests(name, {
  done: DONE,
  failed: [executed(9), completed('0 - 1'), NOTHING],
  failedEmpty: [executed(9), completed('1 - 1'), NOTHING],
  nothing: [executed(0), completed('1 - 0'), NOTHING],
  away: [executed(3), completed('1 - 1'), NOTHING],
  noKeys: [executed(7), completed('1 - 1'), NOTHING],
});

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
