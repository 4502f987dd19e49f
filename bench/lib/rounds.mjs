// Interleaved measuring: both sides of a comparison take turns in short batches, so that whatever else the
// machine does affects both alike. What is measured goes to standard output for run.mjs, one line of JSON per
// measure.
import { fileURLToPath } from 'node:url';
import { createRequire } from 'node:module';

const require = createRequire(import.meta.url);
const buildFolder = fileURLToPath(new URL('../../build/bench/', import.meta.url));

export const addon = (name) => require(`${buildFolder}${name}.node`);

// With `run.mjs --once` every row is measured once: it shows that it can be, not what it is.
const IS_ONCE = process.env.ZELK_BENCH_ONCE === '1';
export const roundsOf = (many) => (IS_ONCE ? 1 : many);

const WARM_UP = IS_ONCE ? 0 : 3;

export function report(measure, rounds) {
  console.log(JSON.stringify({ measure, rounds }));
}

// `ours` and `theirs` each run one batch and give its time per unit of work.
export async function compare(measure, rounds, ours, theirs) {
  const measured = [];
  for (let round = -WARM_UP; round < roundsOf(rounds); ++round) {
    // In this order, a steady drift affects both sides alike.
    const sums = [await ours(), await theirs()];
    sums[1] += await theirs();
    sums[0] += await ours();
    if (round >= 0) {
      measured.push([sums[0] / 2, sums[1] / 2]);
    }
  }
  report(measure, measured);
}

// A clock in nanoseconds, which runs even while this thread waits.
export const now = () => Number(process.hrtime.bigint());

export async function average(times, run) {
  let sum = 0;
  for (let i = 0; i < times; ++i) {
    sum += await run();
  }
  return sum / times;
}
