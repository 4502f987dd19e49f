// A call that a handler of the testing kit answers, against one that the embedded service answers.
import { createRequire } from 'node:module';
import { keptByBoth, keptOfMillion, warmUp } from './lib/kept.mjs';
import { addon, compare, now, report, roundsOf } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const { logService, request } = createRequire(import.meta.url)('../testing/testing.js');

const ROUNDS = 61;
const CALLS = 100;

const query = () => zelk.getModemLogStatus();

async function perCallOf(call) {
  const start = now();
  for (let i = 0; i < CALLS; ++i) {
    await call();
  }
  return (now() - start) / CALLS;
}
const perCall = () => perCallOf(query);
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
    await Promise.all(Array.from({ length: 1000 }, query));
    return [now() - start, own / 4];
  });
}

const many = [];
for (let round = 0; round < roundsOf(11); ++round) {
  many.push(await manyHandlers());
}
report('handlers-in-flight', many);

await withHandler(() => true, () => warmUp(query));
report('handlers-kept', await keptByBoth(
  () => withHandler(async () => true, (service) => keptOfMillion(query, service.clear)),
  () => keptOfMillion(query)));
