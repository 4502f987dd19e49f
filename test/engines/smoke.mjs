// All sixteen functions once, on any engine that can load the module; no test runner of its own. Ends with a
// line 'N passed, N failed' and, when something differs, with exit status 1.
import assert from 'node:assert/strict';
import process from 'node:process';
import * as named from '../../index.mjs';

const { default: zelk, ...functions } = named;
const ownNames = Object.getOwnPropertyNames(zelk);

const byCallback = (name, ...args) => new Promise((resolve) => {
  assert.equal(zelk[name](...args, resolve), undefined);
});

// It throws, and calls back all the same.
const unsupported = (name) => new Promise((resolve) => {
  assert.throws(() => zelk[name](resolve), { code: '6', message: / current function not support in current time$/ });
});

const ITEM = [{ configKey: 'a', value: { on: true, level: 3, name: 'x' } }];
const EXPANDED = [{ configKey: 'a', value: { level: 3, name: 'x', on: true } }];

const CHECKS = {
  'sixteen functions': () => assert.equal(ownNames.filter((name) => typeof zelk[name] === 'function').length, 16),
  getModemLogStatus: async () => assert.equal(await zelk.getModemLogStatus(), false),
  'getModemLogStatus(callback)': async () => assert.equal(await byCallback('getModemLogStatus'), false),
  'getModemLogStatus(5)': async () => assert.equal(await zelk.getModemLogStatus(5), false),
  'getModemLogStatus(callback, 1) is refused': () => assert.equal(zelk.getModemLogStatus(() => {}, 1), undefined),
  handleModemLogSwitch: async () => assert.equal(await zelk.handleModemLogSwitch(true, ITEM), true),
  'handleModemLogSwitch() throws': () => assert.throws(() => zelk.handleModemLogSwitch(), Error),
  getModemLogConfig: async () => assert.deepEqual(await zelk.getModemLogConfig(['a']), EXPANDED),
  changeModemLogConfig: async () => assert.equal(await byCallback('changeModemLogConfig', ITEM), true),
  sendModemLogCommand: async () => assert.equal(await zelk.sendModemLogCommand(ITEM[0]), true),
  getModemLogDirectPackConfig: async () =>
    assert.equal(await unsupported('getModemLogDirectPackConfig'), '{"directPack":false}'),
  getModemLogLogMasks: async () => assert.deepEqual(await unsupported('getModemLogLogMasks'),
    [{ configKey: 'ap', value: '0x0' }, { configKey: 'cp', value: '0x0' }]),
  handleTcpdumpSwitch: async () => assert.equal(await zelk.handleTcpdumpSwitch(true, undefined), true),
  getTcpdumpStatus: async () => assert.equal(await zelk.getTcpdumpStatus(), true),
  changeTcpdumpConfig: async () => assert.equal(await zelk.changeTcpdumpConfig(ITEM), true),
  getTcpdumpConfig: async () => assert.deepEqual(await byCallback('getTcpdumpConfig', ['a']), EXPANDED),
  handleBluetoothCallPcmLogSwitch: async () => assert.equal(await zelk.handleBluetoothCallPcmLogSwitch(true), false),
  fetchRemoteDevicesLogs: async () =>
    assert.equal(await zelk.fetchRemoteDevicesLogs('r', 20), '{"request":"r","value":20,"logs":[]}'),
  'fetchRemoteDevicesLogs with one argument is refused': () => assert.equal(zelk.fetchRemoteDevicesLogs('r'), undefined),
  queryRemoteDevicesLogs: async () => assert.equal(await zelk.queryRemoteDevicesLogs('q'), '{"request":"q","logs":[]}'),
  getRemoteDevicesList: async () => assert.equal(await zelk.getRemoteDevicesList(), '{"devices":[]}'),
  queryProtocolData: async () => assert.equal(await zelk.queryProtocolData('p'), '{"request":"p","data":""}'),
};

const SECONDS = 10;

const inTime = (check) => new Promise((resolve, reject) => {
  const timer = setTimeout(() => reject(new Error(`no answer in ${SECONDS} s`)), SECONDS * 1000);
  Promise.resolve().then(check).then(resolve, reject).finally(() => clearTimeout(timer));
});

const others = ownNames.filter((name) => !(name in functions));
if (others.length > 0) {
  console.log(`note: the exports object has also ${others.join(', ')}`);
}

const failed = [];
for (const [what, check] of Object.entries(CHECKS)) {
  try {
    await inTime(check);
  } catch (error) {
    failed.push(what);
    console.error(`${what}: ${error?.message ?? error}`);
  }
}
console.log(`${Object.keys(CHECKS).length - failed.length} passed, ${failed.length} failed`);
process.exit(failed.length > 0 ? 1 : 0);
