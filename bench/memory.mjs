// What calls leave allocated. Needs the settings of lib/kept.mjs.
import { keptByBoth, keptOfMillion, warmUp } from './lib/kept.mjs';
import { addon, report } from './lib/rounds.mjs';

const zelk = addon('zelklogservice');
const bare = addon('bare_call');
const ours = () => zelk.getModemLogStatus();
const theirs = () => bare.getStatus();

await warmUp(ours);
await warmUp(theirs);
report('memory-kept', await keptByBoth(() => keptOfMillion(ours), () => keptOfMillion(theirs)));
