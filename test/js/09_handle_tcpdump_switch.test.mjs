import {
  AWAY, calls, FAILS, I, ITEMS, PENDING, READ, switchTests, TEXT, W, WRITTEN,
} from '../support/cases.mjs';

const name = 'handleTcpdumpSwitch';
const op = 'HandleTcpdumpSwitch';
const NO_ITEMS = I('[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty');
const failed = (code) => I(`HandleTcpdumpSwitchCallback: errorcode ${code}`);

switchTests(name, {
  sent: { items: [[TEXT]], lines: [WRITTEN] },
  undefinedItems: I('HandleModemLogSwitch: config is undefined'), // The modem log switch's.
  noItems: [NO_ITEMS],
});

calls('never answers a failure', name, [
  [FAILS, () => [true], PENDING, [[op, true]], [NO_ITEMS, failed(9)]],
  [FAILS, () => [0, ITEMS], PENDING, [[op, false, [TEXT]]], [...READ, WRITTEN, failed(9)]],
  [AWAY, () => [0], PENDING, [], [NO_ITEMS, W(`[${op}]"get proxy fail."`), failed(3)]],
  [AWAY, () => [0, ITEMS], PENDING, [], [...READ, W(`[${op}]"get proxy fail."`), failed(3)]],
]);
