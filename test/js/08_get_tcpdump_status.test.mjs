import { AWAY, calls, E, FAILS, NO, NO_FUNCTIONS, PENDING, REFUSED, W, YES } from '../support/cases.mjs';

const op = 'GetTcpdumpStatus';
// Two texts are the modem log status's.
const UNRESOLVED = E("GetModemLogStatusCallback: asyncContext's resolved is false");

calls('answers, and takes one callback; a failure is never answered', 'getTcpdumpStatus', [
  [YES, () => [], { resolved: true }, [[op]], []],
  [NO, () => [], { resolved: false }, [[op]], []],
  [YES, (cb) => [cb], { callback: [[true]] }, [[op]], []],
  ...NO_FUNCTIONS.map((value) => [YES, () => [value], { resolved: true }, [[op]], []]),
  [YES, (cb) => [cb, 1], REFUSED, [], [E('GetModemLogStatus: Illegal params number')]],
  [FAILS, () => [], PENDING, [[op]], [UNRESOLVED]],
  [AWAY, () => [], PENDING, [], [W(`[${op}]"get proxy fail."`), UNRESOLVED]],
]);
