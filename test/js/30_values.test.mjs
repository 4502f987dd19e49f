import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E } from '../support/cases.mjs';
import { fail, probes, run } from '../support/zelk.mjs';

// napi_valuetype's numbers.
const [UNDEFINED, NULL, BOOLEAN, NUMBER, STRING, SYMBOL, OBJECT, FUNCTION] = [0, 1, 2, 3, 4, 5, 6, 7];
const NO_PROPERTY = [
  'HasProperty: failed HasProperty', 'GetProperty: this object does not contains this property',
];
const UNREAD_PROPERTY = ['GetProperty: failed to GetProperty'];
const ZERO = ['GetInt32: failed to get int32 value , so return zero'];
const [NO_BOOL, NO_NAMES] = [['failed to get bool value'], ['failed to get property names.']];
const [NO_STRING, LENGTH] = [['GetString: get len error'], ['GetString: len error']];
const MIXED = ['GetArrayType: array has different element types'];
const NO_ELEMENT = ['GetElement: failed to get the elemrnt of array'];
const [INVALID, INJECTED] = [{ thrown: 'Invalid argument' }, { thrown: 'injected failure' }];
const own = new Error("the caller's own");
const throwOwn = () => {
  throw own;
};
const trap = new Proxy({}, { has: throwOwn, get: throwOwn, ownKeys: throwOwn });
const inheriting = Object.create({ inherited: 1 },
  { own: { value: 1, enumerable: true }, hidden: { value: 1 } });
const throwing = Object.defineProperty({}, 'a', { get: throwOwn });

// Per probe: arguments, result, lines, Node-API calls to fail. A thrown value is
// {thrown}. Lines without level and tag: all are errors.
const check = (title, table) => test(title, async () => {
  for (const [probe, rows] of Object.entries(table)) {
    for (const [args, expected, lines = [], ...faults] of rows) {
      fail(...faults.map((fault) => ({ nth: 1, ...(fault.name ? fault : { name: fault }) })));
      const seen = await run(() => probes[probe](...args));
      const result = Object.hasOwn(seen, 'thrown') ? { thrown: seen.thrown.message } : seen.returned;
      assert.deepEqual([result, seen.lines], [expected, lines.map(E)], `${probe} ${lines}`);
    }
  }
});

check('scalars fall back to fixed values', {
  matchString: [
    [['x'], true], [[new String('x')], false], [[], INVALID], [['x'], INJECTED, [], 'napi_typeof'],
    [['x'], { thrown: 'empty error message' }, [], { name: 'napi_typeof', wordless: true }],
  ],
  getType: [[[Symbol('s')], SYMBOL], [[() => 0], FUNCTION], [[], UNDEFINED, ['GetType: unknown type']]],
  isUndefined: [[[undefined], true], [[null], false], [[], true]],
  isArray: [[[[]], true], [[{ length: 0 }], false], [[], false, ['IsArray: failed to check array type']]],
  getBool: [[[true], true], [[1], false, NO_BOOL]],
  getInt32: [[[2.9], 2], [[2 ** 32 + 5], 5], [[NaN], 0], [['5'], 0, ZERO]],
  getInt64: [[[2 ** 53], '9007199254740992'], [[null], '0', ZERO]],
});

check('strings are 1 to 8194 bytes long and end at their first NUL', {
  getString: [
    ...['x'.repeat(8194), 'é'.repeat(4097)].map((text) => [[text], text]),
    ...['x'.repeat(8195), 'é'.repeat(4097) + 'x', ''].map((text) => [[text], '', LENGTH]),
    [['a\0b'], 'a'], [['\ud800x'], '\ufffdx'], [[7], '', NO_STRING], [[], '', NO_STRING],
    [['x'], '', ['failed to get string value'], { name: 'napi_get_value_string_utf8', nth: 2 }],
    [['x'], INJECTED, [], 'napi_create_string_utf8'],
  ],
});

check('properties come back as they are, undefined included', {
  getProperty: [
    [[{ a: 1 }, 'a'], 1], [[{}, 'a'], undefined], [[{}, 'toString'], {}.toString], [[() => 0, 'length'], 0],
    [['text', 'length'], 'null pointer', NO_PROPERTY], [[undefined, 'a'], 'null pointer', NO_PROPERTY],
    [[{ a: 1 }, 'a'], 'null pointer', UNREAD_PROPERTY, 'napi_get_named_property'],
    [[trap, 'a'], { thrown: own.message }, NO_PROPERTY],
    [[throwing, 'a'], { thrown: own.message }, UNREAD_PROPERTY],
  ],
  getPropertyNames: [
    [[{ z: 1, 7: 1, [Symbol('s')]: 1, '': 1 }], ['', '7', 'z', ''], LENGTH], [[inheriting], ['', 'own']],
    [[['a', 'b']], ['', '0', '1']], [['text'], [''], NO_NAMES], [[null], [''], NO_NAMES],
    [[{ a: 1 }], [''], ['failed to get array length'], 'napi_get_array_length'],
    [[{ a: 1, b: 1 }], ['', 'b'], ['failed to get the element of array'], 'napi_get_element'],
  ],
  setProperty: [
    [[{}], { name: 'a\0b' }],
    ...['napi_create_string_utf8', 'napi_set_named_property'].map((fault) => [[{}], INJECTED, [], fault]),
  ],
});

check('arrays have one type, and one entry per element that can be fetched', {
  getArrayType: [
    [[[]], NULL], [[[null, null]], NULL], [[[1, 2]], NUMBER], [[[true]], BOOLEAN], [[['x', 'y']], STRING],
    [[[[], {}]], OBJECT], [[new Array(3)], UNDEFINED], [[[true, 1, 'x']], UNDEFINED, MIXED],
    [[[1, undefined, 2]], UNDEFINED, MIXED],
    [[{}], UNDEFINED, ['GetArrayType: failed to get the length of array']],
    [[[1]], UNDEFINED, ['GetArrayType: failed to get the element of array'], 'napi_get_element'],
    [[[1, 2]], UNDEFINED, ['GetType: unknown type', ...MIXED], 'napi_typeof'],
  ],
  getFirstElement: [
    [[[5]], 5], [[], undefined, ['GetElement: array is null']], [['x'], undefined, NO_ELEMENT],
  ],
  getInt32s: [
    [[[1, 'x', 3]], [0, 1, 0, 3], ZERO], [[[1, 2]], [0, 2], NO_ELEMENT, 'napi_get_element'],
    [[{}], [0], ['GetArrayLength: failed to get the length of array']],
  ],
  getBooleans: [[[[true, 5]], [false, true, false], NO_BOOL]],
  getStrings: [[[['a', '']], [''], LENGTH]],
});

test('an error is thrown once, with its code, and a second one is logged', async () => {
  const { thrown, lines } = await run(() => probes.throwErrors(6));
  assert.deepEqual([thrown.code, thrown.message], ['6', 'message']);
  assert.deepEqual(lines, [E('failed to throw error, code = 1, msg=while one is pending')]);
});
