// The log service as a process on a bus: it is called, stopped and killed while calls are in
// flight, and the bus is killed too. Every call that answers failures must be settled, and the next one must
// find the service that exists then.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, afterEach, before, test } from 'node:test';
import { setTimeout as sleep } from 'node:timers/promises';
import { end, launchService, running, startBus, stop } from '../support/bus.mjs';

const ROUNDS = Number(process.env.ZELK_SERVICE_FAULT_ROUNDS || 2);
const CALLS = 1000;
const MOST_ROUNDS = 20;
const [UNREACHABLE, GONE, LATE] = [1, 1001, 1002]; // Unreachable: no owner of the name, or no bus.

const address = `unix:abstract=zelk-test-${process.pid}`; // A bus that comes back has the same.
process.env.ZELK_LOG_SERVICE = address;
const { leaves, leaveService, run, zelk } = await import('../support/zelk.mjs');
leaveService();
let bus;

const isServed = () => zelk.getRemoteDevicesList().then(() => true, () => false);
async function startService() {
  const service = launchService(address);
  while (!(await isServed())) {
    assert.equal(service.exitCode, null, 'the service runs');
    await sleep(5);
  }
  return service;
}
async function freeze(child) {
  child.kill('SIGSTOP');
  while (!/\) T /.test(readFileSync(`/proc/${child.pid}/stat`, 'utf8'))) {
    await sleep(1);
  }
}

before(async () => {
  bus = await startBus(address);
});
afterEach(() => Promise.all([...running].filter((child) => child !== bus).map((child) => stop(child))));
after(() => stop(bus));

// Makes this many calls and does `harm` meanwhile. All are settled and leave nothing allocated. Returns the
// number of calls by code, 0 for an answer.
async function during(harm, count = CALLS) {
  const codes = {};
  let settled = 0;
  const note = () => ++settled;
  const [left, { lines }] = await leaves(async () => {
    let harmed;
    const seen = await run(() => {
      harmed = harm(Array.from({ length: count }, () => zelk.getRemoteDevicesList().then(note, note)));
    });
    await harmed;
    return seen;
  });
  assert.deepEqual([settled, ...Object.values(left)], [count, 0, 0, 0, 0]);
  for (const [, code] of lines.join('\n').matchAll(/\[OnExecuteCallback\].*errorcode=(\d+)/g)) {
    codes[code] = (codes[code] ?? 0) + 1;
  }
  const GONE_LINE = 'E DBUS: GetRemoteDevicesList: code 1001: the service is gone';
  assert.equal(lines.filter((line) => line === GONE_LINE).length, codes[GONE] ?? 0);
  return codes;
}

for (const [what, victim, recover] of [
  ['service', (service) => service, () => {}],
  ['bus', () => bus, async (service) => {
    assert.equal(await end(service), 1);
    assert.equal(await isServed(), false);
    bus = await startBus(address);
  }],
]) {
  test(`${what} killed in flight`, async () => {
    // A stopped service answers no calls. Repeated until calls were in flight when it was killed, which a
    // busy machine may delay.
    for (let round = 0, gone = 0; round < ROUNDS || (!gone && round < MOST_ROUNDS); ++round) {
      const service = await startService();
      await freeze(victim(service));
      const codes = await during(() => sleep(50).then(() => stop(victim(service))));
      gone += codes[GONE] ?? 0;
      assert.equal((codes[GONE] ?? 0) + (codes[UNREACHABLE] ?? 0), CALLS);
      assert.ok(gone > 0 || round + 1 < MOST_ROUNDS);
      // At once, also over connections that broke while they were idle.
      const failed = assert.rejects(zelk.getModemLogStatus(), (status) => status === false);
      assert.equal(await Promise.race([sleep(10_000, 'late'), failed]), undefined);
      await recover(service);
    }
    await startService();
  });
}

// Until no call waits any more, and the service has tried in vain to reach a stopped bus anew.
for (const [what, victim] of [['service', (service) => service], ['bus', () => bus]]) {
  test(`${what} stopped for long, and continued`, { skip: ROUNDS <= 2 }, async () => {
    const service = await startService();
    assert.ok(await isServed());
    await freeze(victim(service));
    const codes = await during(async () => {}, 4);
    assert.equal((codes[LATE] ?? 0) + (codes[UNREACHABLE] ?? 0), 4);
    await sleep(75_000);
    victim(service).kill('SIGCONT');
    while (!(await isServed())) {
      assert.equal(service.exitCode, null);
    }
  });
}
