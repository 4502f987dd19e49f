// Calls as rows of a table, and the tables of the functions that are twins of each other. A row tells the whole of what
// a call does: what it does not name must not happen.
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { operation as operationOf } from './forms.mjs';
import { fail, identity, keeps, proxyCount, service, SYSTEM_APP, zelk } from './zelk.mjs';

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

export const ANSWERS = [true, false];
export const NO_FUNCTIONS = [42, 'x', undefined, null, {}];
export const NO_OBJECTS = ['a', 1, null, undefined, () => 1, Symbol('s')];

afterEach(() => [fail(), service({}), identity(SYSTEM_APP)]);

export function describe(error) {
  assert.ok(error instanceof Error);
  const message = error.message.replace(/^(Invalid argument|A function was expected)$/, RUNTIME);
  return error.code === undefined ? message : `${error.code}: ${message}`;
}

// The lines of the async frame around a call, which most tests have no interest in.
const FRAME = /^(I ZELK_SERVICE: HandleAsyncWork: (workName = .*|end)|D ZELK_SERVICE: Handle2ValueCallback .*)$/;

// Runs zelk[name](...makeArguments(callback)) and compares all there is to see: resolved, rejected, pending (of a
// promise), callback, thrown, uncaught, requests, lines (any, when not named), kept.
export async function sees(name, makeArguments, { kept, lines, ...expected }) {
  const seen = await keeps(kept, (callback) => zelk[name](...makeArguments(callback)));
  const { lines: allLines, returned, thrown, pending, uncaught, ...outcome } = seen;
  assert.deepEqual({
    ...outcome, uncaught: uncaught.map(describe), ...(pending && { pending }),
    ...('thrown' in seen && { thrown: describe(thrown) }),
    ...(returned !== undefined && !(returned instanceof Promise) && { returned }),
  }, { callback: [], uncaught: [], requests: [], ...expected }, `${name}: ${makeArguments}`);
  if (lines) {
    assert.deepEqual(allLines.filter((line) => !FRAME.test(line)), lines, `${name}: ${makeArguments}`);
  }
  const having = (text) => allLines.filter((line) => line.includes(text));
  having('workName').forEach((line) => assert.equal(line, I(`HandleAsyncWork: workName = [${operationOf(name)}]`)));
  // A service is asked for once per request, and not at all when there is nothing to request.
  assert.equal(proxyCount(), seen.requests.length + having('"get proxy fail."').length);
  return seen;
}

// Rows: what the service replies (null: there is none), the call, what is to be seen, Node-API calls to fail.
export const calls = (title, name, rows) => test(`${name} ${title}`, async () => {
  for (const [reply, makeArguments, expected, ...faults] of rows) {
    service(reply && { [operationOf(name)]: reply });
    fail(...faults.map((fault) => ({ name: fault, nth: 1 })));
    await sees(name, makeArguments, expected);
  }
});

// How a failed call ends: by promise and by callback.
const failedAs = (delivers) => (answer) =>
  (delivers ? [{ rejected: answer }, { callback: [[answer]] }] : [PENDING, FORGOTTEN]);

// The switches. Texts: configUndefined, state (before the number of a boolean, when that is logged), empty (the lines
// about an empty list), failed(code) (those of a failure, which `delivers` or is never answered). `sendsItems`,
// `answer`: what becomes of the items and of the service's `true`.
export function switchTests(name, texts) {
  const { configUndefined, state, empty, failed, delivers, sendsItems = true, answer = true } = texts;
  const operation = operationOf(name);
  const stated = (on) => (state ? [E(`${state}, ${on ? 1 : 0}`)] : []);
  const plain = (on, before = stated(on)) => ({ requests: [[operation, on]], lines: [...before, ...empty] });
  const withItems = (on, before = stated(on)) => ({
    requests: [sendsItems ? [operation, on, [itemText]] : [operation, on]],
    lines: [...before, ...itemLines, ...(sendsItems ? [textLine] : empty)],
  });
  const [yes, called, promised] = [{ answer: true }, { callback: [[answer]] }, { resolved: answer }];
  const undefinedItems = { ...plain(true), lines: [...stated(true), I(configUndefined), ...empty] };

  calls('takes only true as on', name, [
    [yes, () => [true], { ...promised, ...plain(true) }],
    [{ answer: false }, () => [false], { resolved: false, ...plain(false) }],
    ...['on', 1, undefined, null, {}, [], Object(true), () => true].map((value) =>
      [{ answer: false }, () => [value], { resolved: false, ...plain(false, []) }]),
  ]);
  calls('takes the callback second and the items last', name, [
    [yes, () => [true, items], { ...promised, ...withItems(true) }],
    [yes, () => [true, []], { ...promised, ...plain(true) }],
    [yes, () => [true, undefined], { ...promised, ...undefinedItems }],
    [yes, (callback) => [true, callback], { ...called, ...plain(true) }],
    [yes, (callback) => [true, callback, items], { ...called, ...withItems(true) }],
    ...[[], {}, undefined].map((third) => [yes, (callback) => [true, callback, third], { ...called, ...plain(true) }]),
    // Anything else in the callback's place is called, in vain.
    ...[5, null, {}].map((second) => [yes, () => [true, second], { ...UNCALLABLE, ...plain(true) }]),
    [yes, (callback) => [true, items, callback], { ...UNCALLABLE, ...plain(true) }],
    [yes, () => [true, undefined, items], { ...UNCALLABLE, ...withItems(true) }],
    [yes, () => [], { thrown: RUNTIME, lines: [] }],
    [yes, (callback) => [true, callback, items, 1], { lines: [E(`${operation}: Illegal params number`)] }],
  ]);
  const fails = ({ requests, lines }, code = 9) => ({ requests, lines: [...lines, ...failed(code)] });
  const unreached = (lines) => fails({ requests: [], lines: [...lines, NO_PROXY(operation)] }, 3);
  const ends = failedAs(delivers);
  calls(delivers ? 'delivers the boolean of a failure' : 'never answers a failure', name, [
    ...ANSWERS.flatMap((value) => [
      [{ code: 9, answer: value }, () => [true], { ...ends(value)[0], ...fails(plain(true)) }],
      [{ code: 9, answer: value }, () => [0, items], { ...ends(value)[0], ...fails(withItems(false, [])) }],
      [{ code: 9, answer: value }, (callback) => [true, callback], { ...ends(value)[1], ...fails(plain(true)) }],
    ]),
    [null, () => [0], { ...ends(false)[0], ...unreached(empty) }],
    [null, () => [0, items], { ...ends(false)[0], ...unreached(itemLines) }],
  ]);
}

// The queries for keys. `executed(code)` and `completed(isEmpty, code)` are lines that only one of the twins writes;
// `rows` tells what becomes of single answers of the service: [text, object, ...lines].
export function keyQueryTests(name, { executed = () => [], completed = () => [] }, rows) {
  const operation = operationOf(name);
  const onlyOne = I(`${operation}: only one param`);
  const done = [...executed(0), ...completed(false, 0)];
  const asked = (keys, lines = done) => ({ requests: [[operation, keys]], lines });
  const mismatch = [MISMATCH, MISMATCH, E(`${operation}: Illegal params`)];
  const unanswered = (code, isEmpty = true) =>
    [...executed(code), ...completed(isEmpty, code), E(`${operation}Callback: callbackConfigs is null`)];
  const item = '{"configKey":"a","value":"{\\"on\\":true}"}';
  const one = { answer: [item] };
  const both = { answer: [item, '{"configKey":"b","value":"{}"}'] };
  const found = [{ configKey: 'a', value: { on: true } }, { configKey: 'b', value: {} }];
  const unreadable = [E('GetString: get len error'), E('GetString: len error')];

  calls('takes keys and a callback', name, [
    [both, () => [['b', 'a']], { resolved: found, ...asked(['b', 'a'], [onlyOne, ...done]) }],
    [both, () => [[1, '']], { resolved: found, ...asked(['', ''], [...unreadable, onlyOne, ...done]) }],
    [both, (callback) => [['a'], callback], { callback: [[found]], ...asked(['a']) }],
    ...[...NO_FUNCTIONS, []].map((second) => [both, () => [['a'], second], { resolved: found, ...asked(['a']) }]),
    [both, () => [], { thrown: RUNTIME, lines: mismatch }],
    ...NO_OBJECTS.map((value) => [both, (callback) => [value, callback], { lines: mismatch }]),
    [both, () => [{}], { lines: [E(`${operation}: error object type oe error array type`)] }],
    [both, (callback) => [['a'], callback, 1], { lines: [E(`${operation}: Illegal params num`)] }],
  ]);
  calls('never answers a query that fails or finds nothing, and sends no empty list', name, [
    ...[[[item], 9, false], [[], 9], [[], 0]].flatMap(([answer, code, isEmpty]) => [
      [{ code, answer }, () => [['a']], { ...PENDING, ...asked(['a'], [onlyOne, ...unanswered(code, isEmpty)]) }],
      [{ code, answer }, (callback) => [['a'], callback], { ...FORGOTTEN, ...asked(['a'], unanswered(code, isEmpty)) }],
    ]),
    [null, () => [['a'], 1], { ...PENDING, lines: [NO_PROXY(operation), ...unanswered(3)] }],
    [one, () => [[]], { ...PENDING, lines: [onlyOne, EMPTY(operation), ...unanswered(7)] }],
  ]);
  const deep = (text) => text.repeat(2000);
  const inValue = (text) => JSON.stringify({ configKey: 'a', value: text });
  calls('gives up the whole answer for a text that it cannot read', name, [
    'no json', '', '{"configKey":"a"', deep('[') + deep(']'), deep('{"a":') + 1 + deep('}'),
    inValue(deep('[') + deep(']')), inValue('{"a":1,"n":4294967296}'), inValue('{"n":-2147483649}'),
  ].map((text) => [{ answer: [item, text, item] }, () => [['a'], 1],
    { ...PENDING, ...asked(['a'], [...done, E(`${operation}Callback: Failed to parse json`)]) }]));
  test(`${name} makes an object of "value"`, async () => {
    for (const [text, object, ...lines] of rows) {
      service({ [operation]: { answer: [text] } });
      const expected = { resolved: [object], ...asked(['a'], [...done, ...lines]) };
      const { resolved } = await sees(name, () => [['a'], 1], expected);
      assert.deepEqual(Object.keys(resolved[0]), Object.keys(object), text);
    }
  });
}

// The changes. `prefix` stands before the refusals' texts; `enter` and `end` are the lines around the arguments,
// `failed` those of a failure, which `delivers` or is never answered, `empty` those about an empty list.
export function changeTests(name, { prefix, enter = [], end = [], failed = [], empty = [], delivers }) {
  const operation = operationOf(name);
  const sent = { requests: [[operation, [itemText]]], lines: [...enter, ...itemLines, ...end, textLine] };
  const mismatch = [...enter, MISMATCH, MISMATCH, E(`${prefix}: Illegal params`)];
  const ends = failedAs(delivers);

  calls('takes items and, of two arguments, a callback', name, [
    ...ANSWERS.flatMap((answer) => [
      [{ answer }, () => [items], { resolved: answer, ...sent }],
      [{ answer }, (callback) => [items, callback], { callback: [[answer]], ...sent }],
      [{ answer }, (callback) => [items, callback, 1], { resolved: answer, ...sent }],
      ...NO_FUNCTIONS.map((second) => [{ answer }, () => [items, second], { resolved: answer, ...sent }]),
    ]),
    [{}, () => [], { thrown: RUNTIME, lines: mismatch }],
    ...NO_OBJECTS.map((value) => [{}, (callback) => [value, callback], { lines: mismatch }]),
    [{}, (callback) => [{ a: 1 }, callback], { lines: [...enter, E(`${prefix}: error array type`)] }],
  ]);
  const fails = { ...sent, lines: [...sent.lines, ...failed] };
  const unsent = { lines: [...enter, ...end, ...empty, ...failed] };
  calls(`${delivers ? 'delivers the boolean of' : 'never answers'} a failure or an empty list`, name, [
    ...ANSWERS.flatMap((answer) => [
      [{ code: 9, answer }, () => [items], { ...ends(answer)[0], ...fails }],
      [{ code: 9, answer }, (callback) => [items, callback], { ...ends(answer)[1], ...fails }],
    ]),
    [null, () => [items], { ...ends(false)[0], lines: [...sent.lines.slice(0, -1), NO_PROXY(operation), ...failed] }],
    [{ answer: true }, () => [[]], { ...ends(false)[0], ...unsent }],
    [{ answer: true }, (callback) => [[], callback], { ...ends(false)[1], ...unsent }],
  ]);
  return sent;
}

// The queries that complain and are carried out all the same. `answer` is the service's, `value` what becomes of it;
// `rows` are more answers, and what becomes of them for a callback.
export function unsupportedTests(name, { answer, value }, rows) {
  const operation = operationOf(name);
  const message = `${operation} current function not support in current time`;
  const unmatched = [MISMATCH, I('current paramCount is zero, so return true')];
  const asked = (lines) => ({ thrown: `6: ${message}`, requests: [[operation]], lines });
  const unanswered = E(`${operation}Callback: callbackConfigs is null`);
  const failed = { code: 9, answer };

  calls('throws that it is not supported, and answers all the same', name, [
    // The promise is out of reach, and yet settled: nothing is kept.
    ...[[], [7]].map((args) => [{ answer }, () => args, asked(unmatched)]),
    [{ answer }, (callback) => [7, callback], asked(unmatched)],
    [{ answer }, (callback) => [callback], { ...asked([]), callback: [[value]] }],
    [{ answer }, (callback) => [callback, 7], asked([])],
    [{ answer }, () => [0], { resolved: value, requests: [[operation]],
      lines: [E(`failed to throw error, code = 6, msg=${message}`), ...unmatched] }, 'napi_throw_error'],
    ...rows.map(([text, becomes]) => [{ answer: text }, (callback) => [callback], { ...asked([]), ...becomes }]),
  ]);
  calls('never answers a query that fails', name, [
    [failed, () => [], { ...asked([...unmatched, unanswered]), kept: PENDING.kept }],
    [failed, (callback) => [callback], { ...asked([unanswered]), ...FORGOTTEN }],
    [null, (callback) => [callback], { ...asked([NO_PROXY(operation), unanswered]), requests: [], ...FORGOTTEN }],
  ]);
}
