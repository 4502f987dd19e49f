// The bytes of native memory that a million calls leave allocated. Needs node --expose-gc and
// MALLOC_ARENA_MAX=1, so that all native memory is in the arena that is looked at.
import { addon, report, roundsOf } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const bare = addon('bare_call');
const { allocatedBytes } = addon('product_parts');

const MILLION = 1_000_000;
const BATCHES = 8;
const AT_A_TIME = 64;
const WARM_UP = 5_000;

const sides = [() => zelk.getModemLogStatus(), () => bare.getStatus()];

async function callOften(call, times) {
  const lane = async () => {
    for (let i = 0; i < times / AT_A_TIME; ++i) {
      await call();
    }
  };
  await Promise.all(Array.from({ length: AT_A_TIME }, lane));
}

async function keptOfMillion(call) {
  globalThis.gc();
  const before = allocatedBytes();
  await callOften(call, MILLION / BATCHES);
  globalThis.gc();
  return (allocatedBytes() - before) * BATCHES;
}

// The runtime's own pools grow with the calls in flight: here more run at once than are measured.
for (const call of sides) {
  await Promise.all(Array.from({ length: WARM_UP }, call));
  await callOften(call, 100_000);
}
const kept = [];
for (let round = 0; round < roundsOf(BATCHES); ++round) {
  kept.push([await keptOfMillion(sides[0]), await keptOfMillion(sides[1])]);
}
report('memory-kept', kept);
