// The rules of `make lint` for JavaScript: eslint's recommended ones, and one style for all files.
import js from '@eslint/js';
import stylistic from '@stylistic/eslint-plugin';
import globals from 'globals';

export default [
  { ignores: ['build/', 'lib/'] },
  js.configs.recommended,
  stylistic.configs.customize({ semi: true, braceStyle: '1tbs', arrowParens: true, quoteProps: 'as-needed' }),
  {
    languageOptions: { globals: globals.node },
    rules: {
      '@stylistic/max-len': ['error', { code: 110, ignoreUrls: true }],
      '@stylistic/max-statements-per-line': ['error', { max: 1 }],
      '@stylistic/quotes': ['error', 'single', { avoidEscape: true, allowTemplateLiterals: 'always' }],
      'no-unused-vars': ['error', { ignoreRestSiblings: true }],
      'no-sequences': 'error',
      'no-unused-expressions': 'error',
      '@stylistic/operator-linebreak': ['error', 'after', { overrides: { '?': 'before', ':': 'before' } }],
    },
  },
  { files: ['**/*.js', 'bin/zelklog'], languageOptions: { sourceType: 'commonjs' } },
  { files: ['examples/jest.test.js'], languageOptions: { globals: globals.jest } },
];
