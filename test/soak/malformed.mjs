// Calls over a bus whose messages are malformed: each is settled, and resident memory is flat.
//   node --expose-gc --max-semi-space-size=1 test/soak/malformed.mjs [calls] [seed]
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { fileURLToPath } from 'node:url';

const CALLS = Number(process.argv[2] || 20_000);
const SEED = process.argv[3] || String(Date.now() % 1e6);
const IN_FLIGHT = 16; // At a time.
const LIMIT = 6 * 2 ** 20; // Bytes by which the allocators of the runtime may wander.

const fake = spawn('python3', [fileURLToPath(new URL('fake_bus.py', import.meta.url)), SEED],
  { stdio: ['pipe', 'pipe', 'inherit'] });
process.env.ZELK_LOG_SERVICE = (await once(fake.stdout, 'data')).toString().trim();
const { mebibytes, memory, zelk } = await import('./memory.mjs');

const item = { configKey: 'k', value: { number: 1 } };
const calls = [
  () => zelk.getModemLogStatus(),
  () => zelk.handleModemLogSwitch(true, [item]),
  () => zelk.changeModemLogConfig([item]),
  () => zelk.getRemoteDevicesList(),
  () => zelk.fetchRemoteDevicesLogs('r', 5),
  // The first may never answer.
  () => Promise.race([zelk.getModemLogConfig(['k']), zelk.getRemoteDevicesList()]),
];

const counts = { resolved: 0, rejected: 0 };
async function run(count) {
  for (let made = 0; made < count; made += IN_FLIGHT) {
    await Promise.all(Array.from({ length: IN_FLIGHT }, (_, i) =>
      calls[i % calls.length]().then(() => ++counts.resolved, () => ++counts.rejected)));
  }
  return (await memory()).rss;
}

const warm = await run(CALLS / 2);
const end = await run(CALLS / 2);
fake.stdin.end();
console.log(`${CALLS} calls over a bus with malformed messages, seed ${SEED}: ${counts.resolved} resolved, ` +
  `${counts.rejected} rejected; ` +
  `resident ${mebibytes(warm)} after half of them, ${mebibytes(end)} at the end`);
assert.ok(counts.resolved > 0 && counts.rejected > 0);
assert.ok(end - warm < LIMIT, 'resident memory grows');
