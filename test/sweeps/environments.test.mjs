// The module as built for users, in worker threads that come and go and in processes that end, with calls in
// flight. Each case runs in its own process, with a slow log service.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { answering, forms } from '../support/forms.mjs';
import { root, runCode } from '../support/system.mjs';
import { names } from '../support/zelk.mjs';

const ROUNDS = Number(process.env.ZELK_ENVIRONMENT_ROUNDS || 8);
const CALLS = names.map((name) => [name, forms(name)[0]]);

// In every environment: calls every function twice and returns the answers in the order of the calls.
const CALL_ALL = `
  const zelk = require(${JSON.stringify(root)});
  const callAll = () => Promise.all([...CALLS, ...CALLS].map(async ([name, args]) => {
    try { return await zelk[name](...args); } catch (error) { return error.code; }
  }));`;
const PRELUDE = `
  const assert = require('node:assert');
  const { Worker } = require('node:worker_threads');
  const CALLS = ${JSON.stringify(CALLS)};
  // A handler of each operation, which answers after this many milliseconds.
  const { logService } = require(${JSON.stringify(`${root}testing/testing.js`)});
  const FOREVER = { timeout: 2 ** 31 - 1 };
  const kit = logService({}, FOREVER);
  const service = (delay) => {
    for (const [name, { answer }] of Object.entries(${JSON.stringify(answering(names))})) {
      kit.handle(name, () => new Promise((resolve) => setTimeout(resolve, delay, answer)));
    }
  };
  const worker = (code, then) => new Promise((resolve, reject) => {
    const started = new Worker(
      'const { parentPort, workerData: CALLS } = require("node:worker_threads");' +
        ${JSON.stringify(CALL_ALL)} + code,
      { eval: true, workerData: CALLS });
    started.on('error', reject).on('exit', () => resolve(started.answer));
    started.on('message', (answer) => { started.answer = answer; then?.(started); });
  });
  const CALL_AND_POST = 'callAll().then((answers) => parentPort.postMessage(answers));';
  const { readFileSync } = require('node:fs');
  const isLoaded = () => readFileSync('/proc/self/maps', 'utf8').includes('zelklogservice.node');
  const times = (count, make) => Promise.all(Array.from({ length: count }, make));`;

// Runs the code in a process, which must end as expected.
function ends(code, status, out, title) {
  const seen = runCode(`${PRELUDE}\n(async () => {${code}})();`, { timeout: 120_000 });
  assert.deepEqual([seen.status, seen.stdout], [status, out], `${title}: ${seen.stderr}`);
  assert.match(seen.stderr, status === 1 ? /Error: own/ : /^$/, title);
}

for (const [title, code] of [
  ['workers are terminated with calls in flight', `
    for (let round = 0; round < ${ROUNDS}; ++round) {
      service(round % 4 * 2);
      await times(4, () => worker(
        'callAll(); zelk.getTcpdumpStatus(() => {}); parentPort.postMessage(0); setInterval(() => {}, 1000);',
        (started) => setTimeout(() => started.terminate(), Math.random() * 30)));
    }
    service(0); ${CALL_ALL}
    assert.equal((await callAll())[3], true);`],
  ['workers call while the main thread sets environment variables', `
    service(0);
    const end = Date.now() + ${ROUNDS * 200};
    const timer = setInterval(() => { process.env['ZELK_TEST_' + Date.now()] = 'x'; }, 1);
    await times(2, () => worker(
      'while (Date.now() < ' + end + ') { try { zelk.handleModemLogSwitch(); } catch {} }'));
    clearInterval(timer);`],
  ['is loaded, unloaded and loaded again', `
    service(0);
    for (let round = 0; round < ${ROUNDS * 2}; ++round) {
      const [first, second] = await times(2, () => worker(CALL_AND_POST));
      assert.deepEqual([first, first.length, first.slice(1, 4)], [second, 32, ['6', '6', true]]);
      assert.equal(isLoaded(), false);
    }
    ${CALL_ALL}
    await callAll().then(() => worker(''));
    assert.equal(isLoaded(), true);
    await callAll();`],
]) {
  test(title, () => ends(code, 0, '', title));
}

const SLOW = `${CALL_ALL}
  let answers = 0;
  times(3, () => zelk.getModemLogStatus().then(() => console.log(++answers)));
  zelk.getTcpdumpStatus(() => console.log(++answers));`;

const WAIT = `kit.handle('GetTcpdumpStatus', () => new Promise(() => {}));
  times(8, () => zelk.getTcpdumpStatus());`;

for (const [how, status, out, code] of [
  ['by process.exit()', 7, '', `${SLOW} process.exit(7);`],
  ['by itself', 0, '1\n2\n3\n4\n', SLOW],
  ['by an uncaught error', 1, '', `${SLOW} process.nextTick(() => { throw new Error('own'); });`],
  ['by process.exit() in a callback', 5, '',
    `${CALL_ALL} zelk.getModemLogStatus(() => process.exit(5)); ${WAIT}`],
  ['by process.exit() with no listener left', 4, '',
    `${CALL_ALL} ${WAIT} process.removeAllListeners(); process.exit(4);`],
  ['by process.exit() of which a listener throws', 1, '',
    `${CALL_ALL} ${WAIT} process.prependListener('exit', () => { throw new Error('own'); });
    process.exit(1);`],
  ['by process.exit() with the emit of before', 4, '',
    `${CALL_ALL} ${WAIT} delete process.emit; process.exit(4);`],
  ['by itself after the program has emitted exit', 0, 'true\n',
    `${CALL_ALL} process.emit('exit', 0); console.log((await callAll())[3]);`],
  ['after process.exit() in a worker', 0, 'end\n',
    "await worker('zelk.getModemLogStatus(); process.exit(3);'); console.log('end');"],
  ['by process.exit() with a worker calling', 4, '',
    `await worker('zelk.getModemLogStatus(); parentPort.postMessage(0);', () => process.exit(4));`],
  ['by process.exit(), on which they were made', 4, '',
    `${CALL_ALL} kit.restore(); process.on('exit', () => {
      logService({ GetModemLogStatus: () => new Promise(() => {}) }, FOREVER);
      times(8, () => zelk.getModemLogStatus()); }); process.exit(4);`],
]) {
  test(`a process ends ${how} while calls are in flight`, () =>
    ends(`service(100); ${code}`, status, out, how));
}
