import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  AWAY, calls, E, expectCall, FAILS, FAILS_NO, FORGOTTEN, I, NO, NO_FUNCTIONS, PENDING, REFUSED, W, YES,
} from '../support/cases.mjs';
import { fail } from '../support/zelk.mjs';

const name = 'getModemLogStatus';
const op = 'GetModemLogStatus';
const ENTER = E('GetModemLogStatus: enter PARAMETER_COUNT_ONE');
const CALLED = I('[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=0');
const DONE = [CALLED, I('[ZelkLogServiceClient] GetModemLogStatus, result=0')];
const FAILED = [
  CALLED, I('[ZelkLogServiceClient] GetModemLogStatus, result=9'),
  E("GetModemLogStatusCallback: asyncContext's resolved is false"),
];

calls('answers, takes one callback and ignores anything that is not a function', name, [
  [YES, () => [], { resolved: true }, [[op]], DONE],
  [NO, () => [], { resolved: false }, [[op]], DONE],
  [YES, (cb) => [cb], { callback: [[true]] }, [[op]], [ENTER, ...DONE]],
  [NO, (cb) => [cb], { callback: [[false]] }, [[op]], [ENTER, ...DONE]],
  ...[...NO_FUNCTIONS, Symbol('s')].map((value) =>
    [YES, () => [value], { resolved: true }, [[op]], [ENTER, ...DONE]]),
  [YES, (cb) => [cb, 1], REFUSED, [], [E('GetModemLogStatus: Illegal params number')]],
]);

calls('delivers the boolean of a failed query', name, [
  [FAILS, () => [], { rejected: true }, [[op]], FAILED],
  [FAILS_NO, () => [], { rejected: false }, [[op]], FAILED],
  [FAILS, (cb) => [cb], { callback: [[true]] }, [[op]], [ENTER, ...FAILED]],
  [AWAY, () => [], { rejected: false }, [], [CALLED, W(`[${op}]"get proxy fail."`), FAILED[2]]],
]);

test('the frame logs each of its steps, up to the one that fails', async () => {
  const own = new Error("the caller's own");
  const throwOwn = () => {
    throw own;
  };
  const D = (text) => `D ZELK_SERVICE: Handle2ValueCallback ${text}`;
  const QUEUED = [I(`HandleAsyncWork: workName = [${op}]`), I('HandleAsyncWork: end')];
  for (const [makeArguments, sees, lines] of [
    [() => [], { resolved: false },
      [...QUEUED, ...DONE, D('start promise callback'), D('promise callback end'), D('end')]],
    [(cb) => [cb], { callback: [[false]] }, [ENTER, ...QUEUED, ...DONE, D('normal callback end'), D('end')]],
    [() => [throwOwn], { uncaught: [own.message], ...FORGOTTEN }, [ENTER, ...QUEUED, ...DONE]],
  ]) { // The worker's lines may come before the caller's last one.
    const seen = await expectCall(name, makeArguments, sees, [[op]]);
    assert.deepEqual(seen.lines.sort(), lines.sort());
  }
  for (const [thrown, lines, kept, ...faults] of [ // The error keeps JavaScript from seeing the promise.
    ['9: error at napi_queue_async_work', QUEUED, PENDING.kept, 'napi_queue_async_work'],
    ['injected failure', [QUEUED[0]], { works: 1, deferreds: 1 }, 'napi_queue_async_work',
      'napi_throw_error'],
  ]) {
    fail(...faults.map((fault) => ({ name: fault, nth: 1 })));
    assert.deepEqual((await expectCall(name, () => [], { thrown, kept }, [])).lines, lines);
  }
});
