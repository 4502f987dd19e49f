// How long ten to a million items, texts and replies take: the columns that growth.gp draws, in nanoseconds
// of the thread that does the work, the least of several rounds.
import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';
import { addon } from './lib/rounds.mjs';
import { threadNanoseconds } from './lib/thread_time.mjs';

// The module writes no lines, has the service in the process, and serves this process, whatever the
// environment says.
Object.assign(process.env, {
  HILOG_LEVEL: 'X', HILOG_FILE: '', OHOS_FULL_TOKEN_ID: '', ZELK_LOG_SERVICE: 'embedded',
});
const zelk = addon('zelklogservice');
const { answerWith } = addon('many_replies');

const COUNTS = [10, 100, 1_000, 10_000, 100_000, 1_000_000];
const BATCH = 20_000;
const ROUNDS = 7;

// The items are complete when the call returns; the rest of the call is awaited but not counted.
function items(count) {
  const list = Array.from({ length: count }, (_, i) => ({
    configKey: `key${i}`,
    value: { enable: i % 2 === 0, level: i, path: '/data/log/modem', size: 4096, name: 'modem', loop: false },
  }));
  return async () => {
    const start = threadNanoseconds();
    const answer = zelk.changeModemLogConfig(list);
    const time = threadNanoseconds() - start;
    await answer.catch(() => {}); // The service refuses more items than it keeps.
    return time;
  };
}

// Replies of two members each become entries on this thread, between the call's return and its answer.
function replies(count) {
  return async () => {
    answerWith(count);
    const answer = zelk.getModemLogConfig(['key']);
    const start = threadNanoseconds();
    await answer;
    return threadNanoseconds() - start;
  };
}

async function least(run, count) {
  const times = Math.ceil(BATCH / count);
  let result = Infinity;
  for (let round = 0; round < ROUNDS; ++round) {
    let sum = 0;
    for (let i = 0; i < times; ++i) {
      sum += await run();
    }
    result = Math.min(result, sum / times);
  }
  return result;
}

const program = fileURLToPath(new URL('../build/bench/bench_text', import.meta.url));
const texts = new Map(execFileSync(program, ['growth'], { encoding: 'utf8' }).trim().split('\n')
  .map((line) => JSON.parse(line)).map(({ count, nanoseconds }) => [count, nanoseconds]));

console.log('# count items texts replies');
for (const count of COUNTS) {
  const row = [await least(items(count), count), texts.get(count), await least(replies(count), count)];
  console.log([count, ...row.map(Math.round)].join(' '));
}
