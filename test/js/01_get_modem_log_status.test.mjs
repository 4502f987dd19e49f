import assert from 'node:assert/strict';
import { test } from 'node:test';
import { ANSWERS, calls, E, FORGOTTEN, I, NO_FUNCTIONS, NO_PROXY, PENDING, sees } from '../support/cases.mjs';
import { fail, keeps, probes } from '../support/zelk.mjs';

const name = 'getModemLogStatus';
const requests = [['GetModemLogStatus']];
const ENTER = E('GetModemLogStatus: enter PARAMETER_COUNT_ONE');
const CALLED = I('[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=0');
const client = (code) => [CALLED, I(`[ZelkLogServiceClient] GetModemLogStatus, result=${code}`)];
const UNRESOLVED = E("GetModemLogStatusCallback: asyncContext's resolved is false");
const D = (text) => `D ZELK_SERVICE: Handle2ValueCallback ${text}`;

calls('answers, takes one callback and ignores what is none', name, [
  ...ANSWERS.flatMap((answer) => [
    [{ answer }, () => [], { resolved: answer, requests, lines: client(0) }],
    [{ answer }, (callback) => [callback], { callback: [[answer]], requests, lines: [ENTER, ...client(0)] }],
    ...[...NO_FUNCTIONS, Symbol('s')].map((value) =>
      [{ answer }, () => [value], { resolved: answer, requests, lines: [ENTER, ...client(0)] }]),
  ]),
  [{}, (callback) => [callback, 1], { lines: [E('GetModemLogStatus: Illegal params number')] }],
]);

calls('delivers the boolean of a failed query as a rejection or to the callback', name, [
  ...ANSWERS.flatMap((answer) => [
    [{ code: 9, answer }, () => [], { rejected: answer, requests, lines: [...client(9), UNRESOLVED] }],
    [{ code: 9, answer }, (callback) => [callback],
      { callback: [[answer]], requests, lines: [ENTER, ...client(9), UNRESOLVED] }],
  ]),
  [null, () => [], { rejected: false, lines: [CALLED, NO_PROXY('GetModemLogStatus'), UNRESOLVED] }],
]);

// The fault sweep tells what such calls leave behind; these are their lines.
calls('keeps the record when the answer cannot be made', name, [
  [{}, () => [], { ...PENDING, requests, lines: [...client(0), E('GetModemLogStatusCallback: fill bool failed')] },
    'napi_get_boolean'],
]);

test('the frame tells each of its steps, up to the one that fails', async () => {
  const own = new Error("the caller's own");
  const throwOwn = () => { throw own; };
  const queued = [I('HandleAsyncWork: workName = [GetModemLogStatus]'), I('HandleAsyncWork: end')];
  for (const [call, expected, lines] of [
    [() => [], { resolved: false, requests },
      [...queued, ...client(0), D('start promise callback'), D('promise callback end'), D('end')]],
    [(callback) => [callback], { callback: [[false]], requests },
      [ENTER, ...queued, ...client(0), D('normal callback end'), D('end')]],
    [() => [throwOwn], { uncaught: [own.message], requests, ...FORGOTTEN }, [ENTER, ...queued, ...client(0)]],
  ]) { // The worker's lines may come before the caller's last one.
    assert.deepEqual((await sees(name, call, expected)).lines.sort(), lines.sort());
  }
  for (const [thrown, lines, kept, ...faults] of [ // The error keeps JavaScript from seeing the promise.
    ['9: error at napi_queue_async_work', queued, PENDING.kept, 'napi_queue_async_work'],
    ['injected failure', [queued[0]], { works: 1, deferreds: 1 }, 'napi_queue_async_work', 'napi_throw_error'],
  ]) {
    fail(...faults.map((fault) => ({ name: fault, nth: 1 })));
    assert.deepEqual((await sees(name, () => [], { thrown, kept })).lines, lines);
  }
});

test('the frame takes bare records and no records', async () => {
  for (const [probe, lines, message, ...faults] of [
    ['handleBare'],
    ['handleBare', undefined, 'injected failure', { name: 'napi_create_promise', nth: 1 }],
    ['handleNothing', [I('HandleAsyncWork: workName = [Nothing]'), E('HandleAsyncWork: error baseContext')]],
    ['answerNothing', [I('Handle2ValueCallback serious error baseContext nullptr')]],
    ['answerNobody', [D('end')]], // Neither callback nor promise: freed without an answer.
  ]) {
    fail(...faults);
    const seen = await keeps({}, () => probes[probe]());
    assert.deepEqual([seen.thrown?.message, seen.rejected, seen.uncaught], [message, undefined, []], probe);
    assert.deepEqual(seen.lines, lines ?? seen.lines, probe);
  }
});
