// Random values as arguments and random texts as replies: the process always survives, nothing hangs, only
// expected errors occur, and every call that is not answered is accounted for.
import assert from 'node:assert/strict';
import { before, test } from 'node:test';
import fc from 'fast-check';
import '../support/cases.mjs';
import { answering, forms, operation } from '../support/forms.mjs';
import { leaves, names, NOTHING_LEFT, run, service, zelk } from '../support/zelk.mjs';

const options = { numRuns: Number(process.env.ZELK_HOSTILE_RUNS || 300), errorWithCause: true };
const always = (property, ...values) => fc.assert(fc.asyncProperty(...values, property), options);

before(() => { // Of promises that are values, or that an error in the call kept from its caller.
  process.removeAllListeners('unhandledRejection').on('unhandledRejection', () => {});
});

// Of the caller's own getters, proxies and callbacks.
const OWN = new Error('own');
const own = () => {
  throw OWN;
};
const throwing = (object, key) => Object.defineProperty(object, key, { get: own, enumerable: true });
const loop = (object, key) => Object.assign(object, { [key]: object });
const revoked = Proxy.revocable([], {});
revoked.revoke();

// Created where they are used: fast-check itself would trigger them.
const MAKERS = [
  () => Symbol('s'), () => own, () => () => {}, () => class {}, async () => own(), () => revoked.proxy,
  () => Promise.reject(OWN), () => new Proxy(() => {}, { apply: own }), () => new Proxy([], {}),
  ...['get', 'has', 'ownKeys', 'getOwnPropertyDescriptor', 'getPrototypeOf'].flatMap((name) =>
    [() => new Proxy([{}], { [name]: own }), () => new Proxy({}, { [name]: own })]),
  () => throwing({}, 'configKey'), () => throwing({ configKey: 'k' }, 'value'), () => throwing([1], 0),
  () => ({ configKey: 'k', value: throwing({ y: 1 }, 'x') }), () => loop([], 0), () => loop({}, 'value'),
  () => new Array(5000), () => 'x'.repeat(8195), () => '\0', () => '\u{1F600}'.repeat(2049), () => '\ud800',
  () => Object.create(null), () => new String('x'), () => -0, () => new Uint8Array(3), () => globalThis,
  () => 2n ** 64n, () => 1e300,
];

function made(value) {
  if (MAKERS.includes(value)) {
    return value();
  }
  if (Array.isArray(value)) {
    return value.map(made); // Holes stay.
  }
  if (value && Object.getPrototypeOf(value) === Object.prototype) {
    return Object.fromEntries(Object.entries(value).map(([key, each]) => [key, made(each)]));
  }
  return value;
}

const trap = fc.constantFrom(...MAKERS);
const anything = fc.anything({
  withBigInt: true, withDate: true, withMap: true, withSet: true, withNullPrototype: true,
  withObjectString: true, withTypedArray: true, withSparseArray: true, maxDepth: 3,
});
const scalar = fc.oneof(fc.boolean(), fc.double(), fc.string());
const parameter = fc.oneof(anything, trap, fc.boolean(), fc.string(), fc.array(scalar));
const item = fc.record({
  configKey: fc.oneof(fc.string(), anything), value: fc.oneof(fc.dictionary(fc.string(), parameter), trap),
}, { requiredKeys: [] });
const list = fc.array(fc.oneof(item, fc.string(), anything));
const argument = fc.oneof(anything, trap, item, list, fc.boolean());

// Errors that a call may throw, besides those of its values.
const isExpected = (error) => error === OWN || error === own ||
  /^(Invalid argument|.* current function not support in current time)$/.test(error?.message) ||
  (error instanceof TypeError && /revoked|proxy|class constructor/i.test(error.message));

// Not answered although the service answers: a callback that cannot be called, or an empty list of keys.
function isAnswered(name, values, seen) {
  const isEmpty = /^(get.*|changeTcpdump)Config$/.test(name) && values[0]?.length === 0;
  return seen.uncaught.length === 0 && !isEmpty;
}

async function checkArguments(name, values) {
  service(answering(names));
  const [left, seen] = await leaves(() => run(() => zelk[name](...values.map(made))));
  const errors = [...('thrown' in seen ? [seen.thrown] : []), ...seen.uncaught];
  assert.deepEqual(errors.filter((error) => !isExpected(error)), [], 'no unexpected errors');
  if (isAnswered(name, values, seen)) {
    assert.deepEqual({ pending: !!seen.pending, ...left }, { pending: false, ...NOTHING_LEFT });
  }
  assert.ok(seen.requests.length <= 1, 'one request');
  assert.ok(seen.requests.every(([asked]) => asked === operation(name)), 'its own request');
}

for (const name of names) {
  test(`arbitrary arguments of ${name}`, () =>
    always((values) => checkArguments(name, values), fc.array(argument, { maxLength: 5 })));
}

const json = (arbitrary) => arbitrary.map((value) => JSON.stringify(value));
const text = fc.oneof(fc.json({ maxDepth: 4 }), fc.string(), json(fc.object({ maxDepth: 0 })));
const corrupted = fc.tuple(text, fc.nat(), fc.nat({ max: 255 })).map(([whole, at, byte]) => { // Almost JSON.
  const index = at % (whole.length + 1);
  return whole.slice(0, index) + String.fromCharCode(byte) + whole.slice(index + 1);
});
const value = fc.oneof(text, corrupted);
const anyItem = json(fc.record({ configKey: fc.jsonValue(), value: fc.jsonValue() }));
const reply = fc.oneof(value, json(fc.record({ configKey: value, value }, { requiredKeys: [] })), anyItem);
// As UTF-8, unless each character already stands for a byte.
const toBytes = (text) => Buffer.from(text, /^[\0-\xff]*$/.test(text) ? 'latin1' : 'utf8');

// Whether an item of a configuration reply has at most a text as the key and a value of the type.
const isItem = ({ configKey, value, ...others }, type) => Object.keys(others).length === 0 &&
  ['undefined', 'string'].includes(typeof configKey) && ['undefined', type].includes(typeof value);

async function checkReply(name, type, texts, code) {
  service({ [operation(name)]: { code, answer: texts.map(toBytes) } });
  const [left, { uncaught, callback: [answer], lines }] = await leaves(() => run((callback) =>
    zelk[name](...forms(name, callback).find((args) => args.at(-1) === callback))));
  assert.deepEqual({ uncaught, contexts: left.contexts }, { uncaught: [], contexts: answer ? 0 : 1 });
  if (answer) {
    assert.equal(answer[0].length, texts.length);
    assert.deepEqual(answer[0].filter((each) => !isItem(each, type)), [], 'only items');
  } else {
    assert.ok(code !== 0 || texts.length === 0 || /Failed to parse json/.test(lines), 'with a reason');
  }
}

for (const [name, type] of [
  ['getModemLogConfig', 'object'], ['getTcpdumpConfig', 'object'], ['getModemLogLogMasks', 'string'],
]) {
  test(`arbitrary replies to ${name}`, () =>
    always((texts, code) => checkReply(name, type, texts, code),
      fc.array(reply, { maxLength: 3 }), fc.constantFrom(0, 0, 0, 5, -1)));
}
