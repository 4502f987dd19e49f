import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { Worker } from 'node:worker_threads';
import { buildFolder, names, zelk } from '../support/zelk.mjs';

const TABLE = [
  'getModemLogConfig', 'getModemLogDirectPackConfig', 'getModemLogLogMasks', 'getModemLogStatus',
  'handleModemLogSwitch', 'changeModemLogConfig', 'sendModemLogCommand', 'getTcpdumpStatus', 'getTcpdumpConfig',
  'changeTcpdumpConfig', 'handleTcpdumpSwitch', 'handleBluetoothCallPcmLogSwitch', 'fetchRemoteDevicesLogs',
  'queryRemoteDevicesLogs', 'getRemoteDevicesList', 'queryProtocolData',
];

test('exports sixteen functions in order, fixed and hidden from enumeration', () => {
  assert.deepEqual(names, TABLE);
  for (const name of TABLE) {
    const { value, ...attributes } = Object.getOwnPropertyDescriptor(zelk, name);
    assert.equal(typeof value, 'function', name);
    assert.deepEqual(attributes, { writable: false, enumerable: false, configurable: false }, name);
  }
});

test('throws at import when its functions cannot be defined', () => {
  const script = `
    const control = require('${buildFolder}zelk_test.node');
    control.planFaults('[{"name": "napi_define_properties", "nth": 1}]');
    try { require('${buildFolder}zelklogservice_test.node') } catch (error) { console.log(error.message) }`;
  const { stdout, stderr } = spawnSync(process.execPath, ['-e', script], { encoding: 'utf8' });
  assert.equal(stdout, 'injected failure\n', stderr);
});

// Node.js unloads the library with the last environment that uses it.
test('can be loaded again after the last environment that used it has gone', async () => {
  const script = `
    const { parentPort } = require('worker_threads');
    require('${buildFolder}zelklogservice.node').getModemLogStatus((status) => parentPort.postMessage(status));`;
  for (let i = 0; i < 3; i++) {
    const status = await new Promise((resolve, reject) => {
      const worker = new Worker(script, { eval: true });
      let message;
      worker.on('message', (value) => (message = value)).on('error', reject).on('exit', () => resolve(message));
    });
    assert.equal(status, false);
  }
});
