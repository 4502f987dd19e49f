// Memory of calls, in bytes: what one takes while it is in flight, and what is left of a million of them.
// Wants node --expose-gc and MALLOC_ARENA_MAX=1, so that all native memory is in the arena that is looked at.
import { addon, report } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const bare = addon('bare_call');
const { allocatedBytes } = addon('product_parts');

const IN_FLIGHT = 5_000;
const MILLION = 1_000_000;
const BATCHES = 8;
const AT_A_TIME = 64;

const sides = [() => zelk.getModemLogStatus(), () => bare.getStatus()];

async function callOften(call, times) {
  const lane = async () => {
    for (let i = 0; i < times / AT_A_TIME; ++i) {
      await call();
    }
  };
  await Promise.all(Array.from({ length: AT_A_TIME }, lane));
}

function usedBytes() {
  globalThis.gc();
  return { native: allocatedBytes(), heap: process.memoryUsage().heapUsed };
}

async function perCallInFlight(call) {
  const before = usedBytes();
  const calls = Array.from({ length: IN_FLIGHT }, call);
  const peak = usedBytes();
  await Promise.all(calls);
  return (peak.native - before.native + peak.heap - before.heap) / IN_FLIGHT;
}

async function keptOfMillion(call) {
  const before = usedBytes();
  await callOften(call, MILLION / BATCHES);
  const after = usedBytes();
  return (after.native - before.native) * BATCHES;
}

for (const call of sides) {
  await callOften(call, 100_000);
  await perCallInFlight(call);
}
const inFlight = [];
for (let round = 0; round < 5; ++round) {
  inFlight.push([await perCallInFlight(sides[0]), await perCallInFlight(sides[1])]);
}
report('memory-in-flight', inFlight.map(([ours]) => [ours]));
report('memory-in-flight-bare', inFlight.map(([, theirs]) => [theirs]));
const kept = [];
for (let round = 0; round < BATCHES; ++round) {
  kept.push([await keptOfMillion(sides[0]), await keptOfMillion(sides[1])]);
}
report('memory-kept', kept);
