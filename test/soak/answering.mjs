// Mixed calls on the paths that answer, with the reference service: resident memory must be flat after the
// warm-up.
//   node --expose-gc --max-semi-space-size=1 test/soak/answering.mjs [calls]
// The second flag fixes the size of the JavaScript heap's nursery, which may change by 16 MiB otherwise.
import assert from 'node:assert/strict';
import { call, isRemote, mebibytes, memory, names } from './memory.mjs';

const CALLS = Number(process.argv[2] || 1_000_000);
const IN_FLIGHT = 56; // At a time.
const LIMIT = 4 * 2 ** 20; // Bytes by which the allocators of the runtime may wander.

const kinds = names.flatMap((name) => (isRemote(name) ? [[name, false]] : [[name, false], [name, true]]));

async function run(count) {
  for (let made = 0; made < count; made += IN_FLIGHT) {
    await Promise.all(Array.from({ length: IN_FLIGHT }, (_, i) =>
      new Promise((resolve) => call(...kinds[i % kinds.length], resolve))));
  }
}

await run(CALLS / 10);
const warm = await memory();
const started = Date.now();
await run(CALLS);
const end = await memory();
console.log(`${CALLS} answered calls in ${Date.now() - started} ms: ` +
  `resident ${mebibytes(warm.rss)} after the warm-up, ${mebibytes(end.rss)} at the end; ` +
  `JavaScript heap ${mebibytes(warm.heap)}, ${mebibytes(end.heap)}`);
assert.ok(end.rss - warm.rss < LIMIT, 'resident memory grows');
