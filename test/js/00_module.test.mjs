import assert from 'node:assert/strict';
import { test } from 'node:test';
import { buildFolder, runCode } from '../support/system.mjs';
import { names, zelk } from '../support/zelk.mjs';

const TABLE = [
  'getModemLogConfig', 'getModemLogDirectPackConfig', 'getModemLogLogMasks', 'getModemLogStatus',
  'handleModemLogSwitch', 'changeModemLogConfig', 'sendModemLogCommand', 'getTcpdumpStatus',
  'getTcpdumpConfig', 'changeTcpdumpConfig', 'handleTcpdumpSwitch', 'handleBluetoothCallPcmLogSwitch',
  'fetchRemoteDevicesLogs', 'queryRemoteDevicesLogs', 'getRemoteDevicesList', 'queryProtocolData',
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
  const plan = JSON.stringify([{ name: 'napi_define_properties', nth: 1 }]);
  const script = `
    require(${JSON.stringify(`${buildFolder}zelk_test.node`)}).planFaults(${JSON.stringify(plan)});
    try {
      require(${JSON.stringify(`${buildFolder}zelklogservice_test.node`)});
    } catch (error) {
      console.log(error.message);
    }`;
  const { stdout, stderr } = runCode(script);
  assert.equal(stdout, 'injected failure\n', stderr);
});
