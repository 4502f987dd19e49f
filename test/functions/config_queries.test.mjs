import {
  AWAY, CALLBACK, E, emptyList, I, INJECTED, MISMATCH, NO_FUNCTIONS, NO_OBJECTS, noService, NOT_ARRAY,
  PENDING, testCalls, THROWS, UNREADABLE,
} from '../support/cases.mjs';

// All that a query for keys does with its arguments; the capture's has its own lines and reading of values.
const name = 'getModemLogConfig';
const op = 'GetModemLogConfig';
const ONE = I('GetModemLogConfig: only one param');
const NOTHING = E('GetModemLogConfigCallback: callbackConfigs is null');
const MISMATCHES = [MISMATCH, MISMATCH, E('GetModemLogConfig: Illegal params')];
const UNREAD = [E('GetString: get len error'), E('GetString: len error')];

const valued = (text) => JSON.stringify({ configKey: 'a', value: text });
const item = valued('{"on":true}');
const service = { answer: [item, '{"configKey":"b","value":"{}"}'] };
const found = [{ configKey: 'a', value: { on: true } }, { configKey: 'b', value: {} }];

testCalls(name, [
  { args: [['b', 'a']], service, resolved: found, request: [['b', 'a']], lines: [ONE] },
  { args: [[1, '']], service, resolved: found, request: [['', '']], lines: [...UNREAD, ONE] },
  { args: [['a'], CALLBACK], service, callback: [[found]], request: [['a']] },
  ...[...NO_FUNCTIONS, []].map((second) => (
    { args: [['a'], second], service, resolved: found, request: [['a']] })),
  { args: [], ...THROWS, lines: MISMATCHES },
  ...NO_OBJECTS.map((value) => ({ args: [value, CALLBACK], lines: MISMATCHES })),
  { args: [{}], lines: [E('GetModemLogConfig: error object type oe error array type')] },
  { args: [['a'], CALLBACK, 1], lines: [E('GetModemLogConfig: Illegal params num')] },
]);

// A query that fails or finds nothing is never answered, and an empty list is not sent, nor one that is none
// at the second look.
const FAILS = { code: 9, answer: [item] };
const EMPTY = [ONE, emptyList(op), NOTHING];
testCalls(name, [
  { args: [['a']], service: FAILS, ...PENDING, request: [['a']], lines: [ONE, NOTHING] },
  { args: [['a']], service: { answer: [] }, ...PENDING, request: [['a']], lines: [ONE, NOTHING] },
  { args: [['a']], service: AWAY, ...PENDING, lines: [ONE, noService(op), NOTHING] },
  { args: [[]], service, ...PENDING, lines: EMPTY },
  { args: [['a']], faults: [{ name: 'napi_typeof', nth: 2 }], thrown: INJECTED },
  { args: [['a']], faults: [{ name: 'napi_is_array', nth: 2 }], ...PENDING, lines: [...NOT_ARRAY, ...EMPTY] },
]);

// One text that cannot be read, and the whole answer is abandoned.
const deep = (text) => text.repeat(2000);
testCalls(name, [
  'no json', '', '{"configKey":"a"', deep('[') + deep(']'), deep('{"a":') + 1 + deep('}'),
  valued(deep('[') + deep(']')), valued('{"a":1,"n":4294967296}'), valued('{"n":-2147483649}'),
].map((text) => ({
  args: [['a'], 1],
  service: { answer: [text, item] },
  ...PENDING,
  request: [['a']],
  lines: [E('GetModemLogConfigCallback: Failed to parse json')],
})));

// How an answer is read: its only text, and what becomes of it.
const SCALARS =
  '{"t":true,"s":"v","n":null,"i":-2147483648,"f":1.5,"e":1e2,"F":0,"u":4294967295,"m":2147483647}';
const scalars = {
  F: 0, e: 100, f: 1.5, i: -2147483648, m: 2147483647, n: null, s: 'v', t: true, u: 4294967295,
};
const a = (value) => ({ configKey: 'a', value });
testCalls(name, [
  // Scalar members become properties in byte order of their names; nested ones are left out.
  [valued(SCALARS), a(scalars)],
  [valued('{"l":[1,2],"o":{"x":1},"s":"v"}'), a({ s: 'v' })],
  [valued('{"a\\u0000b":"c\\u0000d","é":"ü"}'), a({ a: 'c', é: 'ü' })],
  [valued('/* comment */ {"a":1,"a":2} // more'), a({ a: 2 })],
  ...['{}', '5', '"x"', '[1,{"a":1}]', 'null'].map((text) => [valued(text), a({})]),
  ...['', 'no json', '{"a":1', '{"a":1,}x', '{"a":1e999}', '{"a":"\\ud800"}', '\ufeff{}'].map((text) => (
    [valued(text), a({}), [UNREADABLE]])),
  // The prototype is set, to what can be one.
  [valued('{"__proto__":null,"a":1}'), a({ __proto__: null, a: 1 })],
  ...['5', '{"b":2}'].map((proto) => [valued(`{"__proto__":${proto},"a":1}`), a({ a: 1 })]),
  // Any other value is ignored silently.
  ...['5', '1.5', 'true', 'null', '[1]', '{"x":1}'].map((value) => (
    [`{"configKey":"a","value":${value}}`, a({})])),
  ['{"configKey":7,"value":"{\\"n\\":1}","other":1}', { value: { n: 1 } }],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, { value: {} }]),
  // A member that cannot be set is left out.
  ...['napi_create_int32', 'napi_set_property'].map((fault) => (
    [valued('{"a":1,"b":2}'), a({ b: 2 }), [], fault])),
].map(([text, object, lines = [], ...faults]) => ({
  args: [['a'], 1],
  service: { answer: [text] },
  faults,
  request: [['a']],
  resolved: [object],
  lines,
})));

const NO_CAPTURE = E('GetTcpdumpConfigCallback: callbackConfigs is null');
const NO_KEYS = [MISMATCH, MISMATCH, E('GetTcpdumpConfig: Illegal params')];
// The second at ERROR level on every completion, although nothing may be wrong: whether the answer is empty,
// whether it failed.
const ended = (code, numbers) => [
  I(`[TCP dump] NativeGetTcpdumpConfig errorCode ${code}`),
  E(`[TCP dump] GetTcpdumpConfigCallback ${numbers}`),
];
const DONE = ended(0, '0 - 0');

const refused = (code, numbers) => [...ended(code, numbers), NO_CAPTURE];
const asked = { args: [['a'], 1], request: [['a']] };
testCalls('getTcpdumpConfig', [
  { args: [[]], ...PENDING,
    lines: [I('GetTcpdumpConfig: only one param'), emptyList('GetTcpdumpConfig'), ...refused(7, '1 - 1')] },
  { args: [], ...THROWS, lines: NO_KEYS },
  { args: [{}], lines: [E('GetTcpdumpConfig: error object type oe error array type')] },
  { args: [['a'], CALLBACK, 1], lines: [E('GetTcpdumpConfig: Illegal params num')] },
  { ...asked, service: { code: 9, answer: ['{}'] }, ...PENDING, lines: refused(9, '0 - 1') },
  { ...asked, service: { answer: [] }, ...PENDING, lines: refused(0, '1 - 0') },
  { ...asked, service: { answer: ['no json', '{}'] }, ...PENDING,
    lines: [...DONE, E('GetTcpdumpConfigCallback: Failed to parse json')] },
  { args: [['a'], 1], service: AWAY, ...PENDING,
    lines: [noService('GetTcpdumpConfig'), ...refused(3, '1 - 1')] },
  // Every value is read as text and converted; a value without a text becomes "", which cannot be parsed.
  ...[
    ['{"configKey":"a","value":"{\\"n\\":-1,\\"l\\":[1]}"}', { configKey: 'a', value: { n: -1 } }],
    ...['5', '1.5', 'true', '"5"'].map((value) => [`{"value":${value}}`, { value: {} }]),
    ...['null', '[1]', '{"x":1}', '""'].map((value) => [`{"value":${value}}`, { value: {} }, UNREADABLE]),
  ].map(([text, object, ...lines]) => (
    { ...asked, service: { answer: [text] }, resolved: [object], lines: [...DONE, ...lines] })),
]);
