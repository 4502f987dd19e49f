import {
  AWAY, CALLBACK, E, FAILS, I, ITEMS, NO, noService, PENDING, READ, testCalls, TEXT, WRITTEN,
} from '../support/cases.mjs';

const name = 'handleTcpdumpSwitch';
const NO_ITEMS = I('[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty');
const UNDEFINED_ITEMS = I('HandleModemLogSwitch: config is undefined'); // The modem log switch's.
const SENT = [...READ, WRITTEN];

testCalls(name, [
  { args: [true], resolved: true, request: [true], lines: [NO_ITEMS] },
  { args: ['on'], service: NO, resolved: false, request: [false], lines: [NO_ITEMS] },
  { args: [true, ITEMS], resolved: true, request: [true, [TEXT]], lines: SENT },
  { args: [true, undefined], resolved: true, request: [true], lines: [UNDEFINED_ITEMS, NO_ITEMS] },
  { args: [true, CALLBACK, ITEMS], callback: [[true]], request: [true, [TEXT]], lines: SENT },
  { args: [true, CALLBACK, ITEMS, 1], lines: [E('HandleTcpdumpSwitch: Illegal params number')] },
]);

// A failure is never answered.
const failed = (code) => I(`HandleTcpdumpSwitchCallback: errorcode ${code}`);
const NO_SERVICE = [noService('HandleTcpdumpSwitch'), failed(3)];
testCalls(name, [
  { args: [true], service: FAILS, ...PENDING, request: [true], lines: [NO_ITEMS, failed(9)] },
  { args: [0, ITEMS], service: FAILS, ...PENDING, request: [false, [TEXT]], lines: [...SENT, failed(9)] },
  { args: [0], service: AWAY, ...PENDING, lines: [NO_ITEMS, ...NO_SERVICE] },
  { args: [0, ITEMS], service: AWAY, ...PENDING, lines: [...READ, ...NO_SERVICE] },
]);
