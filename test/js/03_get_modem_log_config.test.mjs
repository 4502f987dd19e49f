import { E, keyQueryTests } from '../support/cases.mjs';

const UNREADABLE = E('ConvertJsonToObject: json parse error');

// Only a text is expanded; any other value is passed over in silence.
keyQueryTests('getModemLogConfig', {}, [
  [String.raw`{"configKey":"a","value":"{\"s\":\"t\",\"n\":-1,\"l\":[1]}"}`,
    { configKey: 'a', value: { s: 't', n: -1 } }],
  ...['5', '1.5', 'true', 'null', '[1]', '{"x":1}', '"5"', '"[1]"', '"{}"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }]),
  ...['""', '"no json"'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }, UNREADABLE]),
  ['{"configKey":"a"}', { configKey: 'a', value: {} }],
  ['{"configKey":7,"value":"{\\"n\\":4294967295}","other":1}', { value: { n: 4294967295 } }],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, { value: {} }]),
]);
