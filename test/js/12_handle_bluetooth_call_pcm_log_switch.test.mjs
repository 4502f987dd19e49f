import { test } from 'node:test';
import { FORGOTTEN, I, items, itemLines, NO_PROXY, PENDING, sees, switchTests } from '../support/cases.mjs';
import { service } from '../support/zelk.mjs';

const name = 'handleBluetoothCallPcmLogSwitch';
const failed = (code) => I(`HandleBluetoothCallPcmLogSwitchCallback: errorcode ${code}`);

// The items are made and not sent, and success answers false.
switchTests(name, {
  configUndefined: 'HandleBluetoothCallPcmLogSwitch: config is undefined',
  state: null,
  empty: [],
}, { sendsItems: false, answer: false });

test(`${name} never answers a switch that fails`, async () => {
  service({ HandleBluetoothCallPcmLogSwitch: { code: 9 } });
  const requests = [['HandleBluetoothCallPcmLogSwitch', true]];
  await sees(name, () => [true], { ...PENDING, requests, lines: [failed(9)] });
  await sees(name, (callback) => [true, callback, items],
    { ...FORGOTTEN, requests, lines: [...itemLines, failed(9)] });
  service(null);
  await sees(name, () => [true],
    { ...PENDING, lines: [NO_PROXY('HandleBluetoothCallPcmLogSwitch'), failed(3)] });
});
