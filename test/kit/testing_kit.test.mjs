// zelklogservice/testing against its manual, with the module as built for users.
import assert from 'node:assert/strict';
import { constants } from 'node:buffer';
import { EventEmitter, once } from 'node:events';
import { copyFileSync, cpSync, mkdirSync, readFileSync, readdirSync } from 'node:fs';
import { createRequire } from 'node:module';
import { afterEach, test } from 'node:test';
import { setTimeout as sleep } from 'node:timers/promises';
import { inspect } from 'node:util';
import { compileFunction, createContext, runInContext } from 'node:vm';
import { Worker } from 'node:worker_threads';
import zelk from 'zelklogservice';
import { ServiceError, captureLog, logService, request, setCaller } from 'zelklogservice/testing';
import { forms, operation } from '../support/forms.mjs';
import { buildFolder, root, temporaryFolder } from '../support/system.mjs';

const LOAD = `const zelk = require(${JSON.stringify(root)});
  const { captureLog, logService, setCaller } = require(${JSON.stringify(`${root}testing/testing.js`)});`;
const NEVER = () => new Promise(() => {});

let service;
const serve = (...args) => (service = logService(...args));
afterEach(() => {
  setCaller(null);
  service?.restore();
});

const outcome = (promise) => promise.then((value) => ['resolved', value], (value) => ['rejected', value]);

async function arrival(count = 1) {
  while (service.requests.length < count) {
    await new Promise(setImmediate);
  }
}

const inWorker = (code) => new Worker(
  `const { parentPort } = require('node:worker_threads'); ${LOAD} ${code}`, { eval: true });
const firstMessage = async (code) => (await once(inWorker(code), 'message'))[0];

// What getModemLogStatus came to, call by call.
const codesOf = ({ lines }) =>
  lines.map(({ message }) => /GetModemLogStatus, result=(.*)/.exec(message)?.[1]).filter(Boolean);

const items = [{ configKey: 'k', value: { n: 1 } }];
const reply = '{"configKey":"k","value":"{\\"n\\":1}"}';

// The functions' own tests see that each operation gets its arguments and gives its answer or its code.
test('a handler gets copies of the lists, and answers with text or bytes, at once or later', async () => {
  class Handlers {
    #text = Buffer.from('a\xff', 'latin1');

    async GetTcpdumpConfig(keys) {
      return [Buffer.from(reply.replace('k', keys.pop()))];
    }

    QueryRemoteDevicesLogs() {
      return this.#text;
    }
  }
  Handlers.prototype.QueryRemoteDevicesLogs.bind = 'own';
  Object.setPrototypeOf(Handlers.prototype.GetTcpdumpConfig, null);
  serve(new Handlers());
  assert.deepEqual(await zelk.getTcpdumpConfig(['k']), items);
  assert.equal(await zelk.queryRemoteDevicesLogs('ß'), 'a\ufffd');
  assert.deepEqual(service.requests, [
    { operation: 'GetTcpdumpConfig', args: [['k']] },
    { operation: 'QueryRemoteDevicesLogs', args: ['ß'] },
  ]);
});

test('a handler that fails or answers wrongly ends its call, and is reported by restore', async () => {
  const fails = (error) => () => {
    throw error;
  };
  const corrupted = Object.assign(new ServiceError(7), { code: '7' });
  const changing = Object.defineProperty(new ServiceError(7), 'code', { get: () => codes.shift() });
  const codes = [9, 0];
  const cannot = fails(new Error('shown'));
  for (const [index, [handler, code, mistake]] of [
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
    [() => 1, 1004, /must answer a boolean, not a number/],
    [async () => [true], 1004, /must answer a boolean, not an array/],
    [fails(new ServiceError(7, '')), 1004, /must answer a boolean, not a string/],
  ].entries()) {
    const row = `row ${index}: ${handler}`;
    serve({ GetModemLogStatus: handler }, handler === NEVER ? { timeout: 50 } : {});
    const log = captureLog();
    assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', false], row);
    log.stop();
    assert.deepEqual(codesOf(log), [String(code)], row);
    if (mistake) {
      assert.throws(service.restore, { name: 'AggregateError', message: mistake }, row);
    }
    service.restore();
  }
});

test('an answer that cannot be sent is reported by restore', async () => {
  const tooLong = new Uint8Array(constants.MAX_STRING_LENGTH + 1);
  for (const [name, answer, mistake] of [
    ['getTcpdumpConfig', ['a', 1], /must answer an array of strings, not a number as element 1$/],
    ['getTcpdumpConfig', [tooLong], /must answer texts of at most \d+ bytes, not \d+$/],
    ['getRemoteDevicesList', tooLong, /must answer texts of at most \d+ bytes, not \d+$/],
    ['handleBluetoothCallPcmLogSwitch', true, /must answer nothing, not a boolean$/],
  ]) {
    serve({ [operation(name)]: () => answer });
    zelk[name](...forms(name)[0]).catch(() => {});
    await arrival();
    assert.throws(service.restore, { message: mistake }, name);
  }
});

test('what a test freezes holds up no call and hides no mistake', async () => {
  serve({ GetModemLogStatus: () => 1 });
  Object.freeze(service.requests);
  Object.freeze(service.errors);
  assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', false]);
  assert.throws(service.restore, /: service\.requests is frozen: .*; .* must answer a boolean/);
});

// The least of ten, because the machine may be busy with something else.
test('an answer arrives as soon as it is given', async () => {
  serve({ GetModemLogStatus: () => sleep(2, true) });
  let least = Infinity;
  for (let round = 0; round < 10; ++round) {
    const start = performance.now();
    await zelk.getModemLogStatus();
    least = Math.min(least, performance.now() - start);
  }
  assert.ok(least < 20, `${least} ms`);
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

test('a request gets what the service answers, whole', async () => {
  const value = -(2n ** 63n);
  serve({
    GetTcpdumpConfig: ([key]) => [Buffer.from([0xff]), key],
    ChangeTcpdumpConfig: () => Promise.reject(new ServiceError(1004)),
    HandleTcpdumpSwitch: (...args) => Promise.reject(new ServiceError(-5, args.length > 1)),
    HandleModemLogSwitch: () => {},
  });
  for (const [args, code, answer] of [
    [['GetTcpdumpConfig', ['ß\0']], 0, ['\ufffd', 'ß\0']],
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
  service.leave();
  await assert.rejects(request('GetModemLogStatus'), { code: 'ERR_ZELK_NO_SERVICE', message: /has left/ });
});

test('a service is put in front of the one before, each with its own reference service', async () => {
  const first = serve();
  await zelk.handleModemLogSwitch(true, items);
  const second = logService();
  const state = async () => [await zelk.getModemLogStatus(), await zelk.getModemLogConfig(['k'])];
  assert.deepEqual(await state(), [false, [{ configKey: 'k', value: {} }]]);
  assert.throws(first.restore, { code: 'ERR_ZELK_RESTORE_ORDER' });
  assert.equal(await firstMessage(
    'try { logService(); } catch ({ code }) { parentPort.postMessage(code); }'), 'ERR_ZELK_SERVICE_IN_USE');
  (second[Symbol.dispose] ?? second.restore)();
  assert.deepEqual(await state(), [true, items]);
  first.handle('GetModemLogStatus', () => false);
  assert.equal(await zelk.getModemLogStatus(), false);
  first.handle('GetModemLogStatus', undefined);
  assert.equal(await zelk.getModemLogStatus(), true);
  assert.equal(first.requests.length, 5);
  first.clear();
  assert.deepEqual(first.requests, []);
});

test('calls that wait go on while the service is away', async () => {
  let finish;
  serve({ GetModemLogStatus: () => new Promise((resolve) => (finish = resolve)) });
  const waiting = zelk.getModemLogStatus();
  await arrival();
  service.leave();
  assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', false]);
  assert.equal(service.requests.length, 1);
  finish(true);
  assert.equal(await waiting, true);
});

// The least of three, because the machine may be busy with something else.
test('a waiting call ends within 100 ms when its service is restored or its environment ends', async () => {
  const SERVE = 'logService({ GetModemLogStatus: () => new Promise(() => parentPort.postMessage(0)) });';
  const call = () => outcome(zelk.getModemLogStatus());
  const ends = {
    async restored() {
      serve({ GetModemLogStatus: NEVER });
      const calls = [call(), call()];
      await arrival(2);
      return [service.restore, calls];
    },
    async 'terminated, with a call of its own'() {
      const worker = inWorker(`${SERVE} zelk.getModemLogStatus();`);
      await once(worker, 'message');
      const calls = [call(), once(worker, 'exit').then(() => ['rejected', false])];
      await once(worker, 'message');
      await sleep(60); // It is not the first look at the worker that sees its end.
      return [() => worker.terminate(), calls];
    },
  };
  for (const [how, prepare] of Object.entries(ends)) {
    let least = Infinity;
    for (let round = 0; round < 3; ++round) {
      const [end, calls] = await prepare();
      const log = captureLog();
      const start = performance.now();
      end();
      assert.deepEqual(await Promise.all(calls), calls.map(() => ['rejected', false]), how);
      least = Math.min(least, performance.now() - start);
      log.stop();
      assert.deepEqual(codesOf(log), calls.map(() => '1001'), how);
      assert.equal(await zelk.getModemLogStatus(), false, 'the own service is back');
    }
    assert.ok(least < 100, `${how}: ${least} ms`);
  }
});

test('every capture sees the lines of every thread', async () => {
  const first = captureLog();
  const { lines, stop } = captureLog();
  await once(inWorker('captureLog(); zelk.getModemLogStatus();'), 'exit');
  stop();
  const seen = first.lines.length;
  assert.ok(seen > 5);
  zelk.getModemLogStatus(0, 0);
  assert.deepEqual(first.lines.slice(seen), [{
    level: 'E', domain: 0xd002d19, tag: 'ZELK_SERVICE', message: 'GetModemLogStatus: Illegal params number',
  }]);
  first.stop();
  assert.deepEqual(lines, first.lines.slice(0, seen));
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

test('an identity applies to every thread until it is restored', async () => {
  const ASK = `Promise.resolve(zelk.getModemLogStatus())
    .then((on) => parentPort.postMessage(on !== undefined));`;
  const served = async () => await zelk.getModemLogStatus() !== undefined;
  for (const [caller, isServed] of [
    [{ systemApplication: false }, false], [{ systemApplication: true }, true], [1n, false], [null, true],
  ]) {
    setCaller(caller);
    assert.deepEqual([await served(), await firstMessage(ASK)], [isServed, isServed]);
  }
});

test('an identity ends with the worker that gave it, and the latest of the others holds', async (t) => {
  setCaller(1n);
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
});

// What npm installs a second time where two packages need this one.
function secondCopy() {
  const folder = temporaryFolder();
  const libraries = `${folder}/lib/linux-${process.arch}`;
  for (const file of ['package.json', 'js', 'testing']) {
    cpSync(root + file, `${folder}/${file}`, { recursive: true });
  }
  mkdirSync(libraries, { recursive: true });
  for (const file of readdirSync(buildFolder).filter((name) => /\.(so|node)$/.test(name))) {
    copyFileSync(buildFolder + file, `${libraries}/${file}`);
  }
  return folder;
}

test('two copies of one version have one service in force, the same lines and one identity', async () => {
  const folder = secondCopy();
  const load = createRequire(`${folder}/package.json`);
  const other = load('zelklogservice/testing');
  assert.notEqual(other, createRequire(import.meta.url)('zelklogservice/testing'));
  const logs = [captureLog(), other.captureLog()];
  serve({ GetModemLogStatus: () => true });
  const { emit } = process;
  const front = other.logService({ GetModemLogStatus: () => Promise.reject(new ServiceError(5)) });
  assert.equal(process.emit, emit);
  assert.throws(service.restore, { code: 'ERR_ZELK_RESTORE_ORDER' });
  assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', false]);
  front.restore();
  assert.equal(await load('zelklogservice').getModemLogStatus(), true);
  assert.deepEqual([front.requests.length, service.requests.length], [1, 1]);
  assert.equal(await firstMessage(`const { logService: open } = require('${folder}/testing/testing.js');
    try { open(); } catch ({ code }) { parentPort.postMessage(code); }`), 'ERR_ZELK_SERVICE_IN_USE');

  other.setCaller(1n);
  assert.equal(zelk.getModemLogStatus(), undefined);
  setCaller(null);
  assert.equal(await zelk.getModemLogStatus(), true);

  const seen = logs[0].lines.length;
  assert.ok(seen > 5);
  logs[0].stop();
  assert.deepEqual(logs[1].lines, logs[0].lines);
  zelk.getModemLogStatus(0, 0);
  logs[1].stop();
  assert.deepEqual([logs[0].lines.length, logs[1].lines.length], [seen, seen + 1]);
});

test('events of the process are emitted as ever', async () => {
  serve({ GetModemLogStatus: () => true });
  const seen = [];
  process.once('zelk', function (...args) {
    seen.push(this, ...args);
  });
  assert.deepEqual([process.emit('zelk', 1, 2), process.emit('zelk', 3)], [true, false]);
  assert.deepEqual(seen, [process, 1, 2]);
  process.once('zelk', () => assert.fail('own'));
  assert.throws(() => process.emit('zelk'), /own/);
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
  assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', true]);
  const { answer } = await kit.request('GetModemLogLogMasks');
  log.stop();
  const [{ args }] = service.requests;
  assert.ok([service.requests, args, args[1], answer, log.lines].every((list) => list instanceof OwnArray));
  assert.throws(() => kit.setCaller(), OwnTypeError);
});
