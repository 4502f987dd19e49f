// The bytes of native memory that calls leave allocated. Needs node --expose-gc and MALLOC_ARENA_MAX=1, so
// that all native memory is in the arena that is looked at.
import { addon, roundsOf } from './rounds.mjs';

const { allocatedBytes } = addon('product_parts');

const MILLION = 1_000_000;
const BATCHES = 8;
const AT_A_TIME = 64;
const WARM_UP = 5_000;

// As many calls at once as are never measured: the runtime's own pools grow with the calls in flight.
export const warmUp = (call) => Promise.all(Array.from({ length: WARM_UP }, call));

async function callOften(call, times, clear) {
  for (let i = 0; i < times / AT_A_TIME; ++i) {
    await Promise.all(Array.from({ length: AT_A_TIME }, call));
    clear();
  }
}

// Of a million calls. `clear` drops what the caller itself keeps of them.
export async function keptOfMillion(call, clear = () => {}) {
  await callOften(call, WARM_UP, clear); // Some memory is kept of the first calls alone.
  globalThis.gc();
  const before = allocatedBytes();
  await callOften(call, MILLION / BATCHES, clear);
  globalThis.gc();
  return (allocatedBytes() - before) * BATCHES;
}

// Rounds of `ours` and `theirs`, the first of which is not counted.
export async function keptByBoth(ours, theirs) {
  const kept = [];
  for (let round = -1; round < roundsOf(BATCHES); ++round) {
    kept.push([await ours(), await theirs()]);
  }
  return kept.slice(1);
}
