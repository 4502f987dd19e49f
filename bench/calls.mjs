// The path of one call through the module, against the least that a call on Node-API can be.
import { addon, compare, now } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const ours = () => zelk.getModemLogStatus();
const theirs = addon('bare_call').getStatus;

const ROUNDS = 61;
const IN_FLIGHT = 64;

async function oneAfterTheOther(call, times) {
  for (let i = 0; i < times; ++i) {
    await call();
  }
}

// `times` calls in each of `inFlight` lanes that run at the same time, in nanoseconds per call.
const batch = (call, inFlight, times) => async () => {
  const start = now();
  await Promise.all(Array.from({ length: inFlight }, () => oneAfterTheOther(call, times)));
  return (now() - start) / (inFlight * times);
};

await compare('call-many', ROUNDS, batch(ours, IN_FLIGHT, 10), batch(theirs, IN_FLIGHT, 10));
await compare('call-single', ROUNDS, batch(ours, 1, 100), batch(theirs, 1, 100));
