// All that a switch does with its arguments; the other two switches have their own lines and answers.
import {
  AWAY, CALLBACK, E, FAILS, FAILS_NO, I, ITEMS, NO, noService, READ, testCalls, TEXT, THROWS, UNCALLABLE,
  WRITTEN,
} from '../support/cases.mjs';

const name = 'handleModemLogSwitch';
const ON = E('HandleModemLogSwitch: switchStatus, 1');
const OFF = E('HandleModemLogSwitch: switchStatus, 0');
const UNDEFINED_ITEMS = I('HandleModemLogSwitch: config is undefined');
const NO_ITEMS = I('NativeHandleModemLogSwitch asyncContext configs is empty');
const SENT = [ON, ...READ, WRITTEN];
const UNSENT = [ON, NO_ITEMS];

// Only true is on.
testCalls(name, [
  { args: [true], resolved: true, request: [true], lines: UNSENT },
  { args: [false], service: NO, resolved: false, request: [false], lines: [OFF, NO_ITEMS] },
  ...['on', 1, undefined, null, {}, [], Object(true), () => true].map((value) => (
    { args: [value], resolved: true, request: [false], lines: [NO_ITEMS] })),
  { args: [], ...THROWS },
]);

// The callback comes second, and the items last.
testCalls(name, [
  { args: [true, ITEMS], resolved: true, request: [true, [TEXT]], lines: SENT },
  { args: [true, []], resolved: true, request: [true], lines: UNSENT },
  { args: [true, undefined], resolved: true, request: [true], lines: [ON, UNDEFINED_ITEMS, NO_ITEMS] },
  { args: [true, CALLBACK], callback: [[true]], request: [true], lines: UNSENT },
  { args: [true, CALLBACK, ITEMS], callback: [[true]], request: [true, [TEXT]], lines: SENT },
  ...[[], {}, undefined].map((third) => (
    { args: [true, CALLBACK, third], callback: [[true]], request: [true], lines: UNSENT })),
  // Anything else in the callback's place is called, which fails.
  ...[5, null, {}].map((second) => (
    { args: [true, second], ...UNCALLABLE, request: [true], lines: UNSENT })),
  { args: [true, ITEMS, CALLBACK], ...UNCALLABLE, request: [true], lines: UNSENT },
  { args: [true, undefined, ITEMS], ...UNCALLABLE, request: [true, [TEXT]], lines: SENT },
  { args: [true, CALLBACK, ITEMS, 1], lines: [E('HandleModemLogSwitch: Illegal params number')] },
]);

// The boolean of a failure is delivered.
const FAILED = E('[HandleModemLogSwitchCallback] !asyncContext->resolved');
const OFF_FAILED = [...READ, WRITTEN, FAILED];
const NO_SERVICE = [noService('HandleModemLogSwitch'), FAILED];
testCalls(name, [
  { args: [true], service: FAILS, rejected: true, request: [true], lines: [...UNSENT, FAILED] },
  { args: [true], service: FAILS_NO, rejected: false, request: [true], lines: [...UNSENT, FAILED] },
  { args: [0, ITEMS], service: FAILS, rejected: true, request: [false, [TEXT]], lines: OFF_FAILED },
  { args: [0], service: AWAY, rejected: false, lines: [NO_ITEMS, ...NO_SERVICE] },
  { args: [0, ITEMS], service: AWAY, rejected: false, lines: [...READ, ...NO_SERVICE] },
]);
