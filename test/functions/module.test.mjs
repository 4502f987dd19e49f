import assert from 'node:assert/strict';
import { test } from 'node:test';
import { order } from '../support/forms.mjs';
import { names, zelk } from '../support/zelk.mjs';

test('exports sixteen functions in order, fixed and hidden from enumeration', () => {
  assert.deepEqual(names, order);
  for (const name of names) {
    const { value, ...attributes } = Object.getOwnPropertyDescriptor(zelk, name);
    assert.equal(typeof value, 'function', name);
    assert.deepEqual(attributes, { writable: false, enumerable: false, configurable: false }, name);
  }
});
