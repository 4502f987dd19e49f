import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { fail, probes, run } from '../support/zelk.mjs';

afterEach(() => fail());

const LINE = 'E ZELK_SERVICE: ConvertJsonToObject: json parse error';

// A reply's top-level members as properties, in the order in which they were set.
const convert = async (text) => {
  const target = {};
  const seen = await run(() => probes.convertJsonToObject(text, target));
  return { entries: Object.entries(target), lines: seen.lines, returned: seen.returned };
};

test('scalar members are set in byte order of their names, nested ones are left out', async () => {
  for (const [text, entries] of [
    ['{"b":1,"a":"x"}', [['a', 'x'], ['b', 1]]],
    ['{"n":null,"f":1.5,"t":true,"u":4000000000,"i":-2147483648}',
      [['f', 1.5], ['i', -2147483648], ['n', null], ['t', true], ['u', 4000000000]]],
    ['{"m":2147483647,"o":4294967295,"e":1e2,"F":false}', [['F', false], ['e', 100], ['m', 2147483647], ['o', 4294967295]]],
    ['{"arr":[1,2],"obj":{"x":1},"s":"v"}', [['s', 'v']]],
    ['{"a\\u0000b":"c\\u0000d","é":"ü"}', [['a', 'c'], ['é', 'ü']]],
    ['/* comment */ {"a":1} // more', [['a', 1]]],
    ['{"a":1,"a":2}', [['a', 2]]],
    ['{}', []], ['5', []], ['"x"', []], ['[1,{"a":1}]', []], ['null', []],
  ]) {
    const seen = await convert(text);
    assert.deepEqual([seen.entries, seen.lines], [entries, []], text);
  }
});

test('a text that cannot be parsed sets nothing and is logged', async () => {
  for (const text of ['not json', '{"a":1', '{"a":1,}x']) {
    const seen = await convert(text);
    assert.deepEqual([seen.entries, seen.lines], [[], [LINE]], text);
  }
});

test("jsoncpp's own refusals go through, after the members before them", async () => {
  for (const text of ['{"a":1,"b":4294967296}', '{"a":1,"b":-2147483649}']) {
    const seen = await convert(text);
    assert.match(seen.returned, /out of .*range/);
    assert.deepEqual(seen.entries, [['a', 1]]);
  }
  const deep = await convert('['.repeat(2000));
  assert.match(deep.returned, /stackLimit/);
});

test('a member that cannot be made or set is missing', async () => {
  for (const name of ['napi_create_int32', 'napi_set_property']) {
    fail({ name, nth: 1 });
    assert.deepEqual((await convert('{"a":1,"b":2}')).entries, [['b', 2]], name);
  }
});
