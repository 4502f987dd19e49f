// The log service as a process on a bus: what it carries, and how it is killed, stopped and replaced while calls are in
// flight, and the bus with it. Every call that answers failures must be settled, and the next one must find whatever is
// there then.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { text } from 'node:stream/consumers';
import { after, afterEach, before, test } from 'node:test';
import { setTimeout as sleep } from 'node:timers/promises';
import { buildFolder, leaves, run, service as setService, zelk } from '../support/zelk.mjs';

const ROUNDS = Number(process.env.ZELK_SERVICE_FAULT_ROUNDS || 2);
const CALLS = 1000;
const [UNREACHABLE, GONE, LATE] = [1, 1001, 1002]; // Unreachable: no owner of the name, or no bus.

const address = `unix:abstract=zelk-test-${process.pid}`; // A bus that comes back has the same.
const running = new Set();
let bus;

function start(command, ...args) {
  const child = spawn(command, args, { stdio: ['ignore', 'pipe', 'ignore'] });
  running.add(child);
  return child.on('exit', () => running.delete(child));
}
const end = async (child) => (await once(child, 'exit'))[0];
const stop = (child, signal = 'SIGKILL') => (child.kill(signal), end(child));
// A program with the module, as built for users. Gives its end: status, signal, output.
const program = (code) => {
  const child = start(process.execPath, '-e', `const zelk = require('${buildFolder}zelklogservice.node'); ${code}`);
  return [Promise.all([once(child, 'close'), text(child.stdout)]), child];
};
const startBus = () => {
  bus = start('dbus-daemon', '--session', '--nofork', '--nopidfile', `--address=${address}`, '--print-address');
  return once(bus.stdout, 'data');
};

const isServed = () => zelk.getRemoteDevicesList().then(() => true, () => false);
const launch = () => start(`${buildFolder}zelk-log-service`, '--address', address);
async function startService() {
  const service = launch();
  for (const deadline = Date.now() + 10_000; !(await isServed()); await sleep(5)) {
    assert.ok(Date.now() < deadline, 'the service is found');
  }
  return service;
}

before(() => {
  process.env.ZELK_LOG_SERVICE = address;
  setService('embedded'); // Where the environment says.
  return startBus();
});
afterEach(() => Promise.all([...running].filter((child) => child !== bus).map((child) => stop(child))));
after(() => stop(bus));

test('large items and long lists go there and back, in order', async () => {
  await startService();
  const keys = Array.from({ length: 10_000 }, (_, i) => `key${i}`);
  const large = { configKey: 'large', value: Object.fromEntries(keys.map((key) => [key, 'x'.repeat(100)])) };
  const items = keys.map((configKey, i) => ({ configKey, value: { i } }));
  assert.equal(await zelk.changeModemLogConfig([large]), true);
  assert.deepEqual(await zelk.getModemLogConfig(['large']), [large]);
  assert.equal(await zelk.changeTcpdumpConfig(items), true);
  assert.deepEqual(await zelk.getTcpdumpConfig(keys), items);
});

test('several processes have one service', async () => {
  await startService();
  await zelk.handleModemLogSwitch(true);
  const clients = Array.from({ length: 4 }, () => program(`(async () => {
    const configKey = String(process.pid);
    for (let i = 0; i < 50; i++) {
      await zelk.changeModemLogConfig([{ configKey, value: { i } }]);
      require('node:assert').deepEqual(await zelk.getModemLogConfig([configKey]), [{ configKey, value: { i } }]);
    }
    console.log(await zelk.getModemLogStatus(), await zelk.queryProtocolData('é"'));
  })()`)[0]);
  assert.deepEqual(await Promise.all(clients), Array(4).fill([[0, null], 'true {"request":"é\\"","data":""}\n']));
});

// Makes so many calls and `harm`s after some answers. All are settled and leave nothing. Gives how many came to which
// code, 0 for an answer, and how many milliseconds it took.
async function during(what, harm = async () => {}, count = CALLS) {
  const started = Date.now();
  const codes = {};
  let settled = 0;
  let harmed;
  const note = () => (harmed = ++settled === Math.ceil(count / 5) ? harm() : harmed);
  const call = () => void zelk.getRemoteDevicesList().then(note, note);
  const [left, { lines }] = await leaves(async () => {
    const seen = await run(() => void Array.from({ length: count }, call));
    return harmed.then(() => seen);
  });
  assert.deepEqual([settled, ...Object.values(left)], [count, 0, 0, 0, 0]);
  for (const [, code] of lines.join('\n').matchAll(/\[OnExecuteCallback\].*errorcode=(\d+)/g)) {
    codes[code] = (codes[code] ?? 0) + 1;
  }
  const milliseconds = Date.now() - started;
  console.log(`${what} under ${count} calls: codes ${JSON.stringify(codes)}, ${milliseconds} ms`);
  return { codes, milliseconds };
}

for (const [what, victim, recover] of [
  ['service', (service) => service, () => {}],
  ['bus', () => bus, async (service) => {
    assert.equal(service.exitCode ?? (await end(service)), 1);
    assert.equal(await isServed(), false);
    await startBus();
  }],
]) {
  test(`${what} killed in flight`, async () => {
    for (let round = 0; round < ROUNDS; ++round) {
      const service = await startService();
      const { codes } = await during(`${what} killed`, () => stop(victim(service)));
      assert.deepEqual(Object.keys(codes).filter((code) => ![0, GONE, UNREACHABLE].includes(Number(code))), []);
      assert.ok(codes[0] >= CALLS / 5 && codes[UNREACHABLE] > 0);
      assert.equal(await zelk.getModemLogStatus().catch((status) => ['rejected', status].join()), 'rejected,false');
      await recover(service);
    }
    await startService();
  });
}

test('stopped and continued', async () => {
  const service = await startService();
  for (let round = 0; round < ROUNDS; ++round) {
    service.kill('SIGSTOP');
    let answered = 0;
    const calls = Array.from({ length: 12 }, () => zelk.handleModemLogSwitch(true).then((on) => (answered += on)));
    await sleep(100);
    assert.equal(answered, 0);
    service.kill('SIGCONT');
    await Promise.all(calls);
    assert.equal(answered, 12);
  }
  if (ROUNDS > 2) { // Until nobody waits any more.
    service.kill('SIGSTOP');
    const { codes, milliseconds } = await during('service stopped', undefined, 4);
    assert.deepEqual(codes, { [LATE]: 4 });
    assert.ok(milliseconds > 20_000 && milliseconds <= 25_500);
    service.kill('SIGCONT');
    assert.ok(await isServed());
  }
});

test('replaced by another owner', async () => {
  let service = await startService();
  for (let round = 0; round < ROUNDS; ++round) {
    assert.deepEqual([await zelk.handleTcpdumpSwitch(true), await zelk.getTcpdumpStatus()], [true, true]);
    await during('service replaced', async () => {
      assert.equal(await end(launch()), 1); // One at a time.
      assert.equal(await stop(service, 'SIGTERM'), 0);
      service = await startService();
    });
    assert.equal(await zelk.getTcpdumpStatus(), false); // The new one's.
  }
});

test('a process ends in time and with its own status while calls are in flight', async () => {
  const service = await startService();
  for (const [last, status, output] of [['process.exit(7);', 7, ''], ['', 0, 'answered\n'.repeat(4)]]) {
    const [ended, child] = program(`zelk.getRemoteDevicesList().then(() => {
      console.log('ready');
      setTimeout(() => {
        for (let i = 0; i < 4; ++i) zelk.getModemLogStatus().then(() => console.log('answered'));
        ${last}
      }, 100);
    });`);
    await once(child.stdout, 'data');
    service.kill('SIGSTOP');
    await sleep(700);
    assert.equal(child.exitCode, null); // Both wait for their calls.
    service.kill('SIGCONT');
    const started = Date.now();
    assert.deepEqual(await ended, [[status, null], `ready\n${output}`]);
    assert.ok(Date.now() - started < 1500, `took ${Date.now() - started} ms`);
  }
});
