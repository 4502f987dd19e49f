import { AWAY, CALLBACK, E, I, ITEMS, noService, PENDING, READ, testCalls } from '../support/cases.mjs';

const name = 'handleBluetoothCallPcmLogSwitch';
const op = 'HandleBluetoothCallPcmLogSwitch';
const UNDEFINED_ITEMS = I(`${op}: config is undefined`);
const DONE = {}; // The service answers with its code alone.
const FAILS = { code: 9 };
const failed = (code) => I(`${op}Callback: errorcode ${code}`);

// The items are read but not sent, and success answers false.
testCalls(name, [
  { args: [true], service: DONE, resolved: false, request: [true] },
  { args: ['on'], service: DONE, resolved: false, request: [false] },
  { args: [true, ITEMS], service: DONE, resolved: false, request: [true], lines: READ },
  { args: [true, undefined], service: DONE, resolved: false, request: [true], lines: [UNDEFINED_ITEMS] },
  { args: [true, CALLBACK, ITEMS], service: DONE, callback: [[false]], request: [true], lines: READ },
  { args: [true, CALLBACK, ITEMS, 1], lines: [E(`${op}: Illegal params number`)] },
  // A failure is never answered.
  { args: [true], service: FAILS, ...PENDING, request: [true], lines: [failed(9)] },
  { args: [0, ITEMS], service: FAILS, ...PENDING, request: [false], lines: [...READ, failed(9)] },
  { args: [0, ITEMS], service: AWAY, ...PENDING, lines: [...READ, noService(op), failed(3)] },
]);
