import {
  AWAY, CALLBACK, E, I, MISMATCH, PENDING, testCalls, THROWS, UNREADABLE, W,
} from '../support/cases.mjs';

const name = 'getTcpdumpConfig';
const ONE = I('GetTcpdumpConfig: only one param');
const NOTHING = E('GetTcpdumpConfigCallback: callbackConfigs is null');
const MISMATCHES = [MISMATCH, MISMATCH, E('GetTcpdumpConfig: Illegal params')];
// The second at ERROR level on every completion, although nothing may be wrong: whether the answer is empty,
// whether it failed.
const ended = (code, numbers) => [
  I(`[TCP dump] NativeGetTcpdumpConfig errorCode ${code}`),
  E(`[TCP dump] GetTcpdumpConfigCallback ${numbers}`),
];
const DONE = ended(0, '0 - 0');

const service = { answer: ['{"configKey":"a","value":"{\\"n\\":-1,\\"l\\":[1]}"}', '{"configKey":"b"}'] };
const found = [{ configKey: 'a', value: { n: -1 } }, { configKey: 'b', value: {} }];
testCalls(name, [
  { args: [['b', 'a']], service, resolved: found, request: [['b', 'a']], lines: [ONE, ...DONE, UNREADABLE] },
  { args: [['a'], CALLBACK], service, callback: [[found]], request: [['a']], lines: [...DONE, UNREADABLE] },
  { args: [['a'], 1], service, resolved: found, request: [['a']], lines: [...DONE, UNREADABLE] },
  { args: [], ...THROWS, lines: MISMATCHES },
  { args: ['a', CALLBACK], lines: MISMATCHES },
  { args: [{}], lines: [E('GetTcpdumpConfig: error object type oe error array type')] },
  { args: [['a'], CALLBACK, 1], lines: [E('GetTcpdumpConfig: Illegal params num')] },
]);

// A query that fails or finds nothing is never answered, and an empty list is not sent.
const AWAY_LINES = [W('[GetTcpdumpConfig]"get proxy fail."'), ...ended(3, '1 - 1'), NOTHING];
const EMPTY_LINES = [ONE, W('[GetTcpdumpConfig]"configs is empty."'), ...ended(7, '1 - 1'), NOTHING];
testCalls(name, [
  ...[
    { code: 9, answer: ['{}'], numbers: '0 - 1' },
    { code: 9, answer: [], numbers: '1 - 1' },
    { code: 0, answer: [], numbers: '1 - 0' },
  ].map(({ code, answer, numbers }) => ({
    args: [['a'], 1],
    service: { code, answer },
    ...PENDING,
    request: [['a']],
    lines: [...ended(code, numbers), NOTHING],
  })),
  { args: [['a'], 1], service: AWAY, ...PENDING, lines: AWAY_LINES },
  { args: [[]], service, ...PENDING, lines: EMPTY_LINES },
  // One text that cannot be read, and the whole answer is abandoned.
  ...['no json', '{"configKey":"a","value":"{\\"n\\":4294967296}"}'].map((text) => ({
    args: [['a'], 1],
    service: { answer: [text, '{}'] },
    ...PENDING,
    request: [['a']],
    lines: [...DONE, E('GetTcpdumpConfigCallback: Failed to parse json')],
  })),
]);

// Every value is read as text and converted; a value without a text becomes "", which cannot be parsed.
testCalls(name, [
  ...['5', '1.5', 'true', '"5"', '"[1]"', '"{}"'].map((value) => (
    { text: `{"configKey":"a","value":${value}}`, object: { configKey: 'a', value: {} } })),
  ...['null', '[1]', '{"x":1}', '""', '"no json"'].map((value) => (
    { text: `{"configKey":"a","value":${value}}`, object: { configKey: 'a', value: {} }, lines: [UNREADABLE] })),
  { text: '{"configKey":7,"value":"{\\"n\\":4294967295}","other":1}', object: { value: { n: 4294967295 } } },
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => ({ text, object: { value: {} }, lines: [UNREADABLE] })),
].map(({ text, object, lines = [] }) => ({
  args: [['a'], 1],
  service: { answer: [text] },
  resolved: [object],
  request: [['a']],
  lines: [...DONE, ...lines],
})));
