// Mixed calls over D-Bus while the log service is killed and started again, every second: all calls are
// settled, and resident memory is flat after a tenth of them.
//   node --expose-gc --max-semi-space-size=1 test/soak/killing.mjs [calls] [milliseconds from kill to kill]
import assert from 'node:assert/strict';
import { startBus, startService, stop } from './bus.mjs';

const CALLS = Number(process.argv[2] || 200_000);
const PAUSE = Number(process.argv[3] || 1000);
const IN_FLIGHT = 56; // At a time.
const LIMIT = 6 * 2 ** 20; // Bytes by which the allocators of the runtime may wander.

const bus = await startBus();
process.env.ZELK_LOG_SERVICE = bus.address;
const { call, isRemote, mebibytes, memory, names } = await import('./memory.mjs');

// Those that answer a failure, too: the others' promises would stay pending.
const answering = /Remote|Protocol|getModemLogStatus|handleModemLogSwitch|changeModemLogConfig/;
const kinds = names.filter((name) => answering.test(name))
  .flatMap((name) => (isRemote(name) ? [[name, false]] : [[name, false], [name, true]]));

let service = startService(bus.address);
let kills = 0;
let isOver = false;
async function killAgainAndAgain() {
  while (!isOver) {
    await new Promise((resolve) => setTimeout(resolve, PAUSE));
    await stop(service);
    kills += 1;
    service = startService(bus.address);
  }
}
const killing = killAgainAndAgain();

let settled = 0;
async function run(count) {
  for (let made = 0; made < count; made += IN_FLIGHT) {
    await Promise.all(Array.from({ length: IN_FLIGHT }, (_, i) =>
      new Promise((resolve) => call(...kinds[i % kinds.length], resolve))));
    settled += IN_FLIGHT;
  }
  return (await memory()).rss;
}

const resident = [];
for (let tenth = 0; tenth < 10; ++tenth) {
  resident.push(await run(CALLS / 10));
}
isOver = true;
await killing;
await stop(service);
await stop(bus.daemon);
console.log(`${settled} calls under ${kills} kills, all settled; resident after each tenth: ` +
  resident.map(mebibytes).join(', '));
assert.ok(resident.at(-1) - resident[0] < LIMIT, 'resident memory grows');
