// The status query over D-Bus. ZELK_LOG_SERVICE is the address of a bus with a log service on it. With `slow`
// as the argument, that service takes 100 ms for an answer.
import { addon, compare, now, report } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const CALLS = 50;
const MILLISECOND = 1e6;

const oneAfterTheOther = (call) => async () => {
  const start = now();
  for (let i = 0; i < CALLS; ++i) {
    await call();
  }
  return (now() - start) / CALLS;
};
const throughModule = oneAfterTheOther(() => zelk.getModemLogStatus());

async function fourAtOnce() {
  const start = now();
  await Promise.all(Array.from({ length: 4 }, () => zelk.getModemLogStatus()));
  return (now() - start) / MILLISECOND;
}

if (process.argv[2] === 'slow') {
  await fourAtOnce(); // Opens the connections.
  const rounds = [];
  for (let round = 0; round < 7; ++round) {
    rounds.push([await fourAtOnce()]);
  }
  report('bus-in-flight', rounds);
} else {
  const bare = addon('bare_bus');
  bare.open(process.env.ZELK_LOG_SERVICE);
  const plainLoop = () => {
    const start = now();
    if (bare.getStatus(CALLS) !== CALLS) {
      throw new Error('the plain loop got no answer');
    }
    return (now() - start) / CALLS;
  };
  await compare('bus-round-trip', 61, throughModule, plainLoop);
  // What the way to a worker and back costs alone.
  await compare('bus-round-trip-floor', 61, oneAfterTheOther(bare.getStatusLater), plainLoop);
  await compare('bus-round-trip-bare', 61, throughModule, oneAfterTheOther(bare.getStatusLater));
}
