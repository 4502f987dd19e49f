import { AWAY, CALLBACK, E, FAILS, NO, noService, PENDING, testCalls } from '../support/cases.mjs';

// Two texts are the modem log status's.
const UNRESOLVED = E("GetModemLogStatusCallback: asyncContext's resolved is false");

testCalls('getTcpdumpStatus', [
  { args: [], resolved: true, request: [] },
  { args: [], service: NO, resolved: false, request: [] },
  { args: [CALLBACK], callback: [[true]], request: [] },
  { args: [42], resolved: true, request: [] },
  { args: [CALLBACK, 1], lines: [E('GetModemLogStatus: Illegal params number')] },
  // A failure is never answered.
  { args: [], service: FAILS, ...PENDING, request: [], lines: [UNRESOLVED] },
  { args: [], service: AWAY, ...PENDING, lines: [noService('GetTcpdumpStatus'), UNRESOLVED] },
]);
