import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E, I } from '../support/cases.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

const [NOT_STRING, LEN] = [E('GetString: get len error'), E('GetString: len error')];
const [NO_NAMES, WRONG] = [E('failed to get property names.'), E('AddParamToList: WRONG TYPE')];
const MIXED = E('GetArrayType: array has different element types');
const BAD_ARRAY = E('AddArrayParamToList: array param value type is invalid');
const NO_ELEMENT = E('GetElement: failed to get the elemrnt of array');
const NO_PROPERTY =
  ['HasProperty: failed HasProperty', 'GetProperty: this object does not contains this property'].map(E);
const key = (name) => I(`BuildChangeConfig: key ${name}`);
const own = new Error("the caller's own");
const throwOwn = () => {
  throw own;
};

const OTHERS = /GetJsonParams ostringstream |HandleAsyncWork|Handle2ValueCallback/;

// The texts that the service gets of a list of items, what is thrown, and the lines of reading them.
async function send(array) {
  const { requests: [[, texts] = []], thrown, lines } = await run(() => zelk.changeModemLogConfig(array));
  return { texts, thrown, lines: lines.filter((line) => !OTHERS.test(line)) };
}

test('an object\'s properties become typed parameters in property order', async () => {
  const value = {
    on: true, level: 2.9, name: 'x', 1: 4, flags: [true, false], masks: [1, 2.5, -3], names: ['a', 'b'],
  };
  const { texts, lines } = await send([Object.freeze({ configKey: 'a', value: Object.freeze(value) })]);
  const text = '{"1":4,"on":true,"level":2,"name":"x","flags":[true,"0"],"masks":[1,2,"-3"],"names":[}';
  assert.deepEqual(texts, [`{"configKey":"a","value":${text}}`]);
  assert.deepEqual(lines, ['1', 'on', 'level', 'name', 'flags', 'masks', 'names'].map(key));
});

test('unusable values are left out, and every element yields one item', async () => {
  const ofKey = (name, value = '}') => `{"configKey":"${name}","value":${value}}`;
  const p = (param, lines, text) =>
    [{ configKey: 'a', value: { p: param } }, [key('p'), ...lines], ofKey('a', text)];
  for (const [element, lines, expected = ofKey('')] of [
    ...[[], [null, null], { x: 1 }, new Date(0)].map((value) => p(value, [])),
    ...[[1, 'x'], [undefined, 1]].map((value) => p(value, [MIXED, BAD_ARRAY])),
    ...[[{}, []], [undefined], [1n]].map((value) => p(value, [BAD_ARRAY])),
    ...[undefined, null, Symbol('s'), () => 0, 1n].map((value) => p(value, [WRONG])),
    p('', [LEN], '{"p":""}'),
    p(NaN, [], '{"p":0}'),
    p(['x', ''], [LEN], '{"p":[}'),
    ...[undefined, 'text', 7].map((value) => [{ configKey: 'a', value }, [NO_NAMES], ofKey('a')]),
    [{ configKey: 'a', value: { '': 5, [Symbol('s')]: 1 } }, [LEN, key('')], ofKey('a', '{"":5}')],
    [{ configKey: 'a', value: Object.create({ inherited: 1 }, { hidden: { value: 1 } }) }, [], ofKey('a')],
    [{ configKey: 'a', value: [5] }, [key('0')], ofKey('a', '{"0":5}')],
    [{ configKey: 'a' }, [NO_NAMES], ofKey('a')],
    [{ value: { on: true } }, [NOT_STRING, key('on')], ofKey('', '{"on":true}')],
    [{ configKey: 5, value: {} }, [NOT_STRING]],
    [5, [...NO_PROPERTY, NOT_STRING, ...NO_PROPERTY, NO_NAMES]],
  ]) {
    const { texts, lines: seen, thrown } = await send([element, element]);
    assert.deepEqual([texts, seen, thrown], [[expected, expected], [...lines, ...lines], undefined]);
  }
  for (const array of [new Array(2), new Array(10_000).fill({ configKey: 'k', value: { n: 1 } })]) {
    assert.equal((await send(array)).texts.length, array.length);
  }
});

test('what the runtime cannot read is left out, and a value of a list is zero', async () => {
  const value = { on: [true, true], level: [1, 2, 3] };
  for (const [name, nth, expected, line] of [
    ['napi_get_element', 2, '{"level":[1,2,"3"]}', 'failed to get the element of array'], // The first name.
    ['napi_get_element', 12, '{"on":[true,"1"],"level":[1,"3"]}',
      'GetElement: failed to get the elemrnt of array'],
    ['napi_get_value_int32', 2, '{"on":[true,"1"],"level":[1,0,"3"]}',
      'GetInt32: failed to get int32 value , so return zero'],
    ['napi_get_value_bool', 2, '{"on":[true,"0"],"level":[1,2,"3"]}', 'failed to get bool value'],
  ]) {
    fail({ name, nth });
    const seen = await send([{ configKey: 'a', value }]);
    assert.deepEqual(seen.texts, [`{"configKey":"a","value":${expected}}`], name);
    assert.deepEqual(seen.lines.filter((each) => /failed/.test(each)), [E(line)], name);
  }
  for (const name of ['changeModemLogConfig', 'getModemLogConfig']) {
    fail({ name: 'napi_is_array', nth: 2 }); // The first has found a list.
    const { requests, lines } = await run(() => zelk[name](['k']));
    assert.deepEqual(requests, []);
    assert.ok(lines.includes(E('FillConfigInfoVector: value is not array')), name);
  }
});

test("an exception of the caller's own getter reaches the caller, and what follows is missing", async () => {
  const value = Object.defineProperty({ x: 1, y: 1, z: 1 }, 'y', { get: throwOwn });
  const seen = await send([{ configKey: 'a', value }, { configKey: 'b' }]);
  assert.equal(seen.thrown, own);
  assert.deepEqual(seen.lines.slice(0, 8), [
    key('x'), key('y'), E('GetProperty: failed to GetProperty'), key('z'), ...NO_PROPERTY, NO_ELEMENT,
    NO_PROPERTY[0],
  ]);
  const trapped = await send([{ configKey: 'a', value: new Proxy({}, { ownKeys: throwOwn }) }]);
  assert.deepEqual([trapped.thrown, trapped.lines[0]], [own, NO_NAMES]);
});
