// The time limit that docs/testing.md gives its readers.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import zelk from 'zelklogservice';
import { ServiceError, logService } from 'zelklogservice/testing';
import { within } from '../../examples/within.mjs';
import { root, run } from '../support/system.mjs';

const handlers = {
  HandleModemLogSwitch: () => {
    throw new ServiceError(5, true);
  },
};
const MASKS = [{ configKey: 'ap', value: '0x0' }, { configKey: 'cp', value: '0x0' }];
const UNSUPPORTED = 'GetModemLogLogMasks current function not support in current time';

// Each: what happens, the function, the call, and what comes of it.
const CALLS = [
  ['an answer', 'getModemLogStatus', () => zelk.getModemLogStatus(), { answer: false }],
  ['an answer by callback', 'getModemLogStatus', (done) => zelk.getModemLogStatus(done), { answer: false }],
  ['a query that throws', 'getModemLogLogMasks', () => zelk.getModemLogLogMasks(), { error: UNSUPPORTED }],
  ['a query that throws and calls back', 'getModemLogLogMasks', (done) => zelk.getModemLogLogMasks(done),
    { answer: MASKS }],
  ['an exception', 'getModemLogStatus', (done) => assert.fail(typeof done), { error: 'function' }],
  ['a failure', 'handleModemLogSwitch', () => zelk.handleModemLogSwitch(true), { rejected: true }],
  ['a refusal', 'getModemLogStatus', () => zelk.getModemLogStatus(1, 2),
    { error: 'getModemLogStatus was refused: the log says why' }],
];

const timers = () => process.getActiveResourcesInfo().filter((resource) => resource === 'Timeout').length;

for (const [what, name, call, expected] of CALLS) {
  test(`a limited call ends with ${what}, and its timer with it`, async () => {
    const service = logService(handlers);
    const before = timers();
    const seen = await within(60_000, name, call).then((answer) => ({ answer }),
      (reason) => (reason instanceof Error ? { error: reason.message } : { rejected: reason }));
    assert.deepEqual(seen, expected);
    assert.equal(timers(), before);
    service.restore();
  });
}

test('a limited call keeps its process alive when nothing else does', () => {
  const { stdout, stderr } = run(process.execPath, ['--input-type=module', '-e', `
    import zelk from '${root}js/index.mjs';
    import { within } from '${root}examples/within.mjs';
    within(100, 'getTcpdumpStatus', () => zelk.getTcpdumpStatus())
      .catch(({ message }) => console.log(message));`],
  { env: { ZELK_LOG_SERVICE: 'none' } });
  assert.equal(stdout, 'getTcpdumpStatus did not answer within 100 ms\n', stderr);
});
