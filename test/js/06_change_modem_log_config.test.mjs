import assert from 'node:assert/strict';
import { test } from 'node:test';
import { changeTests, E, EMPTY, sees } from '../support/cases.mjs';

const name = 'changeModemLogConfig';

changeTests(name, {
  prefix: 'ChangeModemLogConfig',
  failed: [E("ChangeModemLogConfigCallback: asyncContext's resolved is false")],
  empty: [EMPTY('ChangeModemLogConfig')],
  delivers: true,
});

test(`${name} sends one text per item, in order, whatever is wrong with it`, async () => {
  const empty = (key) => `{"configKey":"${key}","value":}}`;
  const texts = ['{"configKey":"b","value":{"l":[1,"2"]}}', empty(''), empty('a')];
  const list = [{ configKey: 'b', value: { l: [1, 2], o: {} } }, 5, { configKey: 'a', value: { no: null } }];
  const { lines } = await sees(name, () => [list], { resolved: false, requests: [['ChangeModemLogConfig', texts]] });
  assert.deepEqual(lines.filter((line) => line.includes('GetJsonParams')),
    texts.map((text) => E(`GetJsonParams ostringstream ${text}`)));
});
