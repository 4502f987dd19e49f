import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';
import { keeps, names, probes, remoteNames, run } from '../support/zelk.mjs';

// Whose name the line of a step has, where it is not its own.
const BORROWED = {
  NativeSendModemLogCommand: 'NativeHandleTcpdumpSwitch',
  SendModemLogCommandCallback: 'HandleModemLogSwitchCallback',
  GetTcpdumpStatusCallback: 'GetModemLogStatusCallback',
  HandleTcpdumpSwitchCallback: 'HandleModemLogSwitchCallback',
  ChangeTcpdumpConfigCallback: 'ChangeModemLogConfigCallback',
};
const THROWING = ['NativeGetModemLogConfig', 'NativeGetTcpdumpConfig'];

for (const name of names.filter((each) => !remoteNames.includes(each))) {
  test(`the steps of ${name} without a record write one line and do nothing`, async () => {
    for (const step of [`Native${operation(name)}`, `${operation(name)}Callback`]) {
      const { lines, requests, returned, thrown } = await keeps({}, () => run(() => probes[step]()));
      assert.deepEqual([lines, requests, returned], [[E(`${BORROWED[step] ?? step}: data is null`)], [], undefined]);
      const error = thrown && [thrown.code, thrown.message];
      assert.deepEqual(error, THROWING.includes(step) ? ['1', 'error'] : undefined, step);
    }
  });
}
