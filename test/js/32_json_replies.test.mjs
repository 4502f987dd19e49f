import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E } from '../support/cases.mjs';
import { fail, probes, run } from '../support/zelk.mjs';

// A reply's top-level members become properties, in the order in which they are set. Rows: text, properties, lines, what
// is returned.
const check = (title, rows, ...faults) => test(title, async () => {
  for (const [text, entries, lines = [], returned = /^\[object/] of rows) {
    fail(...faults);
    const target = {};
    const seen = await run(() => probes.convertJsonToObject(text, target));
    assert.deepEqual([Object.entries(target), seen.lines], [entries, lines], text);
    assert.match(String(seen.returned), returned);
  }
});

check('scalar members are set in byte order of their names, nested ones are left out', [
  ['{"b":1,"a":"x"}', [['a', 'x'], ['b', 1]]],
  ['{"n":null,"f":1.5,"t":true,"u":4000000000,"i":-2147483648}',
    [['f', 1.5], ['i', -2147483648], ['n', null], ['t', true], ['u', 4000000000]]],
  ['{"m":2147483647,"o":4294967295,"e":1e2,"F":0}', [['F', 0], ['e', 100], ['m', 2147483647], ['o', 4294967295]]],
  ['{"arr":[1,2],"obj":{"x":1},"s":"v","t":false}', [['s', 'v'], ['t', false]]],
  ['{"a\\u0000b":"c\\u0000d","é":"ü"}', [['a', 'c'], ['é', 'ü']]],
  ['/* comment */ {"a":1} // more', [['a', 1]]],
  ['{"a":1,"a":2}', [['a', 2]]],
  ...['{}', '5', '"x"', '[1,{"a":1}]', 'null'].map((text) => [text, []]),
]);

check('a text that cannot be parsed sets nothing and is logged',
  ['not json', '{"a":1', '{"a":1,}x'].map((text) => [text, [], [E('ConvertJsonToObject: json parse error')]]));

check("jsoncpp's own refusals go through, after the members before them", [
  ...['4294967296', '-2147483649'].map((number) => [`{"a":1,"b":${number}}`, [['a', 1]], [], /out of .*range/]),
  ['['.repeat(2000), [], [], /stackLimit/],
]);

for (const name of ['napi_create_int32', 'napi_set_property']) {
  check(`a member that fails in ${name} is missing`, [['{"a":1,"b":2}', [['b', 2]]]], { name, nth: 1 });
}
