// The template for python-dbusmock beside the reference service, each on a bus of its own.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { root, run, temporaryFolder } from '../support/system.mjs';

const [HOSTILE, ITEM] = ['"\\\b\t\u001f\u007fé/', '{"configKey":"a","value":{}}'];
const NO_ITEMS = ['{"configKey":"a"}', `${ITEM}.`, `.${ITEM}`, '{"configKey":"a","value":'];
const CALLS = [
  'GetModemLogStatus', 'HandleModemLogSwitch b true', 'GetModemLogStatus', 'GetTcpdumpStatus',
  `HandleModemLogSwitchWithConfigs bas true 2 ${ITEM} {"configKey":"a","value":","value":1}`,
  `HandleModemLogSwitchWithConfigs bas false 2 ${ITEM} .${ITEM}`, 'GetModemLogStatus',
  'GetModemLogConfig as 3 b a a', `ChangeModemLogConfig as 1 ${ITEM}`, 'GetModemLogConfig as 1 a',
  ...[ITEM, ...NO_ITEMS].map((item) => `SendModemLogCommand s ${item}`),
  `HandleTcpdumpSwitchWithConfigs bas true 1 {"configKey":"${HOSTILE}","value":${HOSTILE}}`,
  'GetTcpdumpStatus', `ChangeTcpdumpConfig as 2 ${ITEM} .`, `GetTcpdumpConfig as 2 ${HOSTILE} a`,
  'HandleTcpdumpSwitch b false', 'GetTcpdumpStatus', 'HandleBluetoothCallPcmLogSwitch b true',
  'GetModemLogDirectPackConfig', 'GetModemLogLogMasks', 'GetRemoteDevicesList',
  ...['QueryRemoteDevicesLogs', 'QueryProtocolData'].map((method) => `${method} s ${HOSTILE}`),
  `FetchRemoteDevicesLogs sx ${HOSTILE} -9223372036854775808`,
];
const CALL = 'busctl --user call -- dev.zelk.LogService /dev/zelk/LogService';
const ASK = `IFS=" "; set -f; for words; do echo "$words"; ${CALL} dev.zelk.LogService1 $words; done`;

const skip = run('/usr/bin/python3', ['-c', 'import dbusmock']).status !== 0 && 'needs python3-dbusmock';
test('it answers as the reference service does', { skip }, () => {
  const [program, calls] = ['mock', 'calls'].map((name) => `${temporaryFolder()}/${name}`);
  writeFileSync(program, '#!/bin/sh\nexec /usr/bin/python3 -m dbusmock ' +
  `--template examples/dbusmock/zelk_log_service.py --logfile '${calls}' "$@"\n`, { mode: 0o755 });
  const serve = (env) =>
    run('scripts/with_service.sh', ['bash', '-ec', ASK, '', ...CALLS], { cwd: root, env });
  const [reference, mock] = [serve(), serve({ ZELK_SERVICE_PROGRAM: program })];
  assert.deepEqual([reference.status, mock.status], [0, 0], reference.stderr + mock.stderr);
  assert.equal(mock.stdout, reference.stdout);
  assert.deepEqual(readFileSync(calls, 'utf8').match(/(?<= emit .*)"\w+": \w+/g), [
    '"ModemLogOn": True', '"TcpdumpOn": True', '"TcpdumpOn": False', '"BluetoothCallPcmLogOn": True']);
});
