// What a call keeps that is never answered, per function and form: most never are without a service.
//   ZELK_LOG_SERVICE=none node --expose-gc --max-semi-space-size=1 test/soak/keeping.mjs [calls per line]
import assert from 'node:assert/strict';
import { answersFailures, call, isRemote, memory, names, turn } from './memory.mjs';

const CALLS = Number(process.argv[2] || 20_000);
const NOISE = 3 * 2 ** 20; // Bytes by which the allocators of the runtime may wander.
const MOST = 4096; // Bytes of one call: record, work, promise or callback, and the items of the arguments.

async function run(name, byCallback, count) {
  for (let made = 0; made < count; ++made) {
    call(name, byCallback, () => {});
    if (made % 50 === 49) {
      await turn();
    }
  }
  await new Promise((resolve) => setTimeout(resolve, 50));
}

for (const name of names) {
  for (const byCallback of isRemote(name) ? [false] : [false, true]) {
    await run(name, byCallback, CALLS / 5);
    const before = await memory();
    await run(name, byCallback, CALLS);
    const after = await memory();
    const [rss, heap] = ['rss', 'heap'].map((key) => Math.round((after[key] - before[key]) / CALLS));
    console.log(`${name} by ${byCallback ? 'callback' : 'promise'}: ` +
      `${rss} bytes resident per call, ${heap} of them JavaScript's`);
    assert.ok(rss * CALLS < NOISE + (answersFailures(name) ? 0 : MOST * CALLS), name);
  }
}
