import assert from 'node:assert/strict';
import { test } from 'node:test';
import { changeTests, E, EMPTY, items, NO_PROXY, itemLines, sees } from '../support/cases.mjs';
import { proxyCount, service } from '../support/zelk.mjs';

const name = 'changeModemLogConfig';
const unresolved = E("ChangeModemLogConfigCallback: asyncContext's resolved is false");

const sent = changeTests(name, { prefix: 'ChangeModemLogConfig' });

test(`${name} delivers the boolean of a failed change as a rejection or to the callback`, async () => {
  for (const answer of [true, false]) {
    service({ ChangeModemLogConfig: { code: 9, answer } });
    const failed = { requests: sent.requests, lines: [...sent.lines, unresolved] };
    await sees(name, () => [items], { rejected: answer, ...failed });
    await sees(name, (callback) => [items, callback], { callback: [[answer]], ...failed });
  }
  service(null);
  await sees(name, () => [items],
    { rejected: false, lines: [...itemLines, NO_PROXY('ChangeModemLogConfig'), unresolved] });
});

test(`${name} answers false for an empty list, without asking the service`, async () => {
  service({ ChangeModemLogConfig: { answer: true } });
  const lines = [EMPTY('ChangeModemLogConfig'), unresolved];
  await sees(name, () => [[]], { rejected: false, lines });
  await sees(name, (callback) => [[], callback], { callback: [[false]], lines });
  assert.equal(proxyCount(), 0);
});

test(`${name} sends one text per item, in order, whatever is wrong with it`, async () => {
  const empty = (key) => `{"configKey":"${key}","value":}}`;
  const texts = ['{"configKey":"b","value":{"l":[1,"2"]}}', empty(''), empty('a')];
  const list = [{ configKey: 'b', value: { l: [1, 2], o: {} } }, 5, { configKey: 'a', value: { no: null } }];
  const seen = await sees(name, () => [list], { resolved: false, requests: [['ChangeModemLogConfig', texts]] });
  assert.deepEqual(seen.lines.filter((line) => line.includes('GetJsonParams')),
    texts.map((text) => E(`GetJsonParams ostringstream ${text}`)));
});
