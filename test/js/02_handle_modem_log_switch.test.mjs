import {
  AWAY, calls, E, FAILS, FAILS_NO, I, ITEMS, READ, switchTests, TEXT, W, WRITTEN,
} from '../support/cases.mjs';

const name = 'handleModemLogSwitch';
const op = 'HandleModemLogSwitch';
const ON = E('HandleModemLogSwitch: switchStatus, 1');
const NO_ITEMS = I('NativeHandleModemLogSwitch asyncContext configs is empty');
const FAILED = E('[HandleModemLogSwitchCallback] !asyncContext->resolved');

switchTests(name, {
  sent: { items: [[TEXT]], lines: [WRITTEN] },
  on: [ON],
  off: [E('HandleModemLogSwitch: switchStatus, 0')],
  undefinedItems: I('HandleModemLogSwitch: config is undefined'),
  noItems: [NO_ITEMS],
});

calls('delivers the boolean of a failure', name, [
  [FAILS, () => [true], { rejected: true }, [[op, true]], [ON, NO_ITEMS, FAILED]],
  [FAILS_NO, () => [true], { rejected: false }, [[op, true]], [ON, NO_ITEMS, FAILED]],
  [FAILS, () => [0, ITEMS], { rejected: true }, [[op, false, [TEXT]]], [...READ, WRITTEN, FAILED]],
  [AWAY, () => [0], { rejected: false }, [], [NO_ITEMS, W(`[${op}]"get proxy fail."`), FAILED]],
  [AWAY, () => [0, ITEMS], { rejected: false }, [], [...READ, W(`[${op}]"get proxy fail."`), FAILED]],
]);
