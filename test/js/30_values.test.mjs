import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { fail, probes, run } from '../support/zelk.mjs';

// napi_valuetype's numbers.
const [UNDEFINED, NULL, BOOLEAN, NUMBER, STRING, SYMBOL, OBJECT, FUNCTION] = [0, 1, 2, 3, 4, 5, 6, 7];
const EXPECTED_OBJECT = [
  'HasProperty: failed HasProperty',
  'GetProperty: this object does not contains this property',
];
const ZERO = 'GetInt32: failed to get int32 value , so return zero';
const NO_BOOL = 'failed to get bool value';
const MIXED = 'GetArrayType: array has different element types';
const NO_ELEMENT = 'GetElement: failed to get the elemrnt of array';
const own = new Error("the caller's own");
const trap = new Proxy({}, {
  has() { throw own; },
  get() { throw own; },
  ownKeys() { throw own; },
});

afterEach(() => fail());

// A thrown value stands in brackets. Lines without level and tag: all are errors.
async function check(cases) {
  for (const [probe, args, expected, lines = [], plan = []] of cases) {
    fail(...plan.map((name) => ({ name, nth: 1 })));
    const seen = await run(() => probes[probe](...args));
    const what = `${probe} ${lines}`;
    if (Object.hasOwn(seen, 'thrown')) {
      assert.deepEqual(expected, [seen.thrown.message], what);
    } else {
      assert.deepEqual(seen.returned, expected, what);
    }
    assert.deepEqual(seen.lines, lines.map((line) => `E ZELK_SERVICE: ${line}`), what);
  }
}

test('scalars fall back to fixed values', () => check([
  ['matchString', ['x'], true],
  ['matchString', [new String('x')], false],
  ['matchString', [], ['Invalid argument']],
  ['matchString', ['x'], ['injected failure'], [], ['napi_typeof']],
  ['getType', [Symbol('s')], SYMBOL],
  ['getType', [() => 0], FUNCTION],
  ['getType', [], UNDEFINED, ['GetType: unknown type']],
  ['isUndefined', [undefined], true],
  ['isUndefined', [null], false],
  ['isUndefined', [], true],
  ['isArray', [[]], true],
  ['isArray', [{ length: 0 }], false],
  ['isArray', [], false, ['IsArray: failed to check array type']],
  ['getBool', [true], true],
  ['getBool', [1], false, [NO_BOOL]],
  ['getInt32', [2.9], 2],
  ['getInt32', [2 ** 32 + 5], 5],
  ['getInt32', [NaN], 0],
  ['getInt32', ['5'], 0, [ZERO]],
  ['getInt64', [2 ** 53], '9007199254740992'],
  ['getInt64', [null], '0', [ZERO]],
]));

test('strings are 1 to 8194 bytes long and end at their first NUL', () => check([
  ['getString', ['x'.repeat(8194)], 'x'.repeat(8194)],
  ['getString', ['é'.repeat(4097)], 'é'.repeat(4097)],
  ['getString', ['x'.repeat(8195)], '', ['GetString: len error']],
  ['getString', ['é'.repeat(4097) + 'x'], '', ['GetString: len error']],
  ['getString', [''], '', ['GetString: len error']],
  ['getString', ['a\0b'], 'a'],
  ['getString', ['\ud800x'], '\ufffdx'],
  ['getString', [7], '', ['GetString: get len error']],
  ['getString', [], '', ['GetString: get len error']],
  ['getString', ['x'], ['injected failure'], [], ['napi_create_string_utf8']],
]));

test('properties come back as they are, undefined included', () => check([
  ['getProperty', [{ a: 1 }, 'a'], 1],
  ['getProperty', [{}, 'a'], undefined],
  ['getProperty', [{}, 'toString'], Object.prototype.toString],
  ['getProperty', [() => 0, 'length'], 0],
  ['getProperty', ['text', 'length'], 'null pointer', EXPECTED_OBJECT],
  ['getProperty', [undefined, 'a'], 'null pointer', EXPECTED_OBJECT],
  ['getProperty', [{ a: 1 }, 'a'], 'null pointer', ['GetProperty: failed to GetProperty'], ['napi_get_named_property']],
  ['getProperty', [trap, 'a'], [own.message], EXPECTED_OBJECT],
  ['getProperty', [{ get a() { throw own; } }, 'a'], [own.message], ['GetProperty: failed to GetProperty']],
  ['getPropertyNames', [{ z: 1, 7: 1, [Symbol('s')]: 1, '': 1 }], ['kept', '7', 'z', ''], ['GetString: len error']],
  ['getPropertyNames', [Object.create({ inherited: 1 }, { own: { value: 1, enumerable: true }, hidden: { value: 1 } })], ['kept', 'own']],
  ['getPropertyNames', [['a', 'b']], ['kept', '0', '1']],
  ['getPropertyNames', ['text'], ['kept'], ['failed to get property names.']],
  ['getPropertyNames', [null], ['kept'], ['failed to get property names.']],
  ['getPropertyNames', [{ a: 1 }], ['kept'], ['failed to get array length'], ['napi_get_array_length']],
  ['getPropertyNames', [{ a: 1, b: 1 }], ['kept', 'b'], ['failed to get the element of array'], ['napi_get_element']],
  ['setProperty', [{}], { name: 'a\0b' }],
  ['setProperty', [{}], ['injected failure'], [], ['napi_create_string_utf8']],
  ['setProperty', [{}], ['injected failure'], [], ['napi_set_named_property']],
]));

test('arrays have one type, and one entry per element that can be fetched', () => check([
  ['getArrayType', [[]], NULL],
  ['getArrayType', [[null, null]], NULL],
  ['getArrayType', [[1, 2]], NUMBER],
  ['getArrayType', [[true]], BOOLEAN],
  ['getArrayType', [['x', 'y']], STRING],
  ['getArrayType', [[[], {}]], OBJECT],
  ['getArrayType', [new Array(3)], UNDEFINED],
  ['getArrayType', [[true, 1, 'x']], UNDEFINED, [MIXED]],
  ['getArrayType', [[1, , 2]], UNDEFINED, [MIXED]], // eslint-disable-line no-sparse-arrays
  ['getArrayType', [{}], UNDEFINED, ['GetArrayType: failed to get the length of array']],
  ['getArrayType', [[1]], UNDEFINED, ['GetArrayType: failed to get the element of array'], ['napi_get_element']],
  ['getArrayType', [[1, 2]], UNDEFINED, ['GetType: unknown type', MIXED], ['napi_typeof']],
  ['getElement', [[5]], 5],
  ['getElement', [], undefined, ['GetElement: array is null']],
  ['getElement', ['x'], undefined, [NO_ELEMENT]],
  ['getInt32s', [[1, 'x', 3]], [7, 1, 0, 3], [ZERO]],
  ['getInt32s', [[1, 2]], [7, 2], [NO_ELEMENT], ['napi_get_element']],
  ['getInt32s', [{}], [7], ['GetArrayLength: failed to get the length of array']],
  ['getBooleans', [[true, 5]], [true, true, false], [NO_BOOL]],
  ['getStrings', [['a', '']], ['kept'], ['GetString: len error']],
]));

test('an error is thrown once, with its code, and a second one is logged', async () => {
  const seen = await run(() => probes.throwError(6));
  assert.deepEqual([seen.thrown.code, seen.thrown.message], ['6', 'message']);
  assert.deepEqual(seen.lines, ['E ZELK_SERVICE: failed to throw error, code = 1, msg=while one is pending']);
});
