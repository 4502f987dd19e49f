import { unsupportedTests } from '../support/cases.mjs';

// The text up to its first NUL, also an empty one.
unsupportedTests('getModemLogDirectPackConfig', { answer: '{"directPack":false}', value: '{"directPack":false}' },
  [['', ''], ['größe', 'größe'], ['a\0b', 'a']].map(([answer, text]) => [answer, { callback: [[text]] }]));
