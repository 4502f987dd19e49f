import { AWAY, calls, I, ITEMS, PENDING, READ, switchTests, W } from '../support/cases.mjs';

const name = 'handleBluetoothCallPcmLogSwitch';
const op = 'HandleBluetoothCallPcmLogSwitch';
const FAILS = { code: 9 };
const failed = (code) => I(`HandleBluetoothCallPcmLogSwitchCallback: errorcode ${code}`);

// The items are read but not sent, and success answers false.
switchTests(name, {
  answers: [{}, {}], // The service has none.
  yes: false,
  sent: { items: [], lines: [] },
  undefinedItems: I('HandleBluetoothCallPcmLogSwitch: config is undefined'),
});

calls('never answers a failure', name, [
  [FAILS, () => [true], PENDING, [[op, true]], [failed(9)]],
  [FAILS, () => [0, ITEMS], PENDING, [[op, false]], [...READ, failed(9)]],
  [AWAY, () => [0, ITEMS], PENDING, [], [...READ, W(`[${op}]"get proxy fail."`), failed(3)]],
]);
