// zelklogservice/testing against its manual, with the module as built for users.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { afterEach, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Worker } from 'node:worker_threads';
import zelk from 'zelklogservice';
import { ServiceError, captureLog, logService, setCaller } from 'zelklogservice/testing';

const ROOT = fileURLToPath(new URL('../..', import.meta.url));
const NEVER = () => new Promise(() => {});

let service;
const serve = (...args) => (service = logService(...args));
afterEach(() => service?.restore());

const outcome = (promise) => promise.then((value) => ['resolved', value], (value) => ['rejected', value]);

const item = '{"configKey":"k","value":{"n":1}}';
const items = [{ configKey: 'k', value: { n: 1 } }];
const reply = '{"configKey":"k","value":"{\\"n\\":1}"}';

test('each operation has its handler, which gets the arguments and gives the answer', async () => {
  for (const [operation, call, args, answer, seen = answer] of [
    ['GetModemLogConfig', () => zelk.getModemLogConfig(['k']), [['k']], [reply], items],
    ['GetModemLogStatus', () => zelk.getModemLogStatus(), [], true],
    ['HandleModemLogSwitch', () => zelk.handleModemLogSwitch(true), [true], true],
    ['HandleModemLogSwitch', () => zelk.handleModemLogSwitch(false, items), [false, [item]], true],
    ['SendModemLogCommand', () => zelk.sendModemLogCommand(items[0]), [item], true],
    ['ChangeModemLogConfig', () => zelk.changeModemLogConfig(items), [[item]], true],
    ['GetTcpdumpStatus', () => zelk.getTcpdumpStatus(), [], true],
    ['GetTcpdumpConfig', () => zelk.getTcpdumpConfig(['k']), [['k']], [Buffer.from(reply)], items],
    ['ChangeTcpdumpConfig', () => zelk.changeTcpdumpConfig(items), [[item]], true],
    ['HandleTcpdumpSwitch', () => zelk.handleTcpdumpSwitch(true, items), [true, [item]], true],
    ['HandleBluetoothCallPcmLogSwitch', () => zelk.handleBluetoothCallPcmLogSwitch(true), [true], undefined, false],
    ['FetchRemoteDevicesLogs', () => zelk.fetchRemoteDevicesLogs('r', -(2 ** 62)), ['r', -(2n ** 62n)], 'grün'],
    ['QueryRemoteDevicesLogs', () => zelk.queryRemoteDevicesLogs('ß'), ['ß'], Buffer.from([0x61, 0xff]), 'a\ufffd'],
    ['GetRemoteDevicesList', () => zelk.getRemoteDevicesList(), [], ''],
    ['QueryProtocolData', () => zelk.queryProtocolData('r'), ['r'], 'x'.repeat(100_000)],
  ]) {
    for (const give of [(value) => value, async (value) => value]) {
      serve({ [operation]: (...given) => (assert.deepEqual(given, args), give(answer)) });
      assert.deepEqual(await call(), seen, operation);
      assert.deepEqual(service.requests, [{ operation, args }]);
      service.restore();
    }
  }
});

test('a handler decides how its call ends', async () => {
  for (const [title, handler, code, seen, mistake] of [
    ['nothing', () => {}, 0, ['resolved', false]],
    ['a code', () => { throw new ServiceError(-5); }, -5, ['rejected', false]],
    ['a code and an answer, late', async () => { throw new ServiceError(7, true); }, 7, ['rejected', true]],
    ['an error', () => { throw new RangeError('own'); }, 1003, ['rejected', false], /^RangeError: own/],
    ['a rejection with anything', () => Promise.reject('own'), 1003, ['rejected', false], /^own/],
    ['a wrong answer', () => 1, 1004, ['rejected', false], /answers a boolean, not a number/],
    ['a wrong answer with a code', () => { throw new ServiceError(7, ['']); }, 1004, ['rejected', false], /not an array/],
    ['never', NEVER, 1002, ['rejected', false]],
  ]) {
    serve({ GetModemLogStatus: handler }, { timeout: 50 });
    const log = captureLog();
    assert.deepEqual(await outcome(zelk.getModemLogStatus()), seen, title);
    log.stop();
    assert.ok(log.lines.some(({ message }) => message.endsWith(`GetModemLogStatus, result=${code}`)), title);
    if (mistake) {
      assert.throws(service.restore, ({ errors }) => errors.length === 1 && mistake.test(String(errors[0])), title);
    }
    service.restore();
  }
});

test('mistakes are refused where they are made', () => {
  const other = () => logService({ GetModemLogStatus: NEVER });
  for (const [make, error] of [
    [() => serve({ getModemLogStatus: NEVER }), { name: 'TypeError', message: /GetModemLogStatus.*QueryProtocolData/ }],
    [() => serve({ GetModemLogStatus: true }), { name: 'TypeError', message: /boolean/ }],
    [() => serve().handle('toString', NEVER), { name: 'TypeError' }],
    ...[0, -1, NaN, 2 ** 31, '5', null].map((timeout) => [() => serve({}, { timeout }), { name: 'RangeError' }]),
    ...['5', 5n, undefined].map((code) => [() => new ServiceError(code), { name: 'TypeError' }]),
    ...[0, NaN, 1.5, 2 ** 31].map((code) => [() => new ServiceError(code), { name: 'RangeError' }]),
    ...[undefined, 1, {}].map((caller) => [() => setCaller(caller), { name: 'TypeError' }]),
    ...[-1n, 2n ** 64n].map((caller) => [() => setCaller(caller), { name: 'RangeError' }]),
  ]) {
    assert.throws(make, error, String(make));
    service?.restore();
  }
  const first = other();
  const second = other();
  assert.throws(first.restore, { code: 'ERR_ZELK_RESTORE_ORDER' });
  second.restore();
  first.restore();
});

test('without a handler a reference service of its own answers', async () => {
  const first = serve();
  await zelk.handleModemLogSwitch(true, items);
  const second = logService();
  assert.deepEqual([await zelk.getModemLogStatus(), await zelk.getModemLogConfig(['k'])],
    [false, [{ configKey: 'k', value: {} }]]);
  second.restore();
  assert.deepEqual([await zelk.getModemLogStatus(), await zelk.getModemLogConfig(['k'])], [true, items]);
  first.handle('GetModemLogStatus', () => false);
  assert.equal(await zelk.getModemLogStatus(), false);
  first.handle('GetModemLogStatus', undefined);
  assert.equal(await zelk.getModemLogStatus(), true);
  assert.equal(first.requests.length, 5);
  first.clear();
  assert.deepEqual(first.requests, []);
});

test('the service leaves and joins again, and calls that wait go on', async () => {
  let finish;
  serve({ GetModemLogStatus: () => new Promise((resolve) => (finish = resolve)) });
  const waiting = zelk.getModemLogStatus();
  while (!finish) {
    await new Promise(setImmediate);
  }
  service.leave();
  const log = captureLog();
  assert.deepEqual(await outcome(zelk.getModemLogStatus()), ['rejected', false]);
  log.stop();
  assert.deepEqual(log.lines.filter(({ tag }) => tag === 'FRAMEWORK'), [
    { level: 'W', domain: 0xd002d19, tag: 'FRAMEWORK', message: '[GetModemLogStatus]"get proxy fail."' }]);
  assert.equal(service.requests.length, 1);
  service.join();
  finish(true);
  assert.equal(await waiting, true);
});

test('what a call waits for ends', async () => {
  serve({ GetModemLogStatus: NEVER });
  const waiting = outcome(zelk.getModemLogStatus());
  while (service.requests.length === 0) {
    await new Promise(setImmediate);
  }
  const start = Date.now();
  service.restore();
  assert.deepEqual(await waiting, ['rejected', false]);
  assert.ok(Date.now() - start < 100);
});

test('an identity holds in every thread until it is given back', async () => {
  const inWorker = (code) => new Promise((resolve, reject) => {
    new Worker(`const { parentPort } = require('node:worker_threads');
      const zelk = require(${JSON.stringify(ROOT)}); const kit = require(${JSON.stringify(`${ROOT}testing.js`)});
      parentPort.postMessage(${code});`, { eval: true }).on('message', resolve).on('error', reject);
  });
  const served = () => zelk.getModemLogStatus() !== undefined;
  for (const [caller, isServed] of [
    [{ systemApplication: false }, false], [{ systemApplication: true }, true], [2n ** 32n, true],
    [2n ** 64n - 1n - 2n ** 32n, false], [null, true],
  ]) {
    setCaller(caller);
    assert.deepEqual([served(), await inWorker('zelk.getModemLogStatus() !== undefined')], [isServed, isServed]);
  }
});

test('a process ends while calls wait', () => {
  for (const [code, status] of [
    ['setTimeout(() => process.exit(3), 200);', 3],
    ['setTimeout(() => service.restore(), 200);', 0],
  ]) {
    const start = Date.now();
    const child = spawnSync(process.execPath, ['-e', `
      const service = require('./testing.js').logService({ GetModemLogStatus: () => new Promise(() => {}) });
      for (let i = 0; i < 8; ++i) { require('.').getModemLogStatus().catch(() => {}); } ${code}`], { cwd: ROOT });
    assert.deepEqual([child.status, String(child.stderr)], [status, '']);
    assert.ok(Date.now() - start < 5000);
  }
});
