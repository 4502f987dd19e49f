import assert from 'node:assert/strict';
import { test } from 'node:test';
import { names, zelk } from '../support/zelk.mjs';

const TABLE = [
  'getModemLogConfig', 'getModemLogDirectPackConfig', 'getModemLogLogMasks', 'getModemLogStatus',
  'handleModemLogSwitch', 'changeModemLogConfig', 'sendModemLogCommand', 'getTcpdumpStatus',
  'getTcpdumpConfig', 'changeTcpdumpConfig', 'handleTcpdumpSwitch', 'handleBluetoothCallPcmLogSwitch',
  'fetchRemoteDevicesLogs', 'queryRemoteDevicesLogs', 'getRemoteDevicesList', 'queryProtocolData',
];

test('exports sixteen functions in order', () => {
  assert.deepEqual(names, TABLE);
});

for (const name of TABLE) {
  test(`${name} is fixed and hidden from enumeration`, () => {
    const { value, ...attributes } = Object.getOwnPropertyDescriptor(zelk, name);
    assert.equal(typeof value, 'function');
    assert.deepEqual(attributes, { writable: false, enumerable: false, configurable: false });
  });
}
