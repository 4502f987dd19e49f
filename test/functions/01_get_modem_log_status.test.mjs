import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, CALLBACK, E, FAILS, FAILS_NO, I, NO, NO_FUNCTIONS, noService, testCalls,
} from '../support/cases.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

const name = 'getModemLogStatus';
const op = 'GetModemLogStatus';
const ENTER = E('GetModemLogStatus: enter PARAMETER_COUNT_ONE');
const ASKED = I('[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=0');
const DONE = [ASKED, I('[ZelkLogServiceClient] GetModemLogStatus, result=0')];
const UNRESOLVED = E("GetModemLogStatusCallback: asyncContext's resolved is false");
const FAILED = [ASKED, I('[ZelkLogServiceClient] GetModemLogStatus, result=9'), UNRESOLVED];

testCalls(name, [
  { args: [], resolved: true, request: [], lines: DONE },
  { args: [], service: NO, resolved: false, request: [], lines: DONE },
  { args: [CALLBACK], callback: [[true]], request: [], lines: [ENTER, ...DONE] },
  { args: [CALLBACK], service: NO, callback: [[false]], request: [], lines: [ENTER, ...DONE] },
  ...[...NO_FUNCTIONS, Symbol('s')].map((value) => (
    { args: [value], resolved: true, request: [], lines: [ENTER, ...DONE] })),
  { args: [CALLBACK, 1], lines: [E('GetModemLogStatus: Illegal params number')] },
]);

// The boolean of a failed query is delivered.
testCalls(name, [
  { args: [], service: FAILS, rejected: true, request: [], lines: FAILED },
  { args: [], service: FAILS_NO, rejected: false, request: [], lines: FAILED },
  { args: [CALLBACK], service: FAILS, callback: [[true]], request: [], lines: [ENTER, ...FAILED] },
  { args: [], service: AWAY, rejected: false, lines: [ASKED, noService(op), UNRESOLVED] },
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
    const seen = await run(() => zelk[name](...args));
    assert.deepEqual(seen.lines.filter((line) => /Handle(AsyncWork|2Value)/.test(line)), lines);
  });
}
