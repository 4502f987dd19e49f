// What no function of the module shows: steps without data, and an error without a message.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E, I, W } from '../support/cases.mjs';
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

test('frames and helpers without data write lines and do nothing', async () => {
  for (const [probe, ...lines] of [
    ['handleNothing', I('HandleAsyncWork: workName = [Nothing]'), E('HandleAsyncWork: error baseContext')],
    ['answerNothing', I('Handle2ValueCallback serious error baseContext nullptr')],
    // Neither callback nor promise: freed without an answer.
    ['answerNobody', 'D ZELK_SERVICE: Handle2ValueCallback end'],
    ...['OnGlobalExecuteCallback', 'OnGlobalCompleteCallback'].map((step) =>
      [step, `I FRAMEWORK: [${step}]"enter"`, W(`[${step}]"context is null"`)]),
    ['getElementOfNothing', E('GetElement: array is null')],
  ]) {
    const seen = await keeps({}, () => probes[probe]());
    assert.deepEqual([seen.returned, seen.thrown, seen.uncaught], [undefined, undefined, []], probe);
    assert.deepEqual(seen.lines, lines, probe);
  }
});

test('a runtime that has no message for its failure gets one', async () => {
  fail({ name: 'napi_typeof', nth: 1, wordless: true });
  assert.equal((await run(() => zelk.sendModemLogCommand({}))).thrown.message, 'empty error message');
});
