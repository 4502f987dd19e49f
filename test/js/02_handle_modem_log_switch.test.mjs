import { test } from 'node:test';
import { E, I, items, itemLines, itemText, NO_PROXY, sees, switchTests, textLine } from '../support/cases.mjs';
import { service } from '../support/zelk.mjs';

const STATE = 'HandleModemLogSwitch: switchStatus';
const empty = I('NativeHandleModemLogSwitch asyncContext configs is empty');
const unresolved = E('[HandleModemLogSwitchCallback] !asyncContext->resolved');

switchTests('handleModemLogSwitch', {
  configUndefined: 'HandleModemLogSwitch: config is undefined',
  state: STATE,
  empty: [empty],
}, { sendsItems: true, answer: true });

test('handleModemLogSwitch delivers the boolean of a failed switch as a rejection or to the callback', async () => {
  for (const answer of [true, false]) {
    service({ HandleModemLogSwitch: { code: 9, answer } });
    const plain = { requests: [['HandleModemLogSwitch', true]], lines: [E(`${STATE}, 1`), empty, unresolved] };
    await sees('handleModemLogSwitch', () => [true], { rejected: answer, ...plain });
    await sees('handleModemLogSwitch', (callback) => [true, callback], { callback: [[answer]], ...plain });
    await sees('handleModemLogSwitch', () => [0, items], {
      rejected: answer,
      requests: [['HandleModemLogSwitch', false, [itemText]]],
      lines: [...itemLines, textLine, unresolved],
    });
  }
  service(null);
  const lines = [NO_PROXY('HandleModemLogSwitch'), unresolved];
  await sees('handleModemLogSwitch', () => [0], { rejected: false, lines: [empty, ...lines] });
  await sees('handleModemLogSwitch', () => [0, items], { rejected: false, lines: [...itemLines, ...lines] });
});
