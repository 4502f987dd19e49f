// A call that a handler of the testing kit answers, against one that the embedded service answers.
import { createRequire } from 'node:module';
import { addon, compare, now, report, roundsOf } from './lib/rounds.mjs';

const { allocatedBytes } = addon('product_parts');
const zelk = addon('zelklogservice');
const { logService, request } = createRequire(import.meta.url)('../testing/testing.js');

const ROUNDS = 61;
const CALLS = 100;
const MILLION = 1_000_000;
const BATCHES = 8;
const AT_A_TIME = 64;
const WARM_UP = 5_000;

async function perCallOf(call) {
  const start = now();
  for (let i = 0; i < CALLS; ++i) {
    await call();
  }
  return (now() - start) / CALLS;
}
const perCall = () => perCallOf(() => zelk.getModemLogStatus());
const perRequest = () => perCallOf(() => request('GetModemLogStatus'));

async function withHandler(handler, run) {
  const service = logService({ GetModemLogStatus: handler });
  const result = await run(service);
  service.restore();
  return result;
}

await compare('handler', ROUNDS, () => withHandler(() => true, perCall), perCall);
await compare('request', ROUNDS, perRequest, perCall);

// 1,000 handlers of a millisecond each on four worker threads: the whole time, and a fourth of their own.
async function manyHandlers() {
  let own = 0;
  const handler = () => new Promise((resolve) => {
    const start = now();
    setTimeout(() => {
      own += now() - start;
      resolve(true);
    }, 1);
  });
  return withHandler(handler, async () => {
    const start = now();
    await Promise.all(Array.from({ length: 1000 }, () => zelk.getModemLogStatus()));
    return [now() - start, own / 4];
  });
}

const many = [];
for (let round = 0; round < roundsOf(11); ++round) {
  many.push(await manyHandlers());
}
report('handlers-in-flight', many);

async function callOften(times, clear) {
  for (let i = 0; i < times / AT_A_TIME; ++i) {
    await Promise.all(Array.from({ length: AT_A_TIME }, () => zelk.getModemLogStatus()));
    clear();
  }
}

async function keptOfMillion(clear) {
  await callOften(WARM_UP, clear); // A service keeps what its first calls needed until it is restored.
  globalThis.gc();
  const before = allocatedBytes();
  await callOften(MILLION / BATCHES, clear);
  globalThis.gc();
  return (allocatedBytes() - before) * BATCHES;
}

const sides = [
  () => withHandler(async () => true, (service) => keptOfMillion(() => service.clear())),
  () => keptOfMillion(() => {}),
];
// The runtime's own pools grow with the calls in flight: here more run at once than are measured.
await withHandler(() => true,
  () => Promise.all(Array.from({ length: WARM_UP }, () => zelk.getModemLogStatus())));
const kept = [];
for (let round = -1; round < roundsOf(BATCHES); ++round) { // The first warms up, too.
  kept.push([await sides[0](), await sides[1]()]);
}
report('handlers-kept', kept.slice(1));
