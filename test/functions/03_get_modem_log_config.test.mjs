// All that a query for keys does with its arguments; the capture's has its own lines and reading of values.
import {
  AWAY, CALLBACK, E, emptyList, I, MISMATCH, NO_FUNCTIONS, NO_OBJECTS, noService, PENDING, testCalls,
  THROWS, UNREADABLE,
} from '../support/cases.mjs';

const name = 'getModemLogConfig';
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

// A query that fails or finds nothing is never answered, and an empty list is not sent.
const FAILS = { code: 9, answer: [item] };
testCalls(name, [
  { args: [['a']], service: FAILS, ...PENDING, request: [['a']], lines: [ONE, NOTHING] },
  { args: [['a']], service: { answer: [] }, ...PENDING, request: [['a']], lines: [ONE, NOTHING] },
  { args: [['a']], service: AWAY, ...PENDING, lines: [ONE, noService('GetModemLogConfig'), NOTHING] },
  { args: [[]], service, ...PENDING, lines: [ONE, emptyList('GetModemLogConfig'), NOTHING] },
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
  ...['', 'no json', '{"a":1', '{"a":1,}x'].map((text) => [valued(text), a({}), [UNREADABLE]]),
  // Any other value is ignored silently.
  ...['5', '1.5', 'true', 'null', '[1]', '{"x":1}'].map((value) => (
    [`{"configKey":"a","value":${value}}`, a({})])),
  ['{"configKey":"a"}', a({})],
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
