import { test } from 'node:test';
import { E, FORGOTTEN, sees, unsupportedTests } from '../support/cases.mjs';
import { service } from '../support/zelk.mjs';

const asked = {
  thrown: '6: GetModemLogLogMasks current function not support in current time',
  requests: [['GetModemLogLogMasks']],
};

unsupportedTests('getModemLogLogMasks', {
  answer: ['{"configKey":"ap","value":"{\\"n\\":1}"}', '{"configKey":"cp","value":"0x0"}'],
  value: [{ configKey: 'ap', value: '{"n":1}' }, { configKey: 'cp', value: '0x0' }],
});

test('getModemLogLogMasks copies the two members that are strings, and expands nothing', async () => {
  const rows = [
    ['{"configKey":"a","value":5}', { configKey: 'a' }],
    ['{"configKey":7,"value":"","other":"x"}', { value: '' }],
    ['{"configKey":"a\\u0000b","value":"{\\"n\\":4294967296}"}', { configKey: 'a\0b', value: '{"n":4294967296}' }],
    ...['{}', '{"value":{}}', '[1]', '5', 'null', '"a"'].map((text) => [text, {}]),
  ];
  service({ GetModemLogLogMasks: { answer: rows.map(([text]) => text) } });
  const masks = rows.map(([, mask]) => mask);
  await sees('getModemLogLogMasks', (callback) => [callback], { ...asked, callback: [[masks]], lines: [] });
});

test('getModemLogLogMasks never answers an empty list or a text that it cannot read', async () => {
  const good = '{"configKey":"a","value":"b"}';
  for (const [answer, text] of [
    [[], 'callbackConfigs is null'],
    ...['no json', '', '{"configKey":"a"', '['.repeat(2000) + ']'.repeat(2000)].map((bad) =>
      [[good, bad, good], 'Failed to parse json']),
  ]) {
    service({ GetModemLogLogMasks: { answer } });
    await sees('getModemLogLogMasks', (callback) => [callback],
      { ...asked, ...FORGOTTEN, lines: [E(`GetModemLogLogMasksCallback: ${text}`)] });
  }
});
