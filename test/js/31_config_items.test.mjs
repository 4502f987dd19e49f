import assert from 'node:assert/strict';
import { test } from 'node:test';
import { probes, run } from '../support/zelk.mjs';

const LEN = 'E ZELK_SERVICE: GetString: len error';
const NOT_STRING = 'E ZELK_SERVICE: GetString: get len error';
const NO_NAMES = 'E ZELK_SERVICE: failed to get property names.';
const WRONG = 'E ZELK_SERVICE: AddParamToList: WRONG TYPE';
const MIXED = 'E ZELK_SERVICE: GetArrayType: array has different element types';
const BAD_ARRAY = 'E ZELK_SERVICE: AddArrayParamToList: array param value type is invalid';
const NO_ELEMENT = 'E ZELK_SERVICE: GetElement: failed to get the elemrnt of array';
const NO_PROPERTY = [
  'E ZELK_SERVICE: HasProperty: failed HasProperty',
  'E ZELK_SERVICE: GetProperty: this object does not contains this property',
];
const NOT_ARRAY = 'E ZELK_SERVICE: FillConfigInfoVector: value is not array';
const key = (name) => `I ZELK_SERVICE: BuildChangeConfig: key ${name}`;
const isItemText = (line) => line.startsWith('E ZELK_SERVICE: GetJsonParams ostringstream ');

// Each item as "key name:type... text"; the types are ConfigInfoParamType's numbers.
async function fill(array) {
  const seen = await run(() => probes.fillConfigInfoVector(array));
  return { ...seen, lines: seen.lines.filter((line) => !isItemText(line)) };
}

test('an object\'s properties become typed parameters in property order', async () => {
  const value = { on: true, level: 2.9, name: 'x', 1: 4, flags: [true, false], masks: [1, 2.5, -3], names: ['a', 'b'] };
  const { returned, lines } = await fill([Object.freeze({ configKey: 'a', value: Object.freeze(value) })]);
  assert.deepEqual(returned, [
    'a 1:4 on:1 level:4 name:8 flags:9 masks:12 names:16 ' +
      '{"configKey":"a","value":{"1":4,"on":true,"level":2,"name":"x","flags":[true,"0"],"masks":[1,2,"-3"],"names":[}}',
  ]);
  assert.deepEqual(lines, ['1', 'on', 'level', 'name', 'flags', 'masks', 'names'].map(key));
});

test('what cannot be used is left out', async () => {
  const NONE = 'a {"configKey":"a","value":}}';
  for (const [value, lines, expected = NONE] of [
    [{ p: [] }, [key('p')]],
    [{ p: [null, null] }, [key('p')]],
    [{ p: { x: 1 } }, [key('p')]],
    [{ p: new Date(0) }, [key('p')]],
    [{ p: [1, 'x'] }, [key('p'), MIXED, BAD_ARRAY]],
    [{ p: [{}, []] }, [key('p'), BAD_ARRAY]],
    [{ p: [undefined] }, [key('p'), BAD_ARRAY]],
    [{ p: [1n] }, [key('p'), BAD_ARRAY]],
    ...[undefined, null, Symbol('s'), () => 0, 1n].map((p) => [{ p }, [key('p'), WRONG]]),
    [{ p: '' }, [key('p'), LEN], 'a p:8 {"configKey":"a","value":{"p":""}}'],
    [{ p: NaN }, [key('p')], 'a p:4 {"configKey":"a","value":{"p":0}}'],
    [{ p: ['x', ''] }, [key('p'), LEN], 'a p:16 {"configKey":"a","value":{"p":[}}'],
    [undefined, [NO_NAMES]],
    ['text', [NO_NAMES]],
    [7, [NO_NAMES]],
    [[5], [key('0')], 'a 0:4 {"configKey":"a","value":{"0":5}}'],
  ]) {
    const seen = await fill([{ configKey: 'a', value }]);
    assert.deepEqual([seen.returned, seen.lines], [[expected], lines]);
  }
});

test('every element yields one item', async () => {
  const EMPTY = ' {"configKey":"","value":}}';
  for (const [element, lines, expected = EMPTY] of [
    [{ value: { on: true } }, [NOT_STRING, key('on')], ' on:1 {"configKey":"","value":{"on":true}}'],
    [{ configKey: 5, value: {} }, [NOT_STRING]],
    [5, [...NO_PROPERTY, NOT_STRING, ...NO_PROPERTY, NO_NAMES]],
    [{ configKey: 'a' }, [NO_NAMES], 'a {"configKey":"a","value":}}'],
  ]) {
    const seen = await fill([element, element]);
    assert.deepEqual([seen.returned, seen.lines, seen.thrown], [[expected, expected], [...lines, ...lines], undefined]);
  }
  const holes = await fill(new Array(2));
  assert.equal(holes.returned.length, 2);
  const { returned } = await fill(new Array(100_000).fill({ configKey: 'k', value: { n: 1 } }));
  assert.equal(returned.length, 100_000);
});

test("an exception of the caller's own getter reaches the caller, and what is behind it is missing", async () => {
  const own = new Error("the caller's own");
  const seen = await fill([{ configKey: 'a', value: { x: 1, get y() { throw own; }, z: 1 } }, { configKey: 'b' }]);
  assert.equal(seen.thrown, own);
  assert.deepEqual(seen.lines.slice(0, 8), [
    key('x'), key('y'), 'E ZELK_SERVICE: GetProperty: failed to GetProperty', key('z'), ...NO_PROPERTY, NO_ELEMENT, ...NO_PROPERTY.slice(0, 1),
  ]);
  const trapped = await fill([{ configKey: 'a', value: new Proxy({}, { ownKeys() { throw own; } }) }]);
  assert.deepEqual([trapped.thrown, trapped.lines], [own, [NO_NAMES]]);
});

test('lists of strings have one entry per element', async () => {
  const seen = await run(() => probes.fillStringVector(['a', 1, '']));
  assert.deepEqual([seen.returned, seen.lines], [['a', '', ''], [NOT_STRING, LEN]]);
  for (const probe of ['fillStringVector', 'fillConfigInfoVector']) {
    const refused = await run(() => probes[probe]({ length: 1 }));
    assert.deepEqual([refused.returned, refused.lines], [[], [NOT_ARRAY]], probe);
  }
});
