import {
  AWAY, CALLBACK, E, FAILS, I, ITEMS, NO, noService, PENDING, READ, testCalls, TEXT, THROWS, UNCALLABLE,
  WRITTEN,
} from '../support/cases.mjs';

// All that a switch does with its arguments; the other two switches have their own lines and answers.
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
  { args: [true, CALLBACK, {}], callback: [[true]], request: [true], lines: UNSENT },
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
  { args: [0, ITEMS], service: FAILS, rejected: true, request: [false, [TEXT]], lines: OFF_FAILED },
  { args: [0], service: AWAY, rejected: false, lines: [NO_ITEMS, ...NO_SERVICE] },
  { args: [0, ITEMS], service: AWAY, rejected: false, lines: [...READ, ...NO_SERVICE] },
]);

const NO_TCPDUMP_ITEMS = I('[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty');
const tcpdumpFailed = (code) => I(`HandleTcpdumpSwitchCallback: errorcode ${code}`);
const NO_TCPDUMP_SERVICE = [noService('HandleTcpdumpSwitch'), tcpdumpFailed(3)];
testCalls('handleTcpdumpSwitch', [
  { args: [true], service: NO, resolved: false, request: [true], lines: [NO_TCPDUMP_ITEMS] },
  { args: [0, ITEMS], resolved: true, request: [false, [TEXT]], lines: [...READ, WRITTEN] },
  // The line is the modem log switch's.
  { args: [0, undefined], resolved: true, request: [false], lines: [UNDEFINED_ITEMS, NO_TCPDUMP_ITEMS] },
  { args: [true, CALLBACK, ITEMS, 1], lines: [E('HandleTcpdumpSwitch: Illegal params number')] },
  // A failure is never answered.
  { args: [0], service: FAILS, ...PENDING, request: [false], lines: [NO_TCPDUMP_ITEMS, tcpdumpFailed(9)] },
  { args: [0], service: AWAY, ...PENDING, lines: [NO_TCPDUMP_ITEMS, ...NO_TCPDUMP_SERVICE] },
  { args: [0, ITEMS], service: AWAY, ...PENDING, lines: [...READ, ...NO_TCPDUMP_SERVICE] },
]);

// The items are read but not sent, the service answers with its code alone, and success answers false.
const op = 'HandleBluetoothCallPcmLogSwitch';
const bluetoothFailed = (code) => I(`${op}Callback: errorcode ${code}`);
testCalls('handleBluetoothCallPcmLogSwitch', [
  { args: [true], service: {}, resolved: false, request: [true] },
  { args: [0, ITEMS], service: {}, resolved: false, request: [false], lines: READ },
  { args: [0, undefined], service: {}, resolved: false, request: [false],
    lines: [I(`${op}: config is undefined`)] },
  { args: [true, CALLBACK, ITEMS, 1], lines: [E(`${op}: Illegal params number`)] },
  // A failure is never answered.
  { args: [true], service: { code: 9 }, ...PENDING, request: [true], lines: [bluetoothFailed(9)] },
  { args: [true], service: AWAY, ...PENDING, lines: [noService(op), bluetoothFailed(3)] },
]);
