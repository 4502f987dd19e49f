// The way of one call through the module, against the least that a call on Node-API can be.
import { addon, compare, now } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const ours = () => zelk.getModemLogStatus();
const bare = addon('bare_call').getStatus;
const asyncWorker = addon('async_worker_call').getStatus;

const ROUNDS = 61;
const IN_FLIGHT = 64;

async function oneAfterTheOther(call, times) {
  for (let i = 0; i < times; ++i) {
    await call();
  }
}

// Nanoseconds per call, with `inFlight` of them on their way at any time.
async function perCall(call, inFlight, times) {
  const start = now();
  await Promise.all(Array.from({ length: inFlight }, () => oneAfterTheOther(call, times)));
  return (now() - start) / (inFlight * times);
}

for (const [name, theirs] of [['bare', bare], ['async-worker', asyncWorker]]) {
  const batch = (call, inFlight, times) => () => perCall(call, inFlight, times);
  await compare(`call-many-${name}`, ROUNDS, batch(ours, IN_FLIGHT, 10), batch(theirs, IN_FLIGHT, 10));
  await compare(`call-single-${name}`, ROUNDS, batch(ours, 1, 100), batch(theirs, 1, 100));
}
