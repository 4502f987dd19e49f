import { unsupportedTests } from '../support/cases.mjs';

const readTests = unsupportedTests('getModemLogDirectPackConfig',
  { answer: '{"directPack":false}', value: '{"directPack":false}' });

// The text up to its first NUL, also an empty one.
readTests([
  ['', ''],
  ['größe', 'größe'],
  ['a\0b', 'a'],
]);
