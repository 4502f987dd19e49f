import { test } from 'node:test';
import { sees, unsupportedTests } from '../support/cases.mjs';
import { service } from '../support/zelk.mjs';

unsupportedTests('getModemLogDirectPackConfig', { answer: '{"directPack":false}', value: '{"directPack":false}' });

test('getModemLogDirectPackConfig answers the text up to its first NUL, also an empty one', async () => {
  for (const [answer, text] of [['', ''], ['größe', 'größe'], ['a\0b', 'a']]) {
    service({ GetModemLogDirectPackConfig: { answer } });
    await sees('getModemLogDirectPackConfig', (callback) => [callback], {
      thrown: '6: GetModemLogDirectPackConfig current function not support in current time',
      callback: [[text]], requests: [['GetModemLogDirectPackConfig']], lines: [],
    });
  }
});
