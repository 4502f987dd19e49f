// What no function shows: lines about data that is missing, which no runtime of today leaves out, what the
// frames free of a call that cannot start, and what references keep.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { inspect } from 'node:util';
import { describe, E, I, W } from '../support/cases.mjs';
import { forms, operation } from '../support/forms.mjs';
import { counts, fail, gatedNames, names, probe, run, zelk } from '../support/zelk.mjs';

// The name in the line of a step, where it is not its own.
const BORROWED = {
  NativeSendModemLogCommand: 'NativeHandleTcpdumpSwitch',
  SendModemLogCommandCallback: 'HandleModemLogSwitchCallback',
  GetTcpdumpStatusCallback: 'GetModemLogStatusCallback',
  HandleTcpdumpSwitchCallback: 'HandleModemLogSwitchCallback',
  ChangeTcpdumpConfigCallback: 'ChangeModemLogConfigCallback',
};

function linesOf(name) {
  if (!gatedNames.includes(name)) {
    return ['OnGlobalExecuteCallback', 'OnGlobalCompleteCallback'].flatMap((step) => [
      `I FRAMEWORK: [${step}]"enter"`, W(`[${step}]"context is null"`),
    ]);
  }
  const steps = [`Native${operation(name)}`, `${operation(name)}Callback`];
  return steps.map((step) => E(`${BORROWED[step] ?? step}: data is null`));
}

for (const name of names) {
  test(`${name}: steps without data write a line and do nothing`, async () => {
    fail({ name: 'napi_create_async_work', dataless: true });
    const seen = await run(() => zelk[name](...forms(name)[0]));
    const lines = seen.lines.filter((line) => /is null|OnGlobal/.test(line));
    const errors = ['getModemLogConfig', 'getTcpdumpConfig'].includes(name) ? ['1: error'] : [];
    assert.deepEqual([lines, seen.uncaught.map(describe), seen.requests], [linesOf(name), errors, []]);
    assert.ok(!('resolved' in seen) && !('rejected' in seen));
  });
}

test('helpers without data write lines and do nothing', async () => {
  const { lines } = await run(() => probe('none'));
  assert.deepEqual(lines, [
    I('Handle2ValueCallback serious error baseContext nullptr'),
    E('GetElement: array is null'),
    I('HandleAsyncWork: workName = [Nothing]'), E('HandleAsyncWork: error baseContext'),
  ]);
});

// What each way to start a call keeps: contexts, members, and whether a promise is returned.
for (const [faults, kept] of [
  [['napi_create_async_work'], 0],
  [['napi_queue_async_work'], 1],
  [['napi_queue_async_work', 'napi_throw_error'], 0],
]) {
  for (const [way, ...expected] of [
    ['HandleAsyncWork', kept, 1, kept], // The frame does not know the members.
    ['StartCall', kept, kept, kept],
    ['Execute', 0, 1, kept], // The context stays the caller's. It is none of those that are counted.
  ]) {
    test(`${way} frees what it must when ${faults.join(' and ')} fails`, () => {
      fail(...faults);
      const before = counts();
      assert.throws(() => probe(way));
      const after = counts();
      const left = ['contexts', 'members', 'returned'].map((what) => after[what] - before[what]);
      assert.deepEqual(left, expected);
    });
  }
}

for (const value of [5, 'x', null, undefined, true, 1n, Symbol('s'), { value: 1 }, [1], run]) {
  test(`a reference keeps ${inspect(value)}, also while an exception is pending`, () => {
    assert.equal(probe('Keep', value), value);
  });
}
