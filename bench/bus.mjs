// Calls over D-Bus: the status query, against the least that such a call on Node-API can be; and a switch
// that changes, against one that does not. ZELK_LOG_SERVICE is the address of a bus with a log service on it.
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

let isOn = false;
const change = () => zelk.handleModemLogSwitch(isOn = !isOn);
const keep = () => zelk.handleModemLogSwitch(isOn);
await compare('bus-switch', 61, batch(change), batch(keep));
