import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, CALLBACK, E, FAILS, I, NO, NO_FUNCTIONS, noService, PENDING, testCalls,
} from '../support/cases.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

const op = 'GetModemLogStatus';
const ENTER = E('GetModemLogStatus: enter PARAMETER_COUNT_ONE');
const ASKED = I('[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=0');
const DONE = [ASKED, I('[ZelkLogServiceClient] GetModemLogStatus, result=0')];
const UNRESOLVED = E("GetModemLogStatusCallback: asyncContext's resolved is false");
const FAILED = [ASKED, I('[ZelkLogServiceClient] GetModemLogStatus, result=9'), UNRESOLVED];
const MANY = E('GetModemLogStatus: Illegal params number');

testCalls('getModemLogStatus', [
  { args: [], resolved: true, request: [], lines: DONE },
  { args: [], service: NO, resolved: false, request: [], lines: DONE },
  { args: [CALLBACK], callback: [[true]], request: [], lines: [ENTER, ...DONE] },
  ...[...NO_FUNCTIONS, Symbol('s')].map((value) => (
    { args: [value], resolved: true, request: [], lines: [ENTER, ...DONE] })),
  { args: [CALLBACK, 1], lines: [MANY] },
  // The boolean of a failed query is delivered.
  { args: [], service: FAILS, rejected: true, request: [], lines: FAILED },
  { args: [CALLBACK], service: FAILS, callback: [[true]], request: [], lines: [ENTER, ...FAILED] },
  { args: [], service: AWAY, rejected: false, lines: [ASKED, noService(op), UNRESOLVED] },
  { args: [], faults: ['napi_get_boolean'], ...PENDING, request: [],
    lines: [...DONE, E('GetModemLogStatusCallback: fill bool failed')] },
]);

// The texts are the modem log status's.
testCalls('getTcpdumpStatus', [
  { args: [], resolved: true, request: [] },
  { args: [CALLBACK], service: NO, callback: [[false]], request: [] },
  { args: [CALLBACK, 1], lines: [MANY] },
  { args: [CALLBACK], faults: [{ name: 'napi_get_cb_info', wordless: true }], thrown: 'empty error message' },
  // A failure is never answered.
  { args: [], service: FAILS, ...PENDING, request: [], lines: [UNRESOLVED] },
  { args: [], service: AWAY, ...PENDING, lines: [noService('GetTcpdumpStatus'), UNRESOLVED] },
]);

// The lines that frame every call, which the tables leave out. `end` may come after the worker's lines.
const D = (text) => `D ZELK_SERVICE: Handle2ValueCallback ${text}`;
const END = D('end');
const START = I(`HandleAsyncWork: workName = [${op}]`);
const QUEUED = [START, I('HandleAsyncWork: end')];
const throwOwn = () => {
  throw new Error("the caller's own");
};
for (const { title, args = [], faults = [], lines } of [
  { title: 'a promise', lines: [...QUEUED, D('start promise callback'), D('promise callback end'), END] },
  { title: 'a callback', args: [() => {}], lines: [...QUEUED, D('normal callback end'), END] },
  { title: 'a callback that throws', args: [throwOwn], lines: QUEUED },
  { title: 'a work that cannot be queued', faults: ['napi_queue_async_work'], lines: QUEUED },
  { title: 'that and no error', faults: ['napi_queue_async_work', 'napi_throw_error'], lines: [START] },
]) {
  test(`the frame logs each step of ${title}`, async () => {
    fail(...faults);
    const seen = await run(() => zelk.getModemLogStatus(...args));
    assert.deepEqual(seen.lines.filter((line) => /Handle(AsyncWork|2Value)/.test(line)), lines);
  });
}
