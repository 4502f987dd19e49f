import { answerTests, E, keyQueryTests } from '../support/cases.mjs';

const name = 'getModemLogConfig';
const UNREADABLE = E('ConvertJsonToObject: json parse error');

keyQueryTests(name, () => []);

const valued = (text) => JSON.stringify({ configKey: 'a', value: text });
const scalars =
  '{"t":true,"s":"v","n":null,"i":-2147483648,"f":1.5,"e":1e2,"F":0,"u":4294967295,"m":2147483647}';

// Scalar members become properties in byte order of their names; nested ones are left out.
answerTests(name, [
  [valued(scalars), {
    configKey: 'a',
    value: { F: 0, e: 100, f: 1.5, i: -2147483648, m: 2147483647, n: null, s: 'v', t: true, u: 4294967295 },
  }],
  [valued('{"l":[1,2],"o":{"x":1},"s":"v"}'), { configKey: 'a', value: { s: 'v' } }],
  [valued('{"a\\u0000b":"c\\u0000d","é":"ü"}'), { configKey: 'a', value: { a: 'c', é: 'ü' } }],
  [valued('/* comment */ {"a":1,"a":2} // more'), { configKey: 'a', value: { a: 2 } }],
  ...['{}', '5', '"x"', '[1,{"a":1}]', 'null'].map((text) => [valued(text), { configKey: 'a', value: {} }]),
  ...['', 'no json', '{"a":1', '{"a":1,}x'].map((text) =>
    [valued(text), { configKey: 'a', value: {} }, UNREADABLE]),
  // Any other value is ignored silently.
  ...['5', '1.5', 'true', 'null', '[1]', '{"x":1}'].map((value) =>
    [`{"configKey":"a","value":${value}}`, { configKey: 'a', value: {} }]),
  ['{"configKey":"a"}', { configKey: 'a', value: {} }],
  ['{"configKey":7,"value":"{\\"n\\":1}","other":1}', { value: { n: 1 } }],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, { value: {} }]),
]);
for (const fault of ['napi_create_int32', 'napi_set_property']) { // A member that cannot be set is left out.
  const row = [valued('{"a":1,"b":2}'), { configKey: 'a', value: { b: 2 } }];
  answerTests(name, [row], { name: fault, nth: 1 });
}
