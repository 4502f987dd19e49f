import { ANSWERS, calls, E, FORGOTTEN, NO_FUNCTIONS, NO_PROXY, PENDING } from '../support/cases.mjs';

// Several texts are the modem log status's.
const requests = [['GetTcpdumpStatus']];
const unresolved = E("GetModemLogStatusCallback: asyncContext's resolved is false");
const unmade = E('GetModemLogStatusCallback: fill bool failed');
const failed = { code: 9, answer: true };

calls('answers, and takes one callback; a failure is never answered', 'getTcpdumpStatus', [
  ...ANSWERS.flatMap((answer) => [
    [{ answer }, () => [], { resolved: answer, requests, lines: [] }],
    [{ answer }, (callback) => [callback], { callback: [[answer]], requests, lines: [] }],
    ...NO_FUNCTIONS.map((value) => [{ answer }, () => [value], { resolved: answer, requests, lines: [] }]),
  ]),
  [{}, (callback) => [callback, 1], { lines: [E('GetModemLogStatus: Illegal params number')] }],
  [failed, () => [], { ...PENDING, requests, lines: [unresolved] }],
  [failed, (callback) => [callback], { ...FORGOTTEN, requests, lines: [unresolved] }],
  [null, () => [], { ...PENDING, lines: [NO_PROXY('GetTcpdumpStatus'), unresolved] }],
  [{}, () => [], { ...PENDING, requests, lines: [unmade] }, 'napi_get_boolean'],
]);
