// Arbitrary values as arguments and arbitrary texts as replies: whatever comes, the process lives, nothing
// hangs, only expected errors are seen, and what is not answered is accounted for.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import fc from 'fast-check';
import '../support/cases.mjs';
import { answering, forms, operation } from '../support/forms.mjs';
import { leaves, names, remoteNames, run, service, zelk } from '../support/zelk.mjs';

const options = { numRuns: Number(process.env.ZELK_HOSTILE_RUNS || 300), errorWithCause: true };
const tried = { calls: 0, replies: 0 };
const always = (property, ...values) => fc.assert(fc.asyncProperty(...values, property), options);

before(() => { // Of promises that are values, or that an error in the call kept from its caller.
  process.removeAllListeners('unhandledRejection').on('unhandledRejection', () => {});
});
after(() => console.log(`hostile: ${tried.calls} argument lists, ${tried.replies} replies`));

// Of the caller's own getters, proxies and callbacks.
class Own extends Error {}
const own = () => { throw new Own('own'); };
const revoked = ({ proxy, revoke } = Proxy.revocable([], {})) => (revoke(), proxy);
const loop = (object, key) => Object.assign(object, { [key]: object });

// Made where they are used: fast-check itself would step into them.
class Trap {
  static MAKERS = [
    () => Symbol('s'), () => own, () => () => {}, () => class {}, async () => own(), revoked, () => new Proxy([], {}),
    ...['get', 'has', 'ownKeys', 'getOwnPropertyDescriptor', 'getPrototypeOf'].flatMap((name) =>
      [() => new Proxy([{}], { [name]: own }), () => new Proxy({}, { [name]: own })]),
    () => ({ get configKey() { return own(); } }), () => ({ configKey: 'k', get value() { return own(); } }),
    () => ({ configKey: 'k', value: { get x() { return own(); }, y: 1 } }), () => loop([], 0), () => loop({}, 'value'),
    () => Object.defineProperty([1], 0, { get: own }), () => Promise.reject(new Own()),
    () => new Proxy(() => {}, { apply: own }), () => new Array(5000), () => 'x'.repeat(8195), () => '\0',
    () => '\u{1F600}'.repeat(2049), () => '\ud800', () => Object.create(null), () => new String('x'), () => -0,
    () => new Uint8Array(3), () => globalThis, () => 2n ** 64n, () => 1e300,
  ];

  constructor(index) { this.index = index; }
}
function withTraps(value) {
  if (value instanceof Trap) {
    return Trap.MAKERS[value.index]();
  }
  if (Array.isArray(value)) {
    return value.map(withTraps); // Holes stay.
  }
  return value && Object.getPrototypeOf(value) === Object.prototype
    ? Object.fromEntries(Object.entries(value).map(([key, each]) => [key, withTraps(each)]))
    : value;
}
const trap = fc.nat({ max: Trap.MAKERS.length - 1 }).map((index) => new Trap(index));
const anything = fc.anything({ withBigInt: true, withDate: true, withMap: true, withSet: true, withNullPrototype: true,
  withObjectString: true, withTypedArray: true, withSparseArray: true, maxDepth: 3 });
const scalar = fc.oneof(fc.boolean(), fc.double(), fc.string());
const parameter = fc.oneof(anything, trap, fc.boolean(), fc.string(), fc.array(scalar));
const item = fc.record({ configKey: fc.oneof(fc.string(), anything),
  value: fc.oneof(fc.dictionary(fc.string(), parameter), trap) }, { requiredKeys: [] });
const argument = fc.oneof(anything, trap, item, fc.array(fc.oneof(item, fc.string(), anything)), fc.boolean());

// Errors that a call may throw, besides those of its values.
const isExpected = (error) => error instanceof Own || error === own ||
  /^(Invalid argument|.* current function not support in current time)$/.test(error?.message) ||
  (error instanceof TypeError && /revoked|proxy|class constructor/i.test(error.message));

for (const name of names) {
  test(`arbitrary arguments of ${name}`, () => always(async (list) => {
    tried.calls++;
    service(answering(names));
    const args = list.map(withTraps);
    const [left, seen] = await leaves(() => run(() => zelk[name](...args)));
    for (const error of [...('thrown' in seen ? [seen.thrown] : []), ...seen.uncaught]) {
      assert.ok(isExpected(error), `unexpected: ${error}`);
    }
    // Not answered although the service answers: a callback that cannot be called, or an empty list of keys.
    if (!seen.uncaught.length && !(/^(get.*|changeTcpdump)Config$/.test(name) && list[0]?.length === 0)) {
      assert.deepEqual([!!seen.pending, ...Object.values(left)], [false, 0, 0, 0, 0], 'settled, nothing is kept');
    }
    assert.ok(seen.requests.length <= 1 && seen.requests.every(([asked]) => asked === operation(name)));
  }, fc.array(argument, { maxLength: 5 })));
}

const bytes = fc.uint8Array({ maxLength: 60 }).map((list) => String.fromCharCode(...list));
const json = (value) => value.map((whole) => JSON.stringify(whole));
const text = fc.oneof(fc.json({ maxDepth: 4 }), bytes, fc.string(), json(fc.dictionary(fc.string(), fc.jsonValue())),
  fc.constantFrom('', '5', '[', '[[1]]', '{"a":1}x', '//c\n{}', '{"a":-2147483649}', '{"a":4294967296}', '{"a":1e999}',
    '{"a":"\\u0000b"}', '{"\\u0000":1}', '{"a":1,"a":2}', '{"a":"\\ud800"}', '[1]', 'null', '"x"', '\ufeff{}',
    '['.repeat(1500), '{"a":'.repeat(1500), '{"a":' + '['.repeat(990) + ']'.repeat(990) + '}'));
const spoilt = fc.tuple(text, fc.nat(), fc.integer({ min: 0, max: 255 })).map(([whole, at, byte]) => { // Near-JSON.
  const index = at % (whole.length + 1);
  return whole.slice(0, index) + String.fromCharCode(byte) + whole.slice(index + 1);
});
const value = fc.oneof(text, spoilt);
const reply = fc.oneof(value, json(fc.record({ configKey: value, value }, { requiredKeys: [] })),
  json(fc.record({ configKey: fc.jsonValue(), value: fc.jsonValue() })));
// As UTF-8, unless each character is meant as a byte already.
const toBytes = (text) => Buffer.from(text, /^[\0-\xff]*$/.test(text) ? 'latin1' : 'utf8');

// Whether a configuration reply may come to this: items with a text as the key and a value of the type.
const isItems = (type) => (items, count) => items.length === count && items.every((each) =>
  Object.keys(each).every((key) => /^(configKey|value)$/.test(key)) && typeof (each.configKey ?? '') === 'string' &&
  typeof each.value === (each.value === undefined ? 'undefined' : type));
const FITS = { getModemLogConfig: isItems('object'), getTcpdumpConfig: isItems('object'),
  getModemLogLogMasks: isItems('string'), getModemLogDirectPackConfig: (answer) => typeof answer === 'string' };

for (const [name, fits] of Object.entries(FITS)) {
  const isList = name !== 'getModemLogDirectPackConfig';
  test(`arbitrary replies to ${name}`, () => always(async (texts, code) => {
    tried.replies++;
    const answers = isList ? texts.map(toBytes) : toBytes(texts.join(''));
    service({ [operation(name)]: { code, answer: answers } });
    const [left, { uncaught, callback: [answer], lines }] = await leaves(() => run((callback) =>
      zelk[name](...forms(name, callback).find((args) => args.at(-1) === callback))));
    assert.deepEqual([uncaught, left.records], [[], answer ? 0 : 1]);
    assert.ok(answer ? fits(answer[0], texts.length) // Or with a reason.
      : code !== 0 || (isList && (texts.length === 0 || /Failed to parse json/.test(lines))), JSON.stringify(answer));
  }, fc.array(reply, { maxLength: 3 }), fc.constantFrom(0, 0, 0, 5, -1)));
}
for (const name of remoteNames) {
  test(`arbitrary replies to ${name}`, () => always(async (answer, code) => {
    tried.replies++;
    service({ [operation(name)]: { code, answer: toBytes(answer) } });
    const seen = await run(() => zelk[name](...forms(name)[0]));
    assert.deepEqual([seen.pending, code === 0 ? seen.resolved : seen.rejected],
      [false, toBytes(answer).toString()]);
  }, fc.oneof(reply, bytes), fc.integer()));
}
