// zelklogservice/testing against its manual, as built for users, and the time limit that the manual gives.
import assert from 'node:assert/strict';
import { constants } from 'node:buffer';
import { EventEmitter, once } from 'node:events';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { afterEach, test } from 'node:test';
import { setTimeout as sleep } from 'node:timers/promises';
import { inspect } from 'node:util';
import { compileFunction, createContext, runInContext } from 'node:vm';
import { Worker } from 'node:worker_threads';
import zelk from 'zelklogservice';
import { ServiceError, captureLog, logService, request, setCaller } from 'zelklogservice/testing';
import { within } from '../../examples/within.mjs';
import { packageCopy, root } from '../support/system.mjs';

// What npm installs a second time where two packages need this one.
const other = createRequire(`${packageCopy()}/package.json`)('zelklogservice/testing');

const LOAD = `const zelk = require(${JSON.stringify(root)});
  const { captureLog, logService, setCaller } = require(${JSON.stringify(`${root}testing/testing.js`)});`;
const NEVER = () => new Promise(() => {});

let service;
const serve = (...args) => (service = logService(...args));
afterEach(() => {
  setCaller(null);
  service?.restore();
});

async function arrival(count = 1) {
  while (service.requests.length < count) {
    await new Promise(setImmediate);
  }
}

const inWorker = (code) => new Worker(
  `const { parentPort } = require('node:worker_threads'); ${LOAD} ${code}`, { eval: true });

const items = [{ configKey: 'k', value: { n: 1 } }];
const status = () => request('GetModemLogStatus');

// The functions' own tests see that each operation gets its arguments and gives its answer or its code.
test('a handler gets copies of the lists, and answers with text or bytes, at once or later', async () => {
  class Handlers {
    #text = Buffer.from('a\xff', 'latin1');
    ChangeTcpdumpConfig = () => Promise.reject(new ServiceError(1004));
    HandleTcpdumpSwitch = (...args) => Promise.reject(new ServiceError(-5, args.length > 1));
    HandleModemLogSwitch = () => {};

    async GetTcpdumpConfig(keys) {
      return [this.#text, keys.pop()];
    }

    QueryRemoteDevicesLogs() {
      return this.#text;
    }
  }
  Object.setPrototypeOf(Handlers.prototype.GetTcpdumpConfig, null);
  serve(new Handlers());
  const value = -(2n ** 63n);
  for (const [args, code, answer] of [
    [['GetTcpdumpConfig', ['ß\0']], 0, ['a\ufffd', 'ß\0']],
    [['QueryRemoteDevicesLogs', 'ß'], 0, 'a\ufffd'],
    [['ChangeTcpdumpConfig', []], 1004, undefined],
    [['HandleTcpdumpSwitch', true], -5, false],
    [['HandleTcpdumpSwitch', true, ['']], -5, true],
    [['HandleModemLogSwitch', true], 0, undefined],
    [['SendModemLogCommand', ''], 2, false],
    [['HandleBluetoothCallPcmLogSwitch', true], 0, undefined],
    [['FetchRemoteDevicesLogs', 'r', value], 0, `{"request":"r","value":${value},"logs":[]}`],
  ]) {
    service.clear();
    assert.deepEqual(await request(...args), { code, answer }, args[0]);
    const [operation, ...rest] = args;
    assert.deepEqual(service.requests, [{ operation, args: rest }]);
  }
});

test('a handler that fails or answers wrongly ends its call, and is reported by restore', async () => {
  const fails = (error) => () => {
    throw error;
  };
  const corrupted = Object.assign(new ServiceError(7), { code: '7' });
  const changing = Object.defineProperty(new ServiceError(7), 'code', { get: () => codes.shift() });
  const codes = [9, 0];
  const cannot = fails(new Error('shown'));
  const tooLong = new Uint8Array(constants.MAX_STRING_LENGTH + 1);
  const LENGTH = /must answer texts of at most \d+ bytes, not \d+$/;
  for (const [index, [handler, code, mistake, operation = 'GetModemLogStatus', ...args]] of [
    [async () => fails(new ServiceError(-(2 ** 31)))(), -(2 ** 31)],
    [fails(new ServiceError(2 ** 31 - 1)), 2 ** 31 - 1],
    [fails(changing), 9],
    [NEVER, 1002],
    [fails(new RangeError('own')), 1003, / failed: RangeError: own$/],
    [fails(Object.assign(new Error(), { toString: cannot })), 1003, /: something that cannot be shown$/],
    [fails({ [inspect.custom]: cannot }), 1003, /: something that cannot be shown$/],
    [fails(corrupted), 1003, /must be a number, not a string/],
    [() => Promise.reject('own'), 1003, /'own'$/],
    [() => Object.assign(Promise.resolve(true), { then: cannot }), 1003, /Error: shown$/],
    [async () => [true], 1004, /must answer a boolean, not an array/],
    [fails(new ServiceError(7, '')), 1004, /must answer a boolean, not a string/],
    [() => ['a', 1], 1004, /an array of strings, not a number as element 1$/, 'GetTcpdumpConfig', []],
    [() => [tooLong], 1004, LENGTH, 'GetTcpdumpConfig', []],
    [() => tooLong, 1004, LENGTH, 'GetRemoteDevicesList'],
    [() => true, 1004, /must answer nothing, not a boolean$/, 'HandleBluetoothCallPcmLogSwitch', true],
  ].entries()) {
    const row = `row ${index}: ${handler}`;
    serve({ [operation]: handler }, handler === NEVER ? { timeout: 50 } : {});
    assert.deepEqual(await request(operation, ...args), { code, answer: undefined }, row);
    if (mistake) {
      assert.throws(service.restore, { name: 'AggregateError', message: mistake }, row);
    }
    service.restore();
  }
});

test('what a test freezes holds up no call and hides no mistake', async () => {
  serve({ GetModemLogStatus: () => 1 });
  Object.freeze(service.requests);
  Object.freeze(service.errors);
  assert.deepEqual(await status(), { code: 1004, answer: undefined });
  assert.throws(service.restore, /: service\.requests is frozen: .*; .* must answer a boolean/);
});

test('mistakes throw where they are made', () => {
  for (const [make, name, message = /./] of [
    [() => serve({ getModemLogStatus: NEVER }), 'TypeError', /GetModemLogConfig, .*QueryProtocolData/],
    [() => serve({ HandleBluetoothCallPcmLogSwitch: 5 }), 'TypeError', /Bluetooth.* not a number/],
    [() => serve().handle('toString', NEVER), 'TypeError', /GetModemLogConfig, /],
    ...[[null], [5], [{}, null]].map((args) => [() => serve(...args), 'TypeError']),
    ...[0, -1, NaN, 2 ** 31, '5', null].map((timeout) => [() => serve({}, { timeout }), 'RangeError']),
    ...['5', 5n, undefined].map((code) => [() => new ServiceError(code), 'TypeError']),
    ...[0, NaN, 1.5, 2 ** 31].map((code) => [() => new ServiceError(code), 'RangeError']),
    ...[undefined, 1, {}].map((caller) => [() => setCaller(caller), 'TypeError']),
    ...[-1n, 2n ** 64n].map((caller) => [() => setCaller(caller), 'RangeError']),
    [() => request('getModemLogStatus'), 'TypeError', /GetModemLogConfig, /],
    [() => request('HandleTcpdumpSwitch', true, [], 5), 'TypeError', / takes 1 or 2 arguments, not 3$/],
    [() => request('HandleTcpdumpSwitch', 1), 'TypeError', /^argument 1 of .* must be a boolean, not 1$/],
    [() => request('GetTcpdumpConfig', ['k', 5]), 'TypeError', /must be an array of strings/],
    [() => request('GetTcpdumpConfig', new Array(1)), 'TypeError', /must be an array of strings/],
    [() => request('QueryProtocolData', 5), 'TypeError', /must be a string/],
    [() => request('FetchRemoteDevicesLogs', '', 2n ** 63n), 'RangeError', /^argument 2 of .* 64 bits/],
  ]) {
    assert.throws(make, { name, message });
    service?.restore();
  }
  assert.equal(String(new ServiceError(7)), 'ServiceError: the log service answers with code 7');
});

test('a service is put in front of the one before, each with its own reference service', async () => {
  const first = serve();
  await zelk.handleModemLogSwitch(true, items);
  const state = async () => [await zelk.getModemLogStatus(), await zelk.getModemLogConfig(['k'])];
  for (const kit of [{ logService }, other]) {
    const { emit } = process;
    const second = kit.logService();
    assert.equal(process.emit, emit);
    assert.deepEqual(await state(), [false, [{ configKey: 'k', value: {} }]]);
    assert.throws(first.restore, { code: 'ERR_ZELK_RESTORE_ORDER' });
    (second[Symbol.dispose] ?? second.restore)();
    assert.deepEqual(await state(), [true, items]);
  }
  const worker = inWorker('try { logService(); } catch ({ code }) { parentPort.postMessage(code); }');
  assert.deepEqual(await once(worker, 'message'), ['ERR_ZELK_SERVICE_IN_USE']);
  first.handle('GetModemLogStatus', () => false);
  assert.equal(await zelk.getModemLogStatus(), false);
  first.handle('GetModemLogStatus', undefined);
  assert.equal(await zelk.getModemLogStatus(), true);
  assert.equal(first.requests.length, 7);
  first.clear();
  assert.deepEqual(first.requests, []);
});

// The least of five, because the machine may be busy with something else.
test('a waiting call ends soon when it is answered, or its service or environment ends', async () => {
  const SERVE = 'logService({ GetModemLogStatus: () => new Promise(() => parentPort.postMessage(0)) });';
  const GONE = { code: 1001, answer: undefined };
  const ends = {
    async 'answered, the service being away'() {
      let finish;
      serve({ GetModemLogStatus: () => new Promise((resolve) => (finish = resolve)) });
      const calls = [status()];
      await arrival();
      service.leave();
      await assert.rejects(status, { code: 'ERR_ZELK_NO_SERVICE', message: /has left/ });
      return [() => finish(true), calls, { code: 0, answer: true }, 15];
    },
    async restored() {
      serve({ GetModemLogStatus: NEVER });
      const calls = [status(), status()];
      await arrival(2);
      return [service.restore, calls, GONE, 100];
    },
    async 'terminated, with a call of its own'() {
      const worker = inWorker(`${SERVE} zelk.getModemLogStatus();`);
      await once(worker, 'message');
      const calls = [status(), once(worker, 'exit').then(() => GONE)];
      await once(worker, 'message');
      await sleep(60); // It is not the first look at the worker that sees its end.
      return [() => worker.terminate(), calls, GONE, 100];
    },
  };
  for (const [how, prepare] of Object.entries(ends)) {
    let least = Infinity;
    for (let round = 0; round < 5; ++round) {
      const [end, calls, outcome, limit] = await prepare();
      const start = performance.now();
      end();
      assert.deepEqual(await Promise.all(calls), calls.map(() => outcome), how);
      least = Math.min(least, performance.now() - start - limit);
      service.restore();
      assert.equal(await zelk.getModemLogStatus(), false, 'the own service is back');
    }
    assert.ok(least < 0, `${how}: ${least} ms over the limit`);
  }
});

test('every capture sees the lines of every thread', async () => {
  const first = captureLog();
  const { lines, stop } = other.captureLog();
  await once(inWorker('captureLog(); zelk.getModemLogStatus();'), 'exit');
  first.stop();
  const seen = first.lines.length;
  assert.ok(seen > 5);
  zelk.getModemLogStatus(0, 0);
  stop();
  assert.equal(first.lines.length, seen);
  assert.deepEqual(lines, [...first.lines, {
    level: 'E', domain: 0xd002d19, tag: 'ZELK_SERVICE', message: 'GetModemLogStatus: Illegal params number',
  }]);
});

test('what a worker captures is not kept when it has ended', async () => {
  await once(inWorker('for (let i = 0; i < 200; ++i) captureLog();'), 'exit');
  const before = process.memoryUsage.rss();
  for (let i = 0; i < 3000; ++i) {
    zelk.getModemLogStatus(0, 0);
  }
  const kept = process.memoryUsage.rss() - before;
  assert.ok(kept < 40e6, `${kept} bytes`);
});

test('the latest identity applies to every thread, until the worker that gave it ends', async (t) => {
  other.setCaller({ systemApplication: false });
  const workers = [];
  t.after(() => workers.forEach((worker) => worker.terminate()));
  const isSystem = () => zelk.getModemLogStatus() !== undefined;
  for (const [caller, expected] of [['{ systemApplication: true }', true], ['1n', false], ['null', true]]) {
    const worker = inWorker(`setCaller(${caller}); parentPort.once('message', () => {}).postMessage(0);`);
    workers.push(worker);
    await once(worker, 'message');
    assert.equal(isSystem(), expected, `set to ${caller}`);
  }
  for (const expected of [false, true, false]) {
    const worker = workers.pop();
    worker.postMessage(0);
    await once(worker, 'exit');
    assert.equal(isSystem(), expected, `after the end of worker ${workers.length}`);
  }
  setCaller(null);
  assert.ok(isSystem());
});

test('events of the process are emitted as ever', async () => {
  serve({ GetModemLogStatus: () => true });
  const seen = [];
  process.once('zelk', function (...args) {
    seen.push(this, ...args);
  });
  assert.deepEqual([process.emit('zelk', 1, 2), process.emit('zelk', 3)], [true, false]);
  assert.deepEqual(seen, [process, 1, 2]);
  // As of the copy of `process` that a test runner may give its tests.
  assert.equal(process.emit.call(new EventEmitter(), 'exit'), false);
  assert.equal(await zelk.getModemLogStatus(), true);
});

test('objects of the kit belong to the realm that loaded it', async () => {
  const path = `${root}testing/testing.js`;
  const own = createContext({});
  const module = { exports: {} };
  compileFunction(readFileSync(path, 'utf8'), ['module', 'require'], { parsingContext: own, filename: path })(
    module, createRequire(path));
  const kit = module.exports;
  const [OwnArray, OwnTypeError] = runInContext('[Array, TypeError]', own);
  const log = kit.captureLog();
  service = kit.logService({
    HandleModemLogSwitch: (on, configs) => configs instanceof OwnArray,
    GetModemLogStatus: () => Promise.reject(new ServiceError(5, true)),
  });
  assert.equal(await zelk.handleModemLogSwitch(true, items), true);
  assert.deepEqual(await status(), { code: 5, answer: true });
  const { answer } = await kit.request('GetModemLogLogMasks');
  log.stop();
  const [{ args }] = service.requests;
  assert.ok([service.requests, args, args[1], answer, log.lines].every((list) => list instanceof OwnArray));
  assert.throws(() => kit.setCaller(), OwnTypeError);
});

const MASKS = [{ configKey: 'ap', value: '0x0' }, { configKey: 'cp', value: '0x0' }];
const UNSUPPORTED = 'GetModemLogLogMasks current function not support in current time';

// Each: what happens, the call, what comes of it, and the limit.
const CALLS = [
  ['an answer', () => zelk.getModemLogStatus(), { answer: false }],
  ['an answer by callback', (done) => zelk.getModemLogStatus(done), { answer: false }],
  ['a query that throws', () => zelk.getModemLogLogMasks(), { error: UNSUPPORTED }],
  ['a query that throws and calls back', (done) => zelk.getModemLogLogMasks(done), { answer: MASKS }],
  ['an exception', (done) => assert.fail(typeof done), { error: 'function' }],
  ['a failure', () => zelk.handleModemLogSwitch(true), { rejected: true }],
  ['a refusal', () => zelk.getModemLogStatus(1, 2), { error: 'it was refused: the log says why' }],
  ['its limit', () => zelk.getTcpdumpConfig([]), { error: 'it did not answer within 50 ms' }, 50],
];

const timers = () => process.getActiveResourcesInfo().filter((resource) => resource === 'Timeout').length;

for (const [what, call, expected, limit = 60_000] of CALLS) {
  test(`a limited call ends with ${what}, and its timer with it`, { timeout: 20_000 }, async () => {
    serve({ HandleModemLogSwitch: () => Promise.reject(new ServiceError(5, true)) });
    const before = timers();
    const seen = await within(limit, 'it', call).then((answer) => ({ answer }),
      (reason) => (reason instanceof Error ? { error: reason.message } : { rejected: reason }));
    assert.deepEqual(seen, expected);
    assert.equal(timers(), before);
  });
}
