// All that a change does with its arguments; the capture's has its own lines, and never answers a failure.
import {
  AWAY, CALLBACK, E, emptyList, FAILS, FAILS_NO, ITEMS, MISMATCH, NO, NO_FUNCTIONS, NO_OBJECTS,
  noService, READ, testCalls, TEXT, THROWS, UNTYPED, WRITTEN,
} from '../support/cases.mjs';

const name = 'changeModemLogConfig';
const SENT = [...READ, WRITTEN];
const MISMATCHES = [MISMATCH, MISMATCH, E('ChangeModemLogConfig: Illegal params')];

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
]);

// The boolean of a failure is delivered, and of an empty list, which is not sent.
const FAILED = E("ChangeModemLogConfigCallback: asyncContext's resolved is false");
const NO_SERVICE = [noService('ChangeModemLogConfig'), FAILED];
const EMPTY = [emptyList('ChangeModemLogConfig'), FAILED];
testCalls(name, [
  { args: [ITEMS], service: FAILS, rejected: true, request: [[TEXT]], lines: [...SENT, FAILED] },
  { args: [ITEMS], service: FAILS_NO, rejected: false, request: [[TEXT]], lines: [...SENT, FAILED] },
  { args: [ITEMS], service: AWAY, rejected: false, lines: [...READ, ...NO_SERVICE] },
  { args: [[]], rejected: false, lines: EMPTY },
]);
