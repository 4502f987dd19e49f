// How items are read, and their texts for the service.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E, I, NO_PROPERTY, show } from '../support/cases.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

const [NOT_STRING, LEN] = [E('GetString: get len error'), E('GetString: len error')];
const [NO_NAMES, WRONG] = [E('failed to get property names.'), E('AddParamToList: WRONG TYPE')];
const MIXED = E('GetArrayType: array has different element types');
const BAD_ARRAY = E('AddArrayParamToList: array param value type is invalid');
const key = (name) => I(`BuildChangeConfig: key ${name}`);
const ofKey = (name, value = '}') => `{"configKey":"${name}","value":${value}}`;

// The texts that the service gets of a list of items, what is thrown, and the lines of reading them.
async function send(list) {
  const { requests: [[, texts] = []], thrown, lines } = await run(() => zelk.changeModemLogConfig(list));
  const others = /GetJsonParams ostringstream |HandleAsyncWork|Handle2ValueCallback/;
  return { texts, thrown, lines: lines.filter((line) => !others.test(line)) };
}

const everyType = {
  on: true, level: 2.9, name: 'x', 1: 4, flags: [true, false], masks: [1, 2.5, -3], names: ['a', 'b'],
};
const ofEveryType = '{"1":4,"on":true,"level":2,"name":"x","flags":[true,"0"],"masks":[1,2,"-3"],"names":[}';
const hidden = Object.create({ inherited: 1 }, { hidden: { value: 1 } });

// Items, their parameters in the text for the service, and the lines of reading them.
for (const [item, text, lines] of [
  [{ configKey: 'a', value: Object.freeze(everyType) }, ofEveryType,
    ['1', 'on', 'level', 'name', 'flags', 'masks', 'names'].map(key)],
  ...[
    ['', '{"p":""}', LEN], [NaN, '{"p":0}'], [['x', ''], '{"p":[}', LEN],
    ...[[], [null, null], { x: 1 }, new Date(0)].map((value) => [value, '}']),
    ...[[1, 'x'], [undefined, 1]].map((value) => [value, '}', MIXED, BAD_ARRAY]),
    ...[[{}, []], [undefined], [1n]].map((value) => [value, '}', BAD_ARRAY]),
    ...[undefined, null, Symbol('s'), () => 0, 1n].map((value) => [value, '}', WRONG]),
  ].map(([p, text, ...lines]) => [{ configKey: 'a', value: { p } }, text, [key('p'), ...lines]]),
  ...[undefined, 'text', 7].map((value) => [{ configKey: 'a', value }, '}', [NO_NAMES]]),
  [{ configKey: 'a', value: { '': 5, [Symbol('s')]: 1 } }, '{"":5}', [LEN, key('')]],
  [{ configKey: 'a', value: hidden }, '}', []],
  [{ configKey: 'a', value: [5] }, '{"0":5}', [key('0')]],
  [{ configKey: 'a' }, '}', [NO_NAMES]],
  [{ value: { on: true } }, '{"on":true}', [NOT_STRING, key('on')]],
  [{ configKey: 5, value: {} }, '}', [NOT_STRING]],
  [5, '}', [...NO_PROPERTY, NOT_STRING, ...NO_PROPERTY, NO_NAMES]],
]) {
  test(`the text of the item ${show(item)}`, async () => {
    const texts = [ofKey(item.configKey === 'a' ? 'a' : '', text), ofKey('last')];
    assert.deepEqual(await send([Object.freeze(item), { configKey: 'last', value: {} }]),
      { texts, thrown: undefined, lines });
  });
}

// What the runtime cannot read: an element of a list becomes zero, anything else is left out.
const some = { n: 1, l: [true, true] };
for (const [name, nth, text, line] of [
  ['napi_typeof', 3, '{"l":[true,"1"]}', 'GetType: unknown type'],
  ['napi_is_array', 3, '{"n":1}', 'IsArray: failed to check array type'],
  ['napi_get_array_length', 2, '}', 'failed to get array length'],
  ['napi_get_array_length', 3, '{"n":1}', 'GetArrayType: failed to get the length of array'],
  ['napi_get_array_length', 4, '{"n":1,"l":[}', 'GetArrayLength: failed to get the length of array'],
  ['napi_get_element', 2, '{"l":[true,"1"]}', 'failed to get the element of array'],
  ['napi_get_element', 4, '{"n":1}', 'GetArrayType: failed to get the element of array'],
  ['napi_get_element', 6, '{"n":1,"l":["1"]}', 'GetElement: failed to get the elemrnt of array'],
  ['napi_get_named_property', 3, '{"l":[true,"1"]}', 'GetProperty: failed to GetProperty'],
  ['napi_get_value_int32', 1, '{"n":0,"l":[true,"1"]}',
    'GetInt32: failed to get int32 value , so return zero'],
  ['napi_get_value_bool', 2, '{"n":1,"l":[true,"0"]}', 'failed to get bool value'],
]) {
  test(`${name} ${nth} fails: ${line}`, async () => {
    fail({ name, nth });
    const { texts, lines } = await send([{ configKey: 'a', value: some }]);
    const failures = lines.filter((each) => /failed|unknown/.test(each));
    assert.deepEqual({ texts, failures }, { texts: [ofKey('a', text)], failures: [E(line)] });
  });
}

test("an exception of the caller's own getter reaches the caller, and what follows is missing", async () => {
  const own = new Error("the caller's own");
  const get = () => {
    throw own;
  };
  const value = Object.defineProperty({ x: 1, y: 1, z: 1 }, 'y', { get });
  const { texts, thrown, lines } = await send([{ configKey: 'a', value }, { configKey: 'b' }]);
  assert.deepEqual([texts, thrown], [[ofKey('a', '{"x":1}'), ofKey('')], own]);
  assert.deepEqual(lines.slice(0, 8), [
    key('x'), key('y'), E('GetProperty: failed to GetProperty'), key('z'), ...NO_PROPERTY,
    E('GetElement: failed to get the elemrnt of array'), NO_PROPERTY[0],
  ]);
  const command = await run(() => zelk.sendModemLogCommand({ configKey: 'a', value }));
  assert.deepEqual([command.requests.length, command.thrown], [1, own]);
});
