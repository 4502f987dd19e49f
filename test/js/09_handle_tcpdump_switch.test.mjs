import { test } from 'node:test';
import {
  FORGOTTEN, I, items, itemLines, itemText, NO_PROXY, PENDING, sees, switchTests, textLine,
} from '../support/cases.mjs';
import { service } from '../support/zelk.mjs';

const name = 'handleTcpdumpSwitch';
const empty = I('[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty');
const failed = (code) => I(`HandleTcpdumpSwitchCallback: errorcode ${code}`);

switchTests(name, {
  configUndefined: 'HandleModemLogSwitch: config is undefined', // The modem log switch's.
  state: null,
  empty: [empty],
}, { sendsItems: true, answer: true });

test(`${name} never answers a switch that fails`, async () => {
  service({ HandleTcpdumpSwitch: { code: 9, answer: true } });
  await sees(name, () => [true],
    { ...PENDING, requests: [['HandleTcpdumpSwitch', true]], lines: [empty, failed(9)] });
  await sees(name, (callback) => [true, callback, items], {
    ...FORGOTTEN,
    requests: [['HandleTcpdumpSwitch', true, [itemText]]],
    lines: [...itemLines, textLine, failed(9)],
  });
  service(null);
  const lines = [NO_PROXY('HandleTcpdumpSwitch'), failed(3)];
  await sees(name, () => [true], { ...PENDING, lines: [empty, ...lines] });
  await sees(name, () => [true, items], { ...PENDING, lines: [...itemLines, ...lines] });
});
