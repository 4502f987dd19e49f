import {
  AWAY, CALLBACK, E, emptyList, I, MISMATCH, noService, PENDING, testCalls, THROWS, UNREADABLE,
} from '../support/cases.mjs';

const name = 'getTcpdumpConfig';
const op = 'GetTcpdumpConfig';
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
const refused = (code, numbers) => [...ended(code, numbers), NOTHING];
const UNPARSED = [...DONE, E('GetTcpdumpConfigCallback: Failed to parse json')];
testCalls(name, [
  ...[
    [{ code: 9, answer: ['{}'] }, refused(9, '0 - 1')],
    [{ code: 9, answer: [] }, refused(9, '1 - 1')],
    [{ answer: [] }, refused(0, '1 - 0')],
    // One text that cannot be read, and the whole answer is abandoned.
    [{ answer: ['no json', '{}'] }, UNPARSED],
    [{ answer: ['{"value":"{\\"n\\":4294967296}"}', '{}'] }, UNPARSED],
  ].map(([service, lines]) => ({ args: [['a'], 1], service, ...PENDING, request: [['a']], lines })),
  { args: [['a'], 1], service: AWAY, ...PENDING, lines: [noService(op), ...refused(3, '1 - 1')] },
  { args: [[]], service, ...PENDING, lines: [ONE, emptyList(op), ...refused(7, '1 - 1')] },
]);

// Every value is read as text and converted; a value without a text becomes "", which cannot be parsed.
testCalls(name, [
  ...['5', '1.5', 'true', '"5"', '"[1]"', '"{}"'].map((value) => [`{"value":${value}}`, {}]),
  ...['null', '[1]', '{"x":1}', '""', '"no json"'].map((value) => [`{"value":${value}}`, {}, UNREADABLE]),
  ['{"configKey":7,"value":"{\\"n\\":4294967295}","other":1}', { n: 4294967295 }],
  ...['{}', '[1]', '5', 'null', '"a"'].map((text) => [text, {}, UNREADABLE]),
].map(([text, value, ...lines]) => ({
  args: [['a'], 1],
  service: { answer: [text] },
  request: [['a']],
  resolved: [{ value }],
  lines: [...DONE, ...lines],
})));
