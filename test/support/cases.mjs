// Calls as rows of a table, and the tables of the functions that are twins of each other. A row tells the whole of what
// a call does: what it does not name must not happen.
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { operation as operationOf } from './forms.mjs';
import { fail, identity, keeps, proxyCount, run, service, SYSTEM_APP, withoutFrame, zelk } from './zelk.mjs';

export const E = (text) => `E ZELK_SERVICE: ${text}`;
export const I = (text) => `I ZELK_SERVICE: ${text}`;
export const NO_PROXY = (operation) => `W FRAMEWORK: [${operation}]"get proxy fail."`;
export const EMPTY = (operation) => `W FRAMEWORK: [${operation}]"configs is empty."`;
export const MISMATCH = E('MatchParameters: current type does not match given type');

// A call that is never answered keeps all that it holds.
export const PENDING = { pending: true, kept: { records: 1, works: 1, deferreds: 1 } };
export const FORGOTTEN = { kept: { records: 1, works: 1, references: 1 } };
// The runtime's own message for a missing argument and for a callback that cannot be called.
export const RUNTIME = "the runtime's message";
export const UNCALLABLE = { uncaught: [RUNTIME], ...FORGOTTEN };

// An item, its text for the service, and the lines that making it writes before and on the worker.
export const items = [{ configKey: 'k', value: { on: true, level: 2.9 } }];
export const itemText = '{"configKey":"k","value":{"on":true,"level":2}}';
export const itemLines = [I('BuildChangeConfig: key on'), I('BuildChangeConfig: key level')];
export const textLine = E(`GetJsonParams ostringstream ${itemText}`);

afterEach(() => {
  fail();
  service({});
  identity(SYSTEM_APP);
});

function describe(error) {
  assert.ok(error instanceof Error);
  const message = error.message.replace(/^(Invalid argument|A function was expected)$/, RUNTIME);
  return error.code === undefined ? message : `${error.code}: ${message}`;
}

// Runs zelk[name](...makeArguments(callback)) and compares all there is to see: returned (unless undefined), resolved,
// rejected, pending (of a promise), callback, thrown, uncaught, requests, lines (any, when not named), kept.
export async function sees(name, makeArguments, expected) {
  const { kept = {}, lines, ...visible } = expected;
  const seen = await keeps(kept, () => run((callback) => zelk[name](...makeArguments(callback))));
  const outcome = {
    ...('resolved' in seen && { resolved: seen.resolved }),
    ...('rejected' in seen && { rejected: seen.rejected }),
    ...(seen.pending && { pending: true }),
    ...(seen.returned !== undefined && !(seen.returned instanceof Promise) && { returned: seen.returned }),
    ...(seen.thrown && { thrown: describe(seen.thrown) }),
    ...(seen.callback.length > 0 && { callback: seen.callback }),
    ...(seen.uncaught.length > 0 && { uncaught: seen.uncaught.map(describe) }),
    ...(seen.requests.length > 0 && { requests: seen.requests }),
  };
  const row = `${name}: ${makeArguments}`;
  assert.deepEqual(outcome, visible, row);
  if (lines) {
    assert.deepEqual(withoutFrame(seen.lines), lines, row);
  }
  for (const line of seen.lines.filter((text) => text.includes('workName'))) {
    assert.equal(line, I(`HandleAsyncWork: workName = [${operationOf(name)}]`));
  }
  return seen;
}

// Nobody but a system application gets in, whatever the arguments; `lines` is what such a call writes.
export function gateTest(name, lines) {
  test(`${name} serves system applications only`, async () => {
    for (const token of ['1', '0xffffffff']) {
      identity(token);
      for (const makeArguments of [() => [], (callback) => [true, callback], (callback) => [[], callback, 1, 2, 3]]) {
        await sees(name, makeArguments, { lines });
      }
    }
  });
}

// The switches. `texts`: configUndefined, state (before the number of a boolean; null when that is not logged), empty
// (the lines about an empty list). `sendsItems`, `answer`: what becomes of the items and of the service's `true`.
export function switchTests(name, texts, { sendsItems, answer }) {
  const operation = operationOf(name);
  const state = (on) => (texts.state ? [E(`${texts.state}, ${on ? 1 : 0}`)] : []);
  const plain = (on, before = state(on)) => ({ requests: [[operation, on]], lines: [...before, ...texts.empty] });
  const withItems = {
    requests: [sendsItems ? [operation, true, [itemText]] : [operation, true]],
    lines: [...state(true), ...itemLines, ...(sendsItems ? [textLine] : texts.empty)],
  };
  const called = { callback: [[answer]] };
  const promised = { resolved: answer };

  gateTest(name, [E(`${operation}: current app is not system app, so return`)]);

  test(`${name} takes only true as on`, async () => {
    service({ [operation]: { answer: true } });
    await sees(name, () => [true], { ...promised, ...plain(true) });
    service({ [operation]: { answer: false } });
    await sees(name, () => [false], { resolved: false, ...plain(false) });
    for (const value of ['on', 1, undefined, null, {}, [], Object(true), () => true]) {
      await sees(name, () => [value], { resolved: false, ...plain(false, []) });
    }
  });

  test(`${name} takes the callback second and the items last`, async () => {
    service({ [operation]: { answer: true } });
    const configUndefined = { ...plain(true), lines: [...state(true), I(texts.configUndefined), ...texts.empty] };
    for (const [makeArguments, expected] of [
      [() => [true, items], { ...promised, ...withItems }],
      [() => [true, []], { ...promised, ...plain(true) }],
      [() => [true, undefined], { ...promised, ...configUndefined }],
      [(callback) => [true, callback], { ...called, ...plain(true) }],
      [(callback) => [true, callback, items], { ...called, ...withItems }],
      [(callback) => [true, callback, []], { ...called, ...plain(true) }],
      [(callback) => [true, callback, {}], { ...called, ...plain(true) }],
      [(callback) => [true, callback, undefined], { ...called, ...plain(true) }],
      // Anything else in the callback's place is called, in vain.
      [() => [true, 5], { ...UNCALLABLE, ...plain(true) }],
      [() => [true, null], { ...UNCALLABLE, ...plain(true) }],
      [() => [true, {}], { ...UNCALLABLE, ...plain(true) }],
      [(callback) => [true, items, callback], { ...UNCALLABLE, ...plain(true) }],
      [() => [true, undefined, items], { ...UNCALLABLE, ...withItems }],
    ]) {
      await sees(name, makeArguments, expected);
    }
  });

  test(`${name} refuses no arguments and more than three`, async () => {
    await sees(name, () => [], { thrown: RUNTIME, lines: [] });
    await sees(name, (callback) => [true, callback, items, 1], { lines: [E(`${operation}: Illegal params number`)] });
  });
}

// The queries for keys. `executed(code)` and `completed(isEmpty, code)` are lines that only one of the twins writes;
// `rows` tells what becomes of single answers of the service: [text, object, ...lines].
export function keyQueryTests(name, { executed = () => [], completed = () => [] }, rows) {
  const operation = operationOf(name);
  const onlyOne = I(`${operation}: only one param`);
  const done = [...executed(0), ...completed(false, 0)];
  const unanswered = E(`${operation}Callback: callbackConfigs is null`);
  const requests = (...keys) => [[operation, keys]];
  const item = '{"configKey":"a","value":"{\\"on\\":true}"}';
  const found = [{ configKey: 'a', value: { on: true } }, { configKey: 'b', value: {} }];

  gateTest(name, [E(`${operation}: current app is not system app, so return`)]);

  test(`${name} takes keys and a callback`, async () => {
    service({ [operation]: { answer: [item, '{"configKey":"b","value":"{}"}'] } });
    const unreadable = [E('GetString: get len error'), E('GetString: len error')];
    for (const [makeArguments, expected] of [
      [() => [['b', 'a']], { resolved: found, requests: requests('b', 'a'), lines: [onlyOne, ...done] }],
      [() => [[1, '']], { resolved: found, requests: requests('', ''), lines: [...unreadable, onlyOne, ...done] }],
      [(callback) => [['a'], callback], { callback: [[found]], requests: requests('a'), lines: done }],
      ...[7, undefined, null, {}, []].map((second) =>
        [() => [['a'], second], { resolved: found, requests: requests('a'), lines: done }]),
    ]) {
      await sees(name, makeArguments, expected);
    }
  });

  test(`${name} refuses what is no list of keys, and more than two arguments`, async () => {
    const mismatch = [MISMATCH, MISMATCH, E(`${operation}: Illegal params`)];
    await sees(name, () => [], { thrown: RUNTIME, lines: mismatch });
    for (const value of ['a', 1, null, undefined, () => 1, Symbol('s')]) {
      await sees(name, (callback) => [value, callback], { lines: mismatch });
    }
    await sees(name, () => [{}], { lines: [E(`${operation}: error object type oe error array type`)] });
    await sees(name, (callback) => [['a'], callback, 1], { lines: [E(`${operation}: Illegal params num`)] });
  });

  test(`${name} never answers a query that fails or finds nothing`, async () => {
    for (const [answer, code] of [[[item], 9], [[], 9], [[], 0]]) {
      service({ [operation]: { code, answer } });
      const lines = [...executed(code), ...completed(answer.length === 0, code), unanswered];
      await sees(name, () => [['a']], { ...PENDING, requests: requests('a'), lines: [onlyOne, ...lines] });
      await sees(name, (callback) => [['a'], callback], { ...FORGOTTEN, requests: requests('a'), lines });
    }
    service(null);
    await sees(name, () => [['a'], 1],
      { ...PENDING, lines: [NO_PROXY(operation), ...executed(3), ...completed(true, 3), unanswered] });
  });

  test(`${name} sends no empty list of keys`, async () => {
    service({ [operation]: { answer: [item] } });
    await sees(name, () => [[]],
      { ...PENDING, lines: [onlyOne, EMPTY(operation), ...executed(7), ...completed(true, 7), unanswered] });
    assert.equal(proxyCount(), 0);
  });

  test(`${name} gives up the whole answer for a text that it cannot read`, async () => {
    const deep = (text) => text.repeat(2000);
    const inValue = (text) => JSON.stringify({ configKey: 'a', value: text });
    for (const text of [
      'no json', '', '{"configKey":"a"', deep('[') + deep(']'), deep('{"a":') + 1 + deep('}'),
      inValue(deep('[') + deep(']')), inValue('{"a":1,"n":4294967296}'), inValue('{"n":-2147483649}'),
    ]) {
      service({ [operation]: { answer: [item, text, item] } });
      await sees(name, () => [['a'], 1], {
        ...PENDING, requests: requests('a'), lines: [...done, E(`${operation}Callback: Failed to parse json`)],
      });
    }
  });

  test(`${name} makes an object of "value"`, async () => {
    for (const [text, object, ...lines] of rows) {
      service({ [operation]: { answer: [text] } });
      const expected = { resolved: [object], requests: requests('a'), lines: [...done, ...lines] };
      const seen = await sees(name, () => [['a'], 1], expected);
      assert.deepEqual(Object.keys(seen.resolved[0]), Object.keys(object), text);
    }
  });
}

// The changes. `prefix` stands before the refusals' texts; `enter` and `end` are the lines around the arguments.
export function changeTests(name, { prefix, enter = [], end = [] }) {
  const operation = operationOf(name);
  const sent = { requests: [[operation, [itemText]]], lines: [...enter, ...itemLines, ...end, textLine] };

  gateTest(name, [...enter, E(`${operation}: current app is not system app, so return`)]);

  test(`${name} takes items and, of two arguments, a callback`, async () => {
    for (const answer of [true, false]) {
      service({ [operation]: { answer } });
      await sees(name, () => [items], { resolved: answer, ...sent });
      await sees(name, (callback) => [items, callback], { callback: [[answer]], ...sent });
      await sees(name, (callback) => [items, callback, 1], { resolved: answer, ...sent });
      for (const second of ['x', undefined, null, {}]) {
        await sees(name, () => [items, second], { resolved: answer, ...sent });
      }
    }
  });

  test(`${name} refuses what is no list of items`, async () => {
    const mismatch = [...enter, MISMATCH, MISMATCH, E(`${prefix}: Illegal params`)];
    await sees(name, () => [], { thrown: RUNTIME, lines: mismatch });
    for (const value of ['a', 1, null, undefined, () => 1]) {
      await sees(name, (callback) => [value, callback], { lines: mismatch });
    }
    await sees(name, (callback) => [{ a: 1 }, callback], { lines: [...enter, E(`${prefix}: error array type`)] });
  });
  return sent;
}

// The queries that complain and are carried out all the same. `answer` is the service's, `value` what becomes of it.
export function unsupportedTests(name, { answer, value }) {
  const operation = operationOf(name);
  const message = `${operation} current function not support in current time`;
  const unmatched = [MISMATCH, I('current paramCount is zero, so return true')];
  const asked = { thrown: `6: ${message}`, requests: [[operation]] };

  gateTest(name, [E(`${operation}: current app is not system app, so return`)]);

  test(`${name} throws that it is not supported, and answers all the same`, async () => {
    service({ [operation]: { answer } });
    for (const [makeArguments, expected] of [
      [(callback) => [callback], { ...asked, callback: [[value]], lines: [] }],
      // The promise is out of reach, and yet settled: nothing is kept.
      [() => [], { ...asked, lines: unmatched }],
      [() => [7], { ...asked, lines: unmatched }],
      [(callback) => [7, callback], { ...asked, lines: unmatched }],
      [(callback) => [callback, 7], { ...asked, lines: [] }],
    ]) {
      await sees(name, makeArguments, expected);
    }
    fail({ name: 'napi_throw_error', nth: 1 });
    await sees(name, () => [0], {
      resolved: value, requests: [[operation]],
      lines: [E(`failed to throw error, code = 6, msg=${message}`), ...unmatched],
    });
  });

  test(`${name} never answers a query that fails`, async () => {
    const unanswered = E(`${operation}Callback: callbackConfigs is null`);
    const promise = { ...asked, kept: PENDING.kept };
    service({ [operation]: { code: 9, answer } });
    await sees(name, () => [], { ...promise, lines: [...unmatched, unanswered] });
    await sees(name, (callback) => [callback], { ...asked, ...FORGOTTEN, lines: [unanswered] });
    service(null);
    await sees(name, (callback) => [callback],
      { thrown: asked.thrown, ...FORGOTTEN, lines: [NO_PROXY(operation), unanswered] });
  });
}
