// The log service as a process on a bus, killed, stopped and replaced while calls are in flight, and the bus with it.
// Every call that answers failures must be settled, and the next one must find whatever is there then.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setTimeout as sleep } from 'node:timers/promises';
import { after, afterEach, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { buildFolder, held, run, service as setService, zelk } from '../support/zelk.mjs';

const ROUNDS = Number(process.env.ZELK_SERVICE_FAULT_ROUNDS || 2);
const IS_LONG = ROUNDS > 2;
const CALLS = 1000;
const GONE = 1001;
const LATE = 1002;
const UNREACHABLE = 1; // No owner of the name, or no bus.

const folder = mkdtempSync(join(tmpdir(), 'zelk-bus-'));
const address = `unix:path=${folder}/bus`;
const running = new Set();

function start(command, ...args) {
  const child = spawn(command, args, { stdio: ['ignore', 'pipe', 'ignore'] });
  running.add(child);
  child.on('exit', () => running.delete(child));
  return child;
}

async function stop(child, signal = 'SIGKILL') {
  const isGone = once(child, 'exit');
  child.kill(signal);
  return (await isGone)[0];
}

async function startBus() {
  const bus = start('dbus-daemon', '--session', '--nofork', '--nopidfile', `--address=${address}`, '--print-address');
  await once(bus.stdout, 'data');
  return bus;
}

const isServed = () => zelk.getRemoteDevicesList().then(() => true, () => false);

async function startService() {
  const service = start(`${buildFolder}zelk-log-service`, '--address', address);
  const deadline = Date.now() + 10_000;
  while (!(await isServed())) {
    assert.ok(Date.now() < deadline, 'the service is found');
    await sleep(5);
  }
  return service;
}

let bus;
before(async () => {
  process.env.ZELK_LOG_SERVICE = address;
  setService('embedded'); // Where the environment says.
  bus = await startBus();
});
afterEach(() => Promise.all([...running].filter((child) => child !== bus).map((child) => stop(child))));
after(async () => {
  await stop(bus);
  rmSync(folder, { recursive: true });
});

// Makes so many calls and `harm`s after some answers. Gives how many came to which code, 0 for an answer.
async function harmDuring(count, harm) {
  const kept = held();
  let settled = 0;
  let harmed;
  const noteSettled = () => {
    if (++settled === Math.ceil(count / 5)) {
      harmed = harm();
    }
  };
  const { lines } = await run(() => {
    for (let i = 0; i < count; ++i) {
      zelk.getRemoteDevicesList().then(noteSettled, noteSettled);
    }
  });
  await harmed;
  assert.equal(settled, count);
  assert.deepEqual(held(), kept);
  const codes = {};
  for (const line of lines) {
    const code = /\[OnExecuteCallback\].*errorcode=(\d+)/.exec(line)?.[1];
    if (code) {
      codes[code] = (codes[code] ?? 0) + 1;
    }
  }
  return codes;
}

test('killed in flight', async () => {
  for (let round = 0; round < ROUNDS; ++round) {
    const service = await startService();
    const started = Date.now();
    const codes = await harmDuring(CALLS, () => stop(service));
    console.log(`service killed under ${CALLS} calls: codes ${JSON.stringify(codes)}, ${Date.now() - started} ms`);
    assert.deepEqual(Object.keys(codes).filter((code) => ![0, GONE, UNREACHABLE].includes(Number(code))), []);
    assert.ok(codes[0] >= CALLS / 5 && codes[UNREACHABLE] > 0);
    assert.equal(await zelk.getModemLogStatus().catch((status) => ['rejected', status].join()), 'rejected,false');
  }
});

test('stopped and continued', async () => {
  const service = await startService();
  for (let round = 0; round < ROUNDS; ++round) {
    service.kill('SIGSTOP');
    let answered = 0;
    const calls = Array.from({ length: 12 }, () => zelk.handleModemLogSwitch(true).then((result) => (answered += result)));
    await sleep(100);
    assert.equal(answered, 0);
    service.kill('SIGCONT');
    await Promise.all(calls);
    assert.equal(answered, 12);
  }
  if (IS_LONG) { // Until nobody waits any more.
    service.kill('SIGSTOP');
    const started = Date.now();
    const { lines } = await run(() => {
      for (let i = 0; i < 4; ++i) {
        zelk.getRemoteDevicesList().catch(() => {});
      }
    });
    const milliseconds = Date.now() - started;
    console.log(`service stopped: 4 calls given up after ${milliseconds} ms`);
    assert.equal(lines.filter((line) => line.endsWith(`errorcode=${LATE}"`)).length, 4);
    assert.ok(milliseconds > 20_000 && milliseconds <= 25_500);
    service.kill('SIGCONT');
    assert.ok(await isServed());
  }
});

test('replaced by another owner', async () => {
  let service = await startService();
  for (let round = 0; round < ROUNDS; ++round) {
    assert.equal(await zelk.handleTcpdumpSwitch(true), true);
    assert.equal(await zelk.getTcpdumpStatus(), true);
    let status;
    const codes = await harmDuring(CALLS, async () => {
      const last = service;
      const next = start(`${buildFolder}zelk-log-service`, '--address', address);
      assert.equal((await once(next, 'exit'))[0], 1); // One at a time.
      status = await stop(last, 'SIGTERM');
      service = await startService();
    });
    console.log(`service replaced under ${CALLS} calls: codes ${JSON.stringify(codes)}`);
    assert.equal(status, 0);
    assert.equal(await zelk.getTcpdumpStatus(), false); // The new one's.
  }
});

test('the bus gone and back', async () => {
  for (let round = 0; round < ROUNDS; ++round) {
    const service = await startService();
    const ended = once(service, 'exit');
    const started = Date.now();
    const codes = await harmDuring(CALLS, () => stop(bus));
    console.log(`bus killed under ${CALLS} calls: codes ${JSON.stringify(codes)}, ${Date.now() - started} ms`);
    assert.ok(codes[0] >= CALLS / 5 && codes[UNREACHABLE] > 0);
    assert.equal((await ended)[0], 1);
    assert.equal(await isServed(), false);
    bus = await startBus();
  }
  await startService();
});

test('a process ends in time and with its own status while calls are in flight', async () => {
  const service = await startService();
  const load = `const zelk = require(${JSON.stringify(fileURLToPath(new URL('../../', import.meta.url)))});
    zelk.getRemoteDevicesList().then(() => {
      console.log('ready');
      setTimeout(() => {
        for (let i = 0; i < 4; ++i) zelk.getModemLogStatus().then(() => console.log('answered'));`;
  for (const [end, status, output] of [['process.exit(7);', 7, ''], ['', 0, 'answered\n'.repeat(4)]]) {
    const child = start(process.execPath, '-e', `${load} ${end} }, 100); });`);
    let out = '';
    child.stdout.on('data', (text) => (out += text));
    const ended = once(child, 'exit');
    await once(child.stdout, 'data');
    service.kill('SIGSTOP');
    await sleep(700);
    assert.equal(child.exitCode, null); // Both wait for their calls.
    service.kill('SIGCONT');
    const started = Date.now();
    assert.deepEqual([...(await ended), out], [status, null, `ready\n${output}`]);
    assert.ok(Date.now() - started < 1500, `took ${Date.now() - started} ms`);
  }
});
