import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { fail, identity, keeps, probes, proxyCount, run, service, SYSTEM_APP, withoutFrame, zelk } from '../support/zelk.mjs';

const UNRESOLVED = "E ZELK_SERVICE: GetModemLogStatusCallback: asyncContext's resolved is false";
const ENTER = 'E ZELK_SERVICE: GetModemLogStatus: enter PARAMETER_COUNT_ONE';
const clientLines = (entry, code) => [
  `I ZELK_SERVICE: [ZelkLogServiceClient] GetModemLogStatus, callbackStatus=${entry}`,
  `I ZELK_SERVICE: [ZelkLogServiceClient] GetModemLogStatus, result=${code}`,
];

afterEach(() => {
  fail();
  service({});
  identity(SYSTEM_APP);
});

test('answers by promise', async () => {
  for (const status of [true, false]) {
    service({ GetModemLogStatus: { answer: status } });
    const seen = await keeps({}, () => run(() => zelk.getModemLogStatus()));
    assert.equal(seen.resolved, status);
    assert.deepEqual(seen.requests, [['GetModemLogStatus']]);
    // The worker's lines may come before the caller's last one.
    assert.deepEqual(seen.lines.slice().sort(), [
      'D ZELK_SERVICE: Handle2ValueCallback end',
      'D ZELK_SERVICE: Handle2ValueCallback promise callback end',
      'D ZELK_SERVICE: Handle2ValueCallback start promise callback',
      'I ZELK_SERVICE: HandleAsyncWork: end',
      'I ZELK_SERVICE: HandleAsyncWork: workName = [GetModemLogStatus]',
      ...clientLines(0, 0),
    ].sort());
  }
});

test('answers by callback, with one argument and undefined as the return value', async () => {
  service({ GetModemLogStatus: { answer: true } });
  const seen = await keeps({}, () => run((callback) => zelk.getModemLogStatus(callback)));
  assert.equal(seen.returned, undefined);
  assert.deepEqual(seen.callback, [[true]]);
  assert.deepEqual(withoutFrame(seen.lines), [ENTER, ...clientLines(0, 0)]);
  assert.deepEqual(seen.lines.slice(-2), [
    'D ZELK_SERVICE: Handle2ValueCallback normal callback end',
    'D ZELK_SERVICE: Handle2ValueCallback end',
  ]);
});

test('ignores an argument that is no function', async () => {
  for (const argument of [42, undefined, null, 'x', {}, Symbol('s')]) {
    const seen = await run(() => zelk.getModemLogStatus(argument));
    assert.equal(seen.resolved, false);
    assert.equal(withoutFrame(seen.lines)[0], ENTER);
  }
});

test('delivers the boolean of a failed query as a rejection or to the callback', async () => {
  for (const answer of [true, false]) {
    service({ GetModemLogStatus: { code: 9, answer } });
    const byPromise = await keeps({}, () => run(() => zelk.getModemLogStatus()));
    assert.equal(byPromise.rejected, answer);
    assert.deepEqual(withoutFrame(byPromise.lines), [...clientLines(0, 9), UNRESOLVED]);
    assert.deepEqual((await run((callback) => zelk.getModemLogStatus(callback))).callback, [[answer]]);
  }
  service(null);
  const unreachable = await run(() => zelk.getModemLogStatus());
  assert.equal(unreachable.rejected, false);
  assert.equal(proxyCount(), 1);
  assert.deepEqual(withoutFrame(unreachable.lines),
    [clientLines(0, 3)[0], 'W FRAMEWORK: [GetModemLogStatus]"get proxy fail."', UNRESOLVED]);
});

test('refuses quietly', async () => {
  const refusals = [
    [SYSTEM_APP, (callback) => zelk.getModemLogStatus(callback, 1), 'E ZELK_SERVICE: GetModemLogStatus: Illegal params number'],
    ['1', (callback) => zelk.getModemLogStatus(callback), 'E ZELK_SERVICE: GetModemLogStatus: current app is not system app, so return'],
    ['0x0ffffffff', () => zelk.getModemLogStatus(1, 2), 'E ZELK_SERVICE: GetModemLogStatus: current app is not system app, so return'],
  ];
  for (const [token, call, line] of refusals) {
    identity(token);
    const seen = await keeps({}, () => run(call));
    assert.deepEqual([seen.returned, seen.thrown, seen.callback, seen.requests], [undefined, undefined, [], []]);
    assert.deepEqual(seen.lines, [line]);
  }
});

test('throws the message of a call that fails, and frees what it has made', async () => {
  for (const name of ['napi_get_cb_info', 'napi_typeof', 'napi_create_reference', 'napi_get_undefined', 'napi_create_string_utf8', 'napi_create_async_work']) {
    fail({ name, nth: 1 });
    const seen = await keeps({}, () => run((callback) => zelk.getModemLogStatus(callback)));
    assert.equal(seen.thrown.message, 'injected failure', name);
    assert.equal(Object.hasOwn(seen.thrown, 'code'), false);
    assert.deepEqual(seen.requests, []);
  }
  fail({ name: 'napi_typeof', nth: 1 }, { name: 'napi_get_last_error_info', nth: 1 });
  assert.deepEqual(await run((callback) => zelk.getModemLogStatus(callback)).then(({ thrown, returned }) => [thrown, returned]),
    [undefined, undefined]);
});

test('throws the status of a queue call that fails, and returns the promise all the same', async () => {
  fail({ name: 'napi_queue_async_work', nth: 1, status: 9 });
  let promise;
  const seen = await keeps({ records: 1, works: 1, deferreds: 1 }, () => run(() => (promise = zelk.getModemLogStatus())));
  assert.deepEqual([seen.thrown.code, seen.thrown.message], ['9', 'error at napi_queue_async_work']);
  assert.equal(promise, undefined); // The error keeps JavaScript from seeing it.
  assert.equal(seen.lines.at(-1), 'I ZELK_SERVICE: HandleAsyncWork: end');

  fail({ name: 'napi_queue_async_work', nth: 1, status: 9 }, { name: 'napi_throw_error', nth: 1 });
  const silent = await keeps({ works: 1 }, () => run((callback) => zelk.getModemLogStatus(callback)));
  assert.deepEqual([silent.thrown.message, silent.callback], ['injected failure', []]);
  assert.doesNotMatch(silent.lines.at(-1), /end$/);
});

test('keeps the record when the answer cannot be made or delivered', async () => {
  const failed = 'E ZELK_SERVICE: GetModemLogStatusCallback: fill bool failed';
  fail({ name: 'napi_get_boolean', nth: 1 });
  const unmade = await keeps({ records: 1, works: 1, deferreds: 1 }, () => run(() => zelk.getModemLogStatus()));
  assert.equal(unmade.pending, true);
  assert.equal(withoutFrame(unmade.lines).at(-1), failed);

  fail({ name: 'napi_resolve_deferred', nth: 1 });
  const unresolved = await keeps({ records: 1, works: 1, deferreds: 1 }, () => run(() => zelk.getModemLogStatus()));
  assert.deepEqual(unresolved.uncaught.map((error) => error.message), ['injected failure']);

  fail();
  const own = new Error("the caller's own");
  const thrower = await keeps({ records: 1, works: 1, references: 1 }, () => run(() => zelk.getModemLogStatus(() => {
    throw own;
  })));
  assert.deepEqual(thrower.uncaught, [own]);
  assert.doesNotMatch(thrower.lines.join('\n'), /callback end/);

  for (const name of ['napi_get_reference_value', 'napi_delete_reference']) {
    fail({ name, nth: 1 });
    const seen = await keeps({ records: 1, works: 1, references: 1 }, () => run((callback) => zelk.getModemLogStatus(callback)));
    assert.deepEqual(seen.uncaught.map((error) => error.message), ['injected failure'], name);
    assert.equal(seen.callback.length, name === 'napi_delete_reference' ? 1 : 0);
  }
});

test('the frame takes bare records and no records', async () => {
  assert.equal((await keeps({}, () => run(() => probes.handleBare()))).rejected, undefined);
  fail({ name: 'napi_create_promise', nth: 1 });
  assert.equal((await keeps({}, () => run(() => probes.handleBare()))).thrown.message, 'injected failure');
  fail();
  const nothing = await run(() => probes.handleNothing());
  assert.deepEqual([nothing.returned, nothing.lines], [undefined, [
    'I ZELK_SERVICE: HandleAsyncWork: workName = [Nothing]', 'E ZELK_SERVICE: HandleAsyncWork: error baseContext',
  ]]);
  assert.deepEqual((await run(() => probes.answerNothing())).lines,
    ['I ZELK_SERVICE: Handle2ValueCallback serious error baseContext nullptr']);
  // Neither callback nor promise: freed without an answer.
  assert.deepEqual((await keeps({}, () => run(() => probes.answerNobody()))).lines, ['D ZELK_SERVICE: Handle2ValueCallback end']);
});
