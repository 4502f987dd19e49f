// The module as built for users, in worker threads that come and go and in processes that end, with calls in
// flight. Each case is a process of its own; its log service takes its time.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { text } from 'node:stream/consumers';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { answering, forms } from '../support/forms.mjs';
import { buildFolder, names } from '../support/zelk.mjs';

const ROUNDS = Number(process.env.ZELK_ENVIRONMENT_ROUNDS || 8);
const ROOT = fileURLToPath(new URL('../../', import.meta.url));
const CALLS = names.map((name) => [name, forms(name)[0]]);

// In every environment: calls everything twice, gives what is answered, in the order of the calls.
const CALL_ALL = `
  const zelk = require(${JSON.stringify(ROOT)});
  const callAll = () => Promise.all([...CALLS, ...CALLS].map(async ([name, args]) => {
    try { return await zelk[name](...args); } catch (error) { return error.code; }
  }));`;
const PRELUDE = `
  const assert = require('node:assert');
  const { Worker } = require('node:worker_threads');
  const CALLS = ${JSON.stringify(CALLS)};
  // Loaded here so that it stays: the service's code is in it.
  const control = require(${JSON.stringify(`${buildFolder}zelk_test.node`)});
  const service = (delay) => control.setService(JSON.stringify(${JSON.stringify(answering(names))},
    (key, value) => (value?.code === 0 ? { ...value, delay } : value)));
  const worker = (code, then) => new Promise((resolve, reject) => {
    const started = new Worker(
      'const { parentPort, workerData: CALLS } = require("node:worker_threads");' + ${JSON.stringify(CALL_ALL)} + code,
      { eval: true, workerData: CALLS });
    started.on('error', reject).on('exit', () => resolve(started.answer));
    started.on('message', (answer) => { started.answer = JSON.stringify(answer); then?.(started); });
  });
  const CALL_AND_POST = 'callAll().then((answers) => parentPort.postMessage(answers));';
  const isLoaded = () => require('node:fs').readFileSync('/proc/self/maps', 'utf8').includes('zelklogservice.node');
  const times = (count, make) => Promise.all(Array.from({ length: count }, make));`;

// Runs the code in a process, which must end as told, and gives the milliseconds that it took.
async function ends(code, status, out, title) {
  const started = Date.now();
  const child = spawn(process.execPath, ['-e', `${PRELUDE}\n(async () => {${code}})();`], {
    env: { ...process.env, HILOG_LEVEL: 'X' }, stdio: ['ignore', 'pipe', 'pipe'], timeout: 120_000 });
  const [ending, seen, errors] = await Promise.all([once(child, 'close'), text(child.stdout), text(child.stderr)]);
  assert.deepEqual([...ending, seen], [status, null, out], `${title}: ${errors}`);
  assert.match(errors, status === 1 ? /Error: own/ : /^$/, title);
  return Date.now() - started;
}

const REPLY = '{"text":1}';
const VALUE = { b: true, d: 1.5, i: 1, n: null, s: 'x', u: 4000000000 };
const items = [{ configKey: 'a', value: VALUE }, { configKey: 'b', value: {} }];
const answers = [items, '6', '6', true, true, true, true, true, items, true, true, false, REPLY, REPLY, REPLY, REPLY];

for (const [title, code, out] of [
  ['workers are terminated with calls in flight', `
    let terminated = 0;
    for (let round = 0; round < ${ROUNDS}; ++round) {
      service(round % 4 * 2);
      await times(4, () => worker(
        'callAll(); zelk.getTcpdumpStatus(() => {}); parentPort.postMessage(0); setInterval(() => {}, 1000);',
        (started) => setTimeout(() => started.terminate(), Math.random() * 30, terminated++)));
    }
    service(0); ${CALL_ALL}
    console.log(terminated, 'workers', (await callAll()).length);`, `${ROUNDS * 4} workers 32\n`],
  ['several environments call at once and get the same answers', `
    service(1); ${CALL_ALL}
    for (let round = 0; round < ${Math.ceil(ROUNDS / 4)}; ++round) {
      const own = callAll();
      assert.deepEqual(await times(4, () => worker(CALL_AND_POST)), Array(4).fill(JSON.stringify(await own)));
    }
    console.log(JSON.stringify(await callAll()));`, `${JSON.stringify([...answers, ...answers])}\n`],
  ['workers call while the main thread sets environment variables', `
    service(0);
    const end = Date.now() + ${ROUNDS * 200};
    const timer = setInterval(() => { process.env['ZELK_TEST_' + Date.now()] = 'x'; }, 1);
    await times(2, () => worker(
      'while (Date.now() < ' + end + ') { try { zelk.handleModemLogSwitch(); } catch {} }'));
    clearInterval(timer);`, ''],
  ['is loaded, unloaded and loaded again', `
    service(0);
    for (let round = 0; round < ${ROUNDS * 2}; ++round) {
      assert.equal(JSON.parse(await worker(CALL_AND_POST)).length, 32);
      assert.equal(isLoaded(), false);
    }
    ${CALL_ALL}
    await callAll().then(() => worker(''));
    assert.equal(isLoaded(), true);
    await callAll();`, ''],
]) {
  test(title, () => ends(code, 0, out, title));
}

// Four calls at a time, each as long as this; a process may take no longer than they do.
const DELAY = 600;
const CALL_AND_SAY = 'zelk.getModemLogStatus(); parentPort.postMessage(0);';
const SLOW = `${CALL_ALL}
  let answers = 0;
  times(3, () => zelk.getModemLogStatus().then(() => console.log(++answers)));
  zelk.getTcpdumpStatus(() => console.log(++answers));`;

test('a process ends in time and with its own status while calls are in flight', async () => {
  const start = await ends(`${CALL_ALL} service(0); await callAll();`, 0, '', 'idle');
  for (const [how, status, out, code] of [
    ['process.exit()', 7, '', `${SLOW} process.exit(7);`],
    ['a natural end', 0, '1\n2\n3\n4\n', SLOW],
    ['an uncaught error', 1, '', `${SLOW} process.nextTick(() => { throw new Error('own'); });`],
    ['process.exit() in a callback', 5, '',
      `${CALL_ALL} zelk.getModemLogStatus(() => process.exit(5)); service(${DELAY}); zelk.getModemLogStatus();`],
    ['process.exit() in a worker', 0, 'end\n',
      `await worker('zelk.getModemLogStatus(); process.exit(3);'); console.log('end');`],
    ['process.exit() with a worker calling', 4, '', `await worker('${CALL_AND_SAY}', () => process.exit(4));`],
    ['termination of a worker at the end', 0, '', `worker('${CALL_AND_SAY}', (started) => started.terminate());`],
  ]) {
    const milliseconds = await ends(`service(${DELAY}); ${code}`, status, out, how);
    assert.ok(milliseconds < 2 * start + DELAY + 2000, `${how} took ${milliseconds} ms, a start ${start} ms`);
  }
});
