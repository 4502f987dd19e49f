// Arbitrary values as arguments and arbitrary texts as replies: whatever comes, the process lives, nothing hangs, only
// expected errors are seen, and what is not answered is accounted for.
import assert from 'node:assert/strict';
import { after, afterEach, before, test } from 'node:test';
import fc from 'fast-check';
import { answering, operation } from '../support/forms.mjs';
import { held, names, remoteNames, run, service, zelk } from '../support/zelk.mjs';

const NUM_RUNS = Number(process.env.ZELK_HOSTILE_RUNS || 300);

before(() => { // Of promises that are values, or that an error in the call kept from its caller.
  process.removeAllListeners('unhandledRejection');
  process.on('unhandledRejection', () => {});
});

// Of the caller's own getters, proxies and callbacks.
class Own extends Error {}
const own = () => {
  throw new Own('own');
};
const TRAPS = ['get', 'has', 'ownKeys', 'getOwnPropertyDescriptor', 'getPrototypeOf'];
function revoked() {
  const { proxy, revoke } = Proxy.revocable([], {});
  revoke();
  return proxy;
}

// Made where they are used: fast-check itself would step into them.
const TRAP_MAKERS = [
  () => Symbol('s'), () => own, () => () => {}, () => class {}, async () => own(), revoked, () => new Proxy([], {}),
  ...TRAPS.map((name) => () => new Proxy([{}], { [name]: own })),
  ...TRAPS.map((name) => () => new Proxy({}, { [name]: own })),
  () => ({ get configKey() { return own(); } }), () => ({ configKey: 'k', get value() { return own(); } }),
  () => ({ configKey: 'k', value: { get x() { return own(); }, y: 1 } }), () => Object.defineProperty([1], 0, { get: own }),
  () => { const loop = []; loop.push(loop); return loop; }, () => { const loop = {}; loop.value = loop; return loop; },
  () => new Array(5000), () => 'x'.repeat(8195), () => '\u{1F600}'.repeat(2049), () => '\0', () => '\ud800',
  () => Object.create(null), () => new String('x'), () => new Uint8Array(3), () => globalThis, () => Promise.reject(new Own()),
  () => 2n ** 64n, () => -0, () => 1e300,
  () => new Proxy(() => {}, { apply: own }),
];
class Trap {
  constructor(index) {
    this.index = index;
  }
}
const trap = fc.nat({ max: TRAP_MAKERS.length - 1 }).map((index) => new Trap(index));
function withTraps(value) {
  if (value instanceof Trap) {
    return TRAP_MAKERS[value.index]();
  }
  if (Array.isArray(value)) {
    return value.map(withTraps); // Holes stay.
  }
  return value && Object.getPrototypeOf(value) === Object.prototype
    ? Object.fromEntries(Object.entries(value).map(([key, each]) => [key, withTraps(each)])) : value;
}
const anything = fc.anything({ withBigInt: true, withDate: true, withMap: true, withSet: true, withNullPrototype: true,
  withObjectString: true, withTypedArray: true, withSparseArray: true, maxDepth: 3 });
const parameter = fc.oneof(anything, trap, fc.boolean(), fc.string(), fc.array(fc.oneof(fc.boolean(), fc.double(), fc.string())));
const item = fc.record({ configKey: fc.oneof(fc.string(), anything), value: fc.oneof(fc.dictionary(fc.string(), parameter), trap) },
  { requiredKeys: [] });
const argument = fc.oneof(anything, trap, item, fc.array(fc.oneof(item, fc.string(), anything)), fc.boolean());

// Errors that a call may throw, besides those of its values.
const EXPECTED = /^(Invalid argument|.* current function not support in current time)$/;
const isExpected = (error) => error instanceof Own || error === own || EXPECTED.test(error?.message) ||
  (error instanceof TypeError && /revoked|proxy|class constructor/i.test(error.message));

const tried = { calls: 0, replies: 0 };
after(() => console.log(`hostile: ${tried.calls} argument lists, ${tried.replies} replies`));
afterEach(() => service({}));

test('arbitrary arguments', async () => {
  service(answering(names));
  for (const name of names) {
    await fc.assert(fc.asyncProperty(fc.array(argument, { maxLength: 5 }), async (list) => {
      const args = list.map(withTraps);
      tried.calls++;
      const before = held();
      const seen = await run(() => zelk[name](...args));
      const left = held();
      for (const error of [...(seen.thrown === undefined ? [] : [seen.thrown]), ...seen.uncaught]) {
        assert.ok(isExpected(error), `unexpected: ${error}`);
      }
      // Not answered although the service answers: a callback that cannot be called, or an empty list of keys.
      const isUnanswered = seen.uncaught.length > 0 || (/^(get.*|changeTcpdump)Config$/.test(name) && list[0]?.length === 0);
      assert.ok(!seen.pending || isUnanswered, 'the promise settles');
      if (!isUnanswered) {
        assert.deepEqual(left, before);
      }
      assert.ok(seen.requests.length <= 1);
      assert.ok(seen.requests.every(([asked]) => asked === operation(name)));
    }), { numRuns: NUM_RUNS, errorWithCause: true });
  }
});

const json = fc.json({ maxDepth: 4 });
const bytes = fc.uint8Array({ maxLength: 60 }).map((list) => String.fromCharCode(...list));
const text = fc.oneof(json, bytes, fc.string(), fc.dictionary(fc.string(), fc.jsonValue()).map((value) => JSON.stringify(value)),
  fc.constantFrom('', '5', '[', '[[1]]', '{"a":1}x', '//c\n{}', '{"a":-2147483649}', '{"a":4294967296}', '{"a":1e999}',
    '{"a":"\\u0000b"}', '{"\\u0000":1}', '{"a":1,"a":2}', '{"a":"\\ud800"}', '[1]', 'null', '"x"', '\ufeff{}',
    '['.repeat(1500), '{"a":'.repeat(1500), '{"a":' + '['.repeat(990) + ']'.repeat(990) + '}'));
const spoilt = fc.tuple(text, fc.nat(), fc.integer({ min: 0, max: 255 })).map(([whole, at, byte]) => { // Near-JSON.
  const index = at % (whole.length + 1);
  return whole.slice(0, index) + String.fromCharCode(byte) + whole.slice(index + 1);
});
const value = fc.oneof(text, spoilt);
const reply = fc.oneof(value, fc.record({ configKey: value, value }, { requiredKeys: [] }).map((whole) => JSON.stringify(whole)),
  fc.record({ configKey: fc.jsonValue(), value: fc.jsonValue() }).map((whole) => JSON.stringify(whole)));

// Whether a configuration reply may come to this: items with a text as the key and a value of the type.
const isItems = (items, count, type) => items.length === count && items.every((each) =>
  Object.keys(each).every((key) => key === 'configKey' || key === 'value') && typeof (each.configKey ?? '') === 'string' &&
  typeof each.value === (each.value === undefined ? 'undefined' : type));

const QUERIES = {
  getModemLogConfig: { call: (callback) => zelk.getModemLogConfig(['k'], callback), fits: (seen, count) => isItems(seen, count, 'object') },
  getTcpdumpConfig: { call: (callback) => zelk.getTcpdumpConfig(['k'], callback), fits: (seen, count) => isItems(seen, count, 'object') },
  getModemLogLogMasks: { call: (callback) => zelk.getModemLogLogMasks(callback), fits: (seen, count) => isItems(seen, count, 'string') },
  getModemLogDirectPackConfig: { call: (callback) => zelk.getModemLogDirectPackConfig(callback), fits: (seen) => typeof seen === 'string' },
};

test('arbitrary replies', async () => {
  for (const [name, { call, fits }] of Object.entries(QUERIES)) {
    await fc.assert(fc.asyncProperty(fc.array(reply, { maxLength: 3 }), fc.constantFrom(0, 0, 0, 5, -1), async (texts, code) => {
      tried.replies++;
      const isList = name !== 'getModemLogDirectPackConfig';
      service({ [operation(name)]: { code, latin1: true, answer: isList ? texts.map(toLatin1) : toLatin1(texts.join('')) } });
      const before = held();
      const seen = await run(call);
      assert.deepEqual(seen.uncaught, []);
      assert.equal(held().records - before.records, seen.callback.length === 0 ? 1 : 0);
      if (seen.callback.length === 0) { // With a reason.
        assert.ok(code !== 0 || (isList && (texts.length === 0 || /Failed to parse json/.test(seen.lines.join()))));
      } else {
        assert.ok(fits(seen.callback[0][0], texts.length), JSON.stringify(seen.callback));
      }
    }), { numRuns: NUM_RUNS, errorWithCause: true });
  }
  for (const name of remoteNames) {
    await fc.assert(fc.asyncProperty(fc.oneof(reply, bytes), fc.integer(), async (answer, code) => {
      tried.replies++;
      service({ [operation(name)]: { code, latin1: true, answer: toLatin1(answer) } });
      const seen = await run(() => zelk[name](...{ fetchRemoteDevicesLogs: ['r', 1], getRemoteDevicesList: [] }[name] ?? ['r']));
      const expected = Buffer.from(toLatin1(answer), 'latin1').toString('utf8');
      assert.deepEqual([seen.pending, code === 0 ? seen.resolved : seen.rejected], [false, expected]);
    }), { numRuns: NUM_RUNS, errorWithCause: true });
  }
});

// As one character per byte of UTF-8, unless each character is meant as a byte already.
function toLatin1(characters) {
  return /^[\0-\xff]*$/.test(characters) ? characters : Buffer.from(characters, 'utf8').toString('latin1');
}
