// Mixed calls for a long time: all are settled, and resident memory is flat in their second half.
//   node --expose-gc --max-semi-space-size=1 test/soak/flat.mjs SERVICE [calls] [seed]
// The second flag fixes the size of the JavaScript heap's nursery, which may change by 16 MiB otherwise.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import { launchService, start, startBus, stop } from '../support/bus.mjs';
import { root, temporaryFolder } from '../support/system.mjs';

const [kind, calls = 100_000, seed = Date.now() % 1e6] = process.argv.slice(2);
const IN_FLIGHT = 56; // At a time.
const LIMIT = 4 * 2 ** 20; // Bytes by which the allocators of the runtime may wander.
const PAUSE = 200; // Milliseconds from kill to kill.

const folder = temporaryFolder();
const address = `unix:path=${folder}/bus`;

// The log services; each gives the address at which the module finds it.
const SERVICES = {
  embedded: () => 'embedded',
  async killed() { // Again and again.
    await startBus(address);
    let service = launchService(address);
    setInterval(async () => {
      await stop(service);
      service = launchService(address);
    }, PAUSE);
    return address;
  },
  async malformed() { // The same, behind a bus whose messages are malformed.
    await SERVICES.killed();
    const front = start(process.execPath, `${root}test/soak/malformed_bus.mjs`, folder, seed);
    await once(front.stdout, 'data');
    return `unix:path=${folder}/malformed`;
  },
};
process.env.ZELK_LOG_SERVICE = await SERVICES[kind]();
const { answersFailures, call, isRemote, mebibytes, memory, names } = await import('./memory.mjs');
const isEmbedded = kind === 'embedded';
const settled = (name, byCallback) => new Promise((resolve) => call(name, byCallback, resolve));
const makers = names.filter((name) => isEmbedded || answersFailures(name)).flatMap((name) =>
  (isRemote(name) ? [false] : [false, true]).map((byCallback) => () => settled(name, byCallback)));
// The first is never answered if it fails.
makers.push(() => Promise.race(
  [settled('getModemLogConfig', false), settled('getRemoteDevicesList', false)]));

const outcomes = {};
async function run(count) {
  for (let made = 0; made < count; made += IN_FLIGHT) {
    await Promise.all(Array.from({ length: IN_FLIGHT }, async (_, i) => {
      const outcome = await makers[i % makers.length]();
      outcomes[outcome] = (outcomes[outcome] ?? 0) + 1;
    }));
  }
  return (await memory()).rss;
}

const half = await run(calls / 2);
const end = await run(calls / 2);
console.log(`service ${kind}, seed ${seed}: ${JSON.stringify(outcomes)}; ` +
  `resident ${mebibytes(half)} after half of them, ${mebibytes(end)} at the end`);
assert.ok(outcomes.resolved > 0);
assert.equal(outcomes.rejected === undefined, isEmbedded);
assert.ok(end - half < LIMIT, 'resident memory grows');
process.exit();
