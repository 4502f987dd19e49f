import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, CALLBACK, E, emptyList, FAILS, I, INJECTED, ITEMS, MISMATCH, NO, NO_FUNCTIONS, NO_OBJECTS,
  noService, NOT_ARRAY, PENDING, READ, testCalls, TEXT, THROWS, UNCALLABLE, UNTYPED,
  WRITTEN,
} from '../support/cases.mjs';
import { run, zelk } from '../support/zelk.mjs';

const SENT = [...READ, WRITTEN];

// All that a change does with its arguments; the capture's has its own lines, and never answers a failure.
const name = 'changeModemLogConfig';
const MISMATCHES = [MISMATCH, MISMATCH, E('ChangeModemLogConfig: Illegal params')];
// The boolean of a failure is delivered, and of an empty list, which is not sent, nor one that is none at the
// second look.
const FAILED = E("ChangeModemLogConfigCallback: asyncContext's resolved is false");
const EMPTY = [emptyList('ChangeModemLogConfig'), FAILED];
testCalls(name, [
  { args: [ITEMS], resolved: true, request: [[TEXT]], lines: SENT },
  { args: [ITEMS], service: NO, resolved: false, request: [[TEXT]], lines: SENT },
  { args: [ITEMS, CALLBACK], callback: [[true]], request: [[TEXT]], lines: SENT },
  { args: [ITEMS, CALLBACK, 1], resolved: true, request: [[TEXT]], lines: SENT },
  ...NO_FUNCTIONS.map((second) => (
    { args: [ITEMS, second], resolved: true, request: [[TEXT]], lines: SENT })),
  { args: [], ...THROWS, lines: MISMATCHES },
  ...NO_OBJECTS.map((value) => ({ args: [value, CALLBACK], lines: MISMATCHES })),
  { args: [{ a: 1 }, CALLBACK], lines: [E('ChangeModemLogConfig: error array type')] },
  { args: [ITEMS], faults: [UNTYPED], lines: [E('ChangeModemLogConfig: error object type')] },
  { args: [ITEMS], service: FAILS, rejected: true, request: [[TEXT]], lines: [...SENT, FAILED] },
  { args: [ITEMS], service: AWAY, rejected: false,
    lines: [...READ, noService('ChangeModemLogConfig'), FAILED] },
  { args: [[]], rejected: false, lines: EMPTY },
  { args: [['k']], faults: [{ name: 'napi_is_array', nth: 2 }], rejected: false,
    lines: [...NOT_ARRAY, ...EMPTY] },
  { args: [ITEMS], faults: ['napi_typeof'], thrown: INJECTED, lines: MISMATCHES },
  // Only the second try at the types can still match, with a callback; the call goes on, its error pending.
  { args: [ITEMS, CALLBACK], faults: ['napi_typeof'], thrown: INJECTED, callback: [[false]],
    lines: [MISMATCH, E('GetArrayLength: failed to get the length of array'), ...EMPTY] },
  { args: [ITEMS], faults: [{ name: 'napi_typeof', nth: 2 }], thrown: INJECTED },
]);

// At ERROR level on every call, although nothing is wrong; the first one even before the gate.
const ENTER = E('[TCP dump] napi ChangeTcpdumpConfig: enter');
const END = E('[TCP dump] napi ChangeTcpdumpConfig: end');
const READ_ALL = [ENTER, ...READ, END];
const UNMATCHED = [MISMATCH, MISMATCH, E('[TCP dump] napi ChangeTcpdumpConfig: Illegal params')];
const capture = 'changeTcpdumpConfig';
testCalls(capture, [
  { args: [ITEMS], resolved: true, request: [[TEXT]], lines: [...READ_ALL, WRITTEN] },
  { args: [ITEMS, 1], service: NO, resolved: false, request: [[TEXT]], lines: [...READ_ALL, WRITTEN] },
  { args: [], ...THROWS, lines: [ENTER, ...UNMATCHED] },
  { args: [{ a: 1 }], lines: [ENTER, E('[TCP dump] napi ChangeTcpdumpConfig: error array type')] },
  { args: [ITEMS], faults: [UNTYPED],
    lines: [ENTER, E('[TCP dump] napi ChangeTcpdumpConfig: error object type')] },
  // A failure or an empty list is never answered, nor logged.
  { args: [ITEMS], service: FAILS, ...PENDING, request: [[TEXT]], lines: [...READ_ALL, WRITTEN] },
  { args: [ITEMS], service: AWAY, ...PENDING, lines: [...READ_ALL, noService('ChangeTcpdumpConfig')] },
  { args: [[]], ...PENDING, lines: [ENTER, END] },
]);

test(`${capture} writes "end" before the work is queued, and makes the texts after`, async () => {
  const { lines } = await run(() => zelk[capture](ITEMS));
  const queued = I('HandleAsyncWork: workName = [ChangeTcpdumpConfig]');
  assert.deepEqual(lines.filter((line) => [END, queued, WRITTEN].includes(line)), [END, queued, WRITTEN]);
});

const [command] = ITEMS;
const UNREAD = [E('GetString: get len error'), E('failed to get property names.')];
const NO_PARTS = '{"configKey":"","value":}}';
testCalls('sendModemLogCommand', [
  { args: [command], resolved: true, request: [TEXT], lines: SENT },
  // Of two arguments the second is the callback, whatever it is.
  { args: [command, CALLBACK], service: NO, callback: [[false]], request: [TEXT], lines: SENT },
  { args: [command, CALLBACK, 1], resolved: true, request: [TEXT], lines: SENT },
  ...NO_FUNCTIONS.map((second) => (
    { args: [command, second], ...UNCALLABLE, request: [TEXT], lines: SENT })),
  { args: [], ...THROWS, lines: [MISMATCH, MISMATCH, E('SendModemLogCommand: Illegal params')] },
  // A failure is neither answered nor logged.
  { args: [command], service: FAILS, ...PENDING, request: [TEXT], lines: SENT },
  { args: [command], service: AWAY, ...PENDING, lines: [...READ, noService('SendModemLogCommand')] },
  // Any object is a command, of which it sends the parts that it can read.
  ...[
    ...[{}, [1], { configKey: 5, value: 'x' }].map((value) => [value, NO_PARTS, UNREAD]),
    [Object.assign([], command), TEXT, READ],
  ].map(([value, text, lines]) => ({
    args: [value], resolved: true, request: [text],
    lines: [...lines, E(`GetJsonParams ostringstream ${text}`)],
  })),
]);
