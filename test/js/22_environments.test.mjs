// The module as built for users, in worker threads that come and go and in processes that end, with calls in flight. Each
// case is a process of its own; its log service takes its time.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
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
    try {
      return await zelk[name](...args);
    } catch (error) {
      return error.code;
    }
  }));`;
const PRELUDE = `
  const { Worker } = require('node:worker_threads');
  const CALLS = ${JSON.stringify(CALLS)};
  // Loaded here so that it stays: the service's code is in it.
  const control = require(${JSON.stringify(`${buildFolder}zelk_test.node`)});
  const service = (delay) => control.setService(
    JSON.stringify(${JSON.stringify(answering(names))}, (key, value) => (value && value.code === 0 ? { ...value, delay } : value)));
  const worker = (code, then) => new Promise((resolve, reject) => {
    const started = new Worker(
      'const { parentPort, workerData: CALLS } = require("node:worker_threads");' + ${JSON.stringify(CALL_ALL)} + code,
      { eval: true, workerData: CALLS });
    started.on('error', reject).on('exit', () => resolve(started.answer));
    started.on('message', (answer) => { started.answer = JSON.stringify(answer); then?.(started); });
  });
  const isLoaded = () => require('node:fs').readFileSync('/proc/self/maps', 'utf8').includes('zelklogservice.node');
  const times = (count, make) => Promise.all(Array.from({ length: count }, make));`;

async function runChild(code) {
  const started = Date.now();
  const child = spawn(process.execPath, ['-e', `${PRELUDE}\n(async () => {${code}})();`], {
    env: { ...process.env, HILOG_LEVEL: 'X' }, stdio: ['ignore', 'pipe', 'pipe'], timeout: 120_000 });
  const seen = { out: '', error: '' };
  child.stdout.on('data', (text) => (seen.out += text));
  child.stderr.on('data', (text) => (seen.error += text));
  [seen.status, seen.signal] = await new Promise((resolve) => child.on('close', (...end) => resolve(end)));
  seen.milliseconds = Date.now() - started;
  return seen;
}

async function succeeds(code) {
  const { status, signal, error, out } = await runChild(code);
  assert.deepEqual([status, signal, error], [0, null, ''], out);
  return out;
}

test('workers are terminated with calls in flight', async () => {
  const out = await succeeds(`
    let terminated = 0;
    for (let round = 0; round < ${ROUNDS}; ++round) {
      service(round % 4 * 2);
      await times(4, () => worker('callAll(); zelk.getTcpdumpStatus(() => {}); parentPort.postMessage(0); setInterval(() => {}, 1000);', (started) => {
        terminated++;
        setTimeout(() => started.terminate(), Math.random() * 30);
      }));
    }
    service(0);
    ${CALL_ALL}
    console.log(terminated, 'workers', (await callAll()).length);`);
  assert.equal(out, `${ROUNDS * 4} workers 32\n`);
});

test('several environments call at once and get the same answers', async () => {
  const out = await succeeds(`
    ${CALL_ALL}
    service(1);
    for (let round = 0; round < ${Math.ceil(ROUNDS / 4)}; ++round) {
      const own = callAll();
      const answers = await times(4, () => worker('callAll().then((answers) => parentPort.postMessage(answers));'));
      require('node:assert').deepEqual(answers, Array(4).fill(JSON.stringify(await own)));
    }
    console.log(JSON.stringify(await callAll()));`);
  const REPLY = '{"text":1}';
  const items = [{ configKey: 'a', value: { n: null, i: 1, u: 4000000000, d: 1.5, s: 'x', b: true } }, { configKey: 'b', value: {} }];
  const answers = [items, '6', '6', true, true, true, true, true, items, true, true, false, REPLY, REPLY, REPLY, REPLY];
  assert.deepEqual(JSON.parse(out), [...answers, ...answers]);
});

test('is loaded, unloaded and loaded again', async () => {
  await succeeds(`
    service(0);
    for (let round = 0; round < ${ROUNDS * 2}; ++round) {
      const answers = await worker('callAll().then((answers) => parentPort.postMessage(answers));');
      require('node:assert').equal(JSON.parse(answers).length, 32);
      require('node:assert').equal(isLoaded(), false);
    }
    ${CALL_ALL}
    await callAll();
    await worker('');
    require('node:assert').equal(isLoaded(), true);
    await callAll();`);
});

// Four calls at a time, each as long as this; a process may take no longer than they do.
const DELAY = 600;
const SLOW = `
  ${CALL_ALL}
  service(${DELAY});
  let answers = 0;
  const slowCall = () => zelk.getModemLogStatus().then(() => console.log(++answers));
  times(3, slowCall);
  zelk.getTcpdumpStatus(() => console.log(++answers));`;
const ENDS = [
  { how: 'process.exit()', code: `${SLOW} process.exit(7);`, status: 7, out: '' },
  { how: 'a natural end', code: SLOW, status: 0, out: '1\n2\n3\n4\n' },
  { how: 'an uncaught error', code: `${SLOW} process.nextTick(() => { throw new Error('own'); });`, status: 1, out: '' },
  { how: 'process.exit() in a callback', status: 5, out: '',
    code: `${CALL_ALL} service(${DELAY}); zelk.getModemLogStatus(() => process.exit(5)); service(${DELAY}); zelk.getModemLogStatus();` },
  { how: 'process.exit() in a worker', status: 0, out: 'end\n',
    code: `service(${DELAY}); await worker('zelk.getModemLogStatus(); process.exit(3);'); console.log('end');` },
  { how: 'process.exit() with a worker calling', status: 4, out: '',
    code: `service(${DELAY}); await worker('zelk.getModemLogStatus(); parentPort.postMessage(0);', () => process.exit(4));` },
  { how: 'termination of a worker at the end', status: 0, out: '',
    code: `service(${DELAY}); worker('zelk.getModemLogStatus(); parentPort.postMessage(0);', (started) => started.terminate());` },
];

test('a process ends in time and with its own status while calls are in flight', async () => {
  const { milliseconds: start } = await runChild(`${CALL_ALL} service(0); await callAll();`);
  for (const { how, code, status, out } of ENDS) {
    const seen = await runChild(code);
    assert.deepEqual([seen.status, seen.signal, seen.out], [status, null, out], `${how}: ${seen.error}`);
    assert.match(seen.error, status === 1 ? /Error: own/ : /^$/, how);
    assert.ok(seen.milliseconds < 2 * start + DELAY + 2000, `${how} took ${seen.milliseconds} ms, a start ${start} ms`);
  }
});
