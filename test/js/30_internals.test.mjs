// What no function of the module shows: steps without data, and how single values are read.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';
import { fail, gatedNames, keeps, probes, run, zelk } from '../support/zelk.mjs';

// Whose name the line of a step has, where it is not its own.
const BORROWED = {
  NativeSendModemLogCommand: 'NativeHandleTcpdumpSwitch',
  SendModemLogCommandCallback: 'HandleModemLogSwitchCallback',
  GetTcpdumpStatusCallback: 'GetModemLogStatusCallback',
  HandleTcpdumpSwitchCallback: 'HandleModemLogSwitchCallback',
  ChangeTcpdumpConfigCallback: 'ChangeModemLogConfigCallback',
};

test('steps without a context write one line and do nothing; two of them throw', async () => {
  const steps = gatedNames.flatMap((name) => [`Native${operation(name)}`, `${operation(name)}Callback`]);
  for (const step of steps) {
    const { lines, requests, returned, thrown } = await keeps({}, () => probes[step]());
    assert.deepEqual(lines, [E(`${BORROWED[step] ?? step}: data is null`)]);
    assert.deepEqual([requests, returned], [[], undefined]);
    assert.deepEqual(thrown && [thrown.code, thrown.message],
      /^NativeGet(ModemLog|Tcpdump)Config$/.test(step) ? ['1', 'error'] : undefined, step);
  }
});

test('the global callbacks without a context write two lines and do nothing', async () => {
  for (const step of ['OnGlobalExecuteCallback', 'OnGlobalCompleteCallback']) {
    const { lines, thrown } = await keeps({}, () => probes[step]());
    assert.deepEqual([lines, thrown],
      [[`I FRAMEWORK: [${step}]"enter"`, `W FRAMEWORK: [${step}]"context is null"`], undefined]);
  }
});

// Per probe: argument, result, error lines. Lists hold one value before.
const TABLE = {
  getFirstElement: [
    [undefined, undefined, 'GetElement: array is null'],
    ['x', undefined, 'GetElement: failed to get the elemrnt of array'],
  ],
  getInt32s: [
    [[1, 'x', 3], [0, 1, 0, 3], 'GetInt32: failed to get int32 value , so return zero'],
    [{}, [0], 'GetArrayLength: failed to get the length of array'],
  ],
  getBooleans: [[[true, 5], [false, true, false], 'failed to get bool value']],
  getStrings: [[['a', ''], [''], 'GetString: len error']],
};

test('lists have one entry per element, whatever it is', async () => {
  for (const [probe, rows] of Object.entries(TABLE)) {
    for (const [value, expected, ...lines] of rows) {
      const args = value === undefined ? [] : [value];
      const seen = await run(() => probes[probe](...args));
      assert.deepEqual([seen.returned, seen.lines], [expected, lines.map(E)], `${probe} ${lines}`);
    }
  }
  fail({ name: 'napi_get_element', nth: 1 });
  assert.deepEqual((await run(() => probes.getInt32s([1, 2]))).returned, [0, 2]);
});

test('an error is thrown once, with its code, and a second one is logged', async () => {
  const { thrown, lines } = await run(() => probes.throwErrors(6));
  assert.deepEqual([thrown.code, thrown.message], ['6', 'message']);
  assert.deepEqual(lines, [E('failed to throw error, code = 1, msg=while one is pending')]);
});

test('a runtime that has no message for its failure gets one', async () => {
  fail({ name: 'napi_typeof', nth: 1, wordless: true });
  assert.equal((await run(() => zelk.sendModemLogCommand({}))).thrown.message, 'empty error message');
});
