// Calls as rows of a table, and the tables that similar functions share. A row lists everything that a call
// does: anything it does not name must not happen.
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { setCaller } from 'zelklogservice/testing';
import { operation as operationOf } from './forms.mjs';
import { fail, keeps, service, zelk } from './zelk.mjs';

export const E = (text) => `E ZELK_SERVICE: ${text}`;
export const I = (text) => `I ZELK_SERVICE: ${text}`;
export const W = (text) => `W FRAMEWORK: ${text}`;
export const MISMATCH = E('MatchParameters: current type does not match given type');

// What the service does.
export const YES = { answer: true };
export const NO = { answer: false };
export const FAILS = { code: 9, answer: true };
export const FAILS_NO = { code: 9, answer: false };
export const AWAY = null;

// What JavaScript sees. A call that is never answered keeps everything that it holds.
export const REFUSED = {};
export const PENDING = { pending: true, kept: { contexts: 1, works: 1, deferreds: 1 } };
export const FORGOTTEN = { kept: { contexts: 1, works: 1, references: 1 } };
// The runtime's own message for a missing argument and for a callback that cannot be called.
const RUNTIME = "the runtime's message";
export const THROWS = { thrown: RUNTIME };
export const UNCALLABLE = { uncaught: [RUNTIME], ...FORGOTTEN };

// An item, its text for the service, and the lines that making it writes before and on the worker.
export const ITEMS = [{ configKey: 'k', value: { on: true, level: 2.9 } }];
export const TEXT = '{"configKey":"k","value":{"on":true,"level":2}}';
export const READ = [I('BuildChangeConfig: key on'), I('BuildChangeConfig: key level')];
export const WRITTEN = E(`GetJsonParams ostringstream ${TEXT}`);

export const NO_FUNCTIONS = [42, 'x', undefined, null, {}];
export const NO_OBJECTS = ['a', 1, null, undefined, () => 1, Symbol('s')];

afterEach(() => {
  fail();
  service({});
  setCaller(null);
});

export function describe(error) {
  assert.ok(error instanceof Error);
  const message = error.message.replace(/^(Invalid argument|A function was expected)$/, RUNTIME);
  return error.code === undefined ? message : `${error.code}: ${message}`;
}

// The lines of the async frame around a call, which most tests ignore.
const FRAME = /^. ZELK_SERVICE: (HandleAsyncWork: (workName = .*|end)|Handle2ValueCallback .*)$/;

// Runs zelk[name](...makeArguments(callback)) and compares all there is to see: resolved, rejected, pending
// (of a promise), callback, thrown, uncaught, kept; then the requests and, when named, the lines.
export async function expectCall(name, makeArguments, { kept, ...sees }, requests, lines) {
  const seen = await keeps(kept, (callback) => zelk[name](...makeArguments(callback)));
  const { lines: allLines, requests: asked, returned, thrown, pending, uncaught, ...outcome } = seen;
  const what = `${name}: ${makeArguments}`;
  assert.deepEqual({
    ...outcome,
    uncaught: uncaught.map(describe),
    ...(pending && { pending }),
    ...('thrown' in seen && { thrown: describe(thrown) }),
    ...(returned !== undefined && !(returned instanceof Promise) && { returned }),
  }, { callback: [], uncaught: [], ...sees }, what);
  assert.deepEqual(asked, requests, what);
  if (lines) {
    assert.deepEqual(allLines.filter((line) => !FRAME.test(line)), lines, what);
  }
  for (const line of allLines.filter((each) => each.includes('workName'))) {
    assert.equal(line, I(`HandleAsyncWork: workName = [${operationOf(name)}]`));
  }
  return seen;
}

// Rows: what the service does; arguments; what JavaScript sees; requests; lines; Node-API calls to fail.
export const calls = (title, name, rows) => test(`${name} ${title}`, async () => {
  for (const [reply, makeArguments, sees, requests, lines, ...faults] of rows) {
    service(reply && { [operationOf(name)]: reply });
    fail(...faults.map((fault) => ({ name: fault, nth: 1 })));
    await expectCall(name, makeArguments, sees, requests, lines);
  }
});

// The switches. `yes` is what JavaScript gets for the first of the service's `answers`; `sent` is what goes
// with the items: the rest of the request, and the lines. The other names are lines: `on` and `off` about a
// boolean, `undefinedItems` about `undefined` in the items' place, `noItems` about a request without items.
export function switchTests(name, {
  answers: [yea, nay] = [YES, NO], yes = true, sent, on = [], off = [], undefinedItems, noItems = [],
}) {
  const op = operationOf(name);
  calls('takes only true as on', name, [
    [yea, () => [true], { resolved: yes }, [[op, true]], [...on, ...noItems]],
    [nay, () => [false], { resolved: false }, [[op, false]], [...off, ...noItems]],
    ...['on', 1, undefined, null, {}, [], Object(true), () => true].map((value) =>
      [nay, () => [value], { resolved: false }, [[op, false]], noItems]),
  ]);
  const withItems = [[op, true, ...sent.items]];
  calls('takes the callback second and the items last', name, [
    [yea, () => [true, ITEMS], { resolved: yes }, withItems, [...on, ...READ, ...sent.lines]],
    [yea, () => [true, []], { resolved: yes }, [[op, true]], [...on, ...noItems]],
    [yea, () => [true, undefined], { resolved: yes }, [[op, true]], [...on, undefinedItems, ...noItems]],
    [yea, (cb) => [true, cb], { callback: [[yes]] }, [[op, true]], [...on, ...noItems]],
    [yea, (cb) => [true, cb, ITEMS], { callback: [[yes]] }, withItems, [...on, ...READ, ...sent.lines]],
    ...[[], {}, undefined].map((third) =>
      [yea, (cb) => [true, cb, third], { callback: [[yes]] }, [[op, true]], [...on, ...noItems]]),
    // Anything else in the callback's place is called, which fails.
    ...[5, null, {}].map((second) =>
      [yea, () => [true, second], UNCALLABLE, [[op, true]], [...on, ...noItems]]),
    [yea, (cb) => [true, ITEMS, cb], UNCALLABLE, [[op, true]], [...on, ...noItems]],
    [yea, () => [true, undefined, ITEMS], UNCALLABLE, withItems, [...on, ...READ, ...sent.lines]],
    [yea, () => [], THROWS, [], []],
    [yea, (cb) => [true, cb, ITEMS, 1], REFUSED, [], [E(`${op}: Illegal params number`)]],
  ]);
}

// The queries for keys. `log`: the lines about a code, and whether the answer is empty - whether it failed.
export function keyQueryTests(name, log) {
  const op = operationOf(name);
  const done = log(0, '0 - 0');
  const nothing = E(`${op}Callback: callbackConfigs is null`);
  const one = I(`${op}: only one param`);
  const item = '{"configKey":"a","value":"{\\"on\\":true}"}';
  const both = { answer: [item, '{"configKey":"b","value":"{}"}'] };
  const found = [{ configKey: 'a', value: { on: true } }, { configKey: 'b', value: {} }];
  const mismatch = [MISMATCH, MISMATCH, E(`${op}: Illegal params`)];
  const unread = [E('GetString: get len error'), E('GetString: len error')];

  calls('takes keys and a callback', name, [
    [both, () => [['b', 'a']], { resolved: found }, [[op, ['b', 'a']]], [one, ...done]],
    [both, () => [[1, '']], { resolved: found }, [[op, ['', '']]], [...unread, one, ...done]],
    [both, (cb) => [['a'], cb], { callback: [[found]] }, [[op, ['a']]], done],
    ...[...NO_FUNCTIONS, []].map((second) =>
      [both, () => [['a'], second], { resolved: found }, [[op, ['a']]], done]),
    [both, () => [], THROWS, [], mismatch],
    ...NO_OBJECTS.map((value) => [both, (cb) => [value, cb], REFUSED, [], mismatch]),
    [both, () => [{}], REFUSED, [], [E(`${op}: error object type oe error array type`)]],
    [both, (cb) => [['a'], cb, 1], REFUSED, [], [E(`${op}: Illegal params num`)]],
  ]);
  calls('never answers a query that fails or finds nothing, and sends no empty list', name, [
    [{ code: 9, answer: [item] }, () => [['a']], PENDING, [[op, ['a']]],
      [one, ...log(9, '0 - 1'), nothing]],
    [{ code: 9, answer: [] }, () => [['a']], PENDING, [[op, ['a']]],
      [one, ...log(9, '1 - 1'), nothing]],
    [{ code: 0, answer: [] }, () => [['a']], PENDING, [[op, ['a']]],
      [one, ...log(0, '1 - 0'), nothing]],
    [AWAY, () => [['a'], 1], PENDING, [], [W(`[${op}]"get proxy fail."`), ...log(3, '1 - 1'), nothing]],
    [both, () => [[]], PENDING, [], [one, W(`[${op}]"configs is empty."`), ...log(7, '1 - 1'), nothing]],
  ]);
  const deep = (text) => text.repeat(2000);
  const inValue = (text) => JSON.stringify({ configKey: 'a', value: text });
  calls('abandons the whole answer if it cannot read one of its texts', name, [
    'no json', '', '{"configKey":"a"', deep('[') + deep(']'), deep('{"a":') + 1 + deep('}'),
    inValue(deep('[') + deep(']')), inValue('{"a":1,"n":4294967296}'), inValue('{"n":-2147483649}'),
  ].map((text) => [{ answer: [item, text, item] }, () => [['a'], 1], PENDING, [[op, ['a']]],
    [...done, E(`${op}Callback: Failed to parse json`)]]));
}

// How single answers are read. Rows: text; object, its properties in the order of their setting; lines.
export const answerTests = (name, rows, ...faults) => test(`${name} reads an answer`, async () => {
  const op = operationOf(name);
  for (const [text, object, ...lines] of rows) {
    service({ [op]: { answer: [text] } });
    fail(...faults);
    const sees = { resolved: [object] };
    const { resolved } = await expectCall(name, () => [['a'], 1], sees, [[op, ['a']]], lines);
    assert.equal(JSON.stringify(resolved), JSON.stringify([object]), text);
  }
});

// The changes. `refused` begins the refusals; `enter` and `end` are lines around reading the arguments.
export function changeTests(name, { refused, enter = [], end = [] }) {
  const op = operationOf(name);
  const mismatch = [...enter, MISMATCH, MISMATCH, E(`${refused}: Illegal params`)];
  const sent = [...enter, ...READ, ...end, WRITTEN];
  calls('takes items and, of two arguments, a callback', name, [
    [YES, () => [ITEMS], { resolved: true }, [[op, [TEXT]]], sent],
    [NO, () => [ITEMS], { resolved: false }, [[op, [TEXT]]], sent],
    [YES, (cb) => [ITEMS, cb], { callback: [[true]] }, [[op, [TEXT]]], sent],
    [YES, (cb) => [ITEMS, cb, 1], { resolved: true }, [[op, [TEXT]]], sent],
    ...NO_FUNCTIONS.map((second) => [YES, () => [ITEMS, second], { resolved: true }, [[op, [TEXT]]], sent]),
    [YES, () => [], THROWS, [], mismatch],
    ...NO_OBJECTS.map((value) => [YES, (cb) => [value, cb], REFUSED, [], mismatch]),
    [YES, (cb) => [{ a: 1 }, cb], REFUSED, [], [...enter, E(`${refused}: error array type`)]],
  ]);
}

// The queries that throw and are carried out all the same; `value` is made from the service's `answer`.
export function unsupportedTests(name, { answer, value }) {
  const op = operationOf(name);
  const message = `${op} current function not support in current time`;
  const complains = { thrown: `6: ${message}` };
  const unmatched = [MISMATCH, I('current paramCount is zero, so return true')];
  const unanswered = E(`${op}Callback: callbackConfigs is null`);
  const failed = { code: 9, answer };
  calls('throws that it is not supported, and answers all the same', name, [
    // The caller does not get the promise, but it is settled: nothing is kept.
    [{ answer }, () => [], complains, [[op]], unmatched],
    [{ answer }, () => [7], complains, [[op]], unmatched],
    [{ answer }, (cb) => [7, cb], complains, [[op]], unmatched],
    [{ answer }, (cb) => [cb], { ...complains, callback: [[value]] }, [[op]], []],
    [{ answer }, (cb) => [cb, 7], complains, [[op]], []],
    [{ answer }, () => [0], { resolved: value }, [[op]],
      [E(`failed to throw error, code = 6, msg=${message}`), ...unmatched], 'napi_throw_error'],
  ]);
  calls('never answers a query that fails', name, [
    [failed, () => [], { ...complains, kept: PENDING.kept }, [[op]], [...unmatched, unanswered]],
    [AWAY, (cb) => [cb], { ...complains, ...FORGOTTEN }, [], [W(`[${op}]"get proxy fail."`), unanswered]],
  ]);
  // Rows: an answer, and what the callback receives; or nothing, and a line.
  return (rows) => calls('reads an answer', name, rows.map(([text, received, ...lines]) => {
    const sees = lines.length > 0 ? FORGOTTEN : { callback: [[received]] };
    return [{ answer: text }, (cb) => [cb], { ...complains, ...sees }, [[op]], lines];
  }));
}
