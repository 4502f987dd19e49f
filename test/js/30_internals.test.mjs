// What no function of the module shows: steps without data, and an error without a message.
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

test('an element of no array is undefined', async () => {
  const { lines, returned } = await run(() => probes.getElementOfNothing());
  assert.deepEqual([lines, returned], [[E('GetElement: array is null')], undefined]);
});

test('a runtime that has no message for its failure gets one', async () => {
  fail({ name: 'napi_typeof', nth: 1, wordless: true });
  assert.equal((await run(() => zelk.sendModemLogCommand({}))).thrown.message, 'empty error message');
});
