// The status query over D-Bus, against the least that such a call on Node-API can be. ZELK_LOG_SERVICE is the
// address of a bus with a log service on it.
import { addon, compare, now } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const bare = addon('bare_bus');
const CALLS = 50;

const batch = (call) => async () => {
  const start = now();
  for (let i = 0; i < CALLS; ++i) {
    await call();
  }
  return (now() - start) / CALLS;
};

bare.open(process.env.ZELK_LOG_SERVICE);
await compare('bus', 61, batch(() => zelk.getModemLogStatus()), batch(bare.getStatus));
