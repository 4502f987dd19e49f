import {
  AWAY, CALLBACK, E, FAILS, ITEMS, MISMATCH, NO, NO_FUNCTIONS, noService, PENDING, READ,
  testCalls, TEXT, THROWS, UNCALLABLE, WRITTEN,
} from '../support/cases.mjs';

const name = 'sendModemLogCommand';
const [command] = ITEMS;
const SENT = [...READ, WRITTEN];
const MISMATCHES = [MISMATCH, MISMATCH, E('SendModemLogCommand: Illegal params')];

testCalls(name, [
  { args: [command], resolved: true, request: [TEXT], lines: SENT },
  { args: [command], service: NO, resolved: false, request: [TEXT], lines: SENT },
  // Of two arguments the second is the callback, whatever it is.
  { args: [command, CALLBACK], callback: [[true]], request: [TEXT], lines: SENT },
  { args: [command, CALLBACK, 1], resolved: true, request: [TEXT], lines: SENT },
  ...NO_FUNCTIONS.map((second) => (
    { args: [command, second], ...UNCALLABLE, request: [TEXT], lines: SENT })),
  { args: [], ...THROWS, lines: MISMATCHES },
  { args: ['a', CALLBACK], lines: MISMATCHES },
  // A failure is neither answered nor logged.
  { args: [command], service: FAILS, ...PENDING, request: [TEXT], lines: SENT },
  { args: [command], service: AWAY, ...PENDING, lines: [...READ, noService('SendModemLogCommand')] },
]);

// Any object is a command, of which it sends the parts that it can read.
const UNREAD = [E('GetString: get len error'), E('failed to get property names.')];
const NO_PARTS = '{"configKey":"","value":}}';
testCalls(name, [
  ...[{}, [1], { configKey: 5, value: 'x' }].map((value) => ({ value, text: NO_PARTS, lines: UNREAD })),
  { value: Object.assign([], command), text: TEXT, lines: READ },
].map(({ value, text, lines }) => ({
  args: [value],
  resolved: true,
  request: [text],
  lines: [...lines, E(`GetJsonParams ostringstream ${text}`)],
})));
