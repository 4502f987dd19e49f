import { E, I, keyQueryTests } from '../support/cases.mjs';

const UNREADABLE = E('ConvertJsonToObject: json parse error');
const extraLines = {
  executed: (code) => [I(`[TCP dump] NativeGetTcpdumpConfig errorCode ${code}`)],
  // On every completion, at ERROR level although nothing may be wrong.
  completed: (isEmpty, code) => [E(`[TCP dump] GetTcpdumpConfigCallback ${Number(isEmpty)} - ${Number(code !== 0)}`)],
};

// Every value is read as text and converted; what has no text reads as the empty one, which cannot be parsed.
keyQueryTests('getTcpdumpConfig', extraLines, [
  [String.raw`{"configKey":"a","value":"{\"s\":\"t\",\"n\":-1,\"l\":[1]}"}`,
    { configKey: 'a', value: { s: 't', n: -1 } }],
  ...['5', '1.5', 'true', '"5"', '"[1]"', '"{}"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }]),
  ...['null', '[1]', '{"x":1}', '""', '"no json"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }, UNREADABLE]),
  ['{"configKey":"a"}', { configKey: 'a', value: {} }, UNREADABLE],
  ['{"configKey":7,"value":"{\\"n\\":4294967295}","other":1}', { value: { n: 4294967295 } }],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, { value: {} }, UNREADABLE]),
]);
