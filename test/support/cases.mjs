// Calls as rows of tables. A row says what goes into a call and all that can be seen of it; what it does not
// name must not happen. Each row becomes a test of its own.
//
// args     the arguments; CALLBACK stands for a function that records its calls
// service  what the service does, see below; YES unless the row says otherwise
// faults   the Node-API calls that fail, see control.h
// request  the arguments of the only request
// lines    the log, apart from the lines that frame every call
// kept     what stays allocated
// resolved, rejected, pending (a promise), callback (the arguments of its calls), thrown, uncaught: what
//          JavaScript sees; nothing but `undefined` when the call is refused
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { inspect } from 'node:util';
import { setCaller } from 'zelklogservice/testing';
import { operation } from './forms.mjs';
import { fail, leaves, NOTHING_LEFT, run, service, zelk } from './zelk.mjs';

export const E = (text) => `E ZELK_SERVICE: ${text}`;
export const I = (text) => `I ZELK_SERVICE: ${text}`;
export const W = (text) => `W FRAMEWORK: ${text}`;
export const MISMATCH = E('MatchParameters: current type does not match given type');
export const NO_PROPERTY = [
  E('HasProperty: failed HasProperty'), E('GetProperty: this object does not contains this property'),
];
export const noService = (op) => W(`[${op}]"get proxy fail."`);
export const emptyList = (op) => W(`[${op}]"configs is empty."`);
export const NOT_ARRAY = [
  E('IsArray: failed to check array type'), E('FillConfigInfoVector: value is not array'),
];
export const UNREADABLE = E('ConvertJsonToObject: json parse error');

export const CALLBACK = { [inspect.custom]: () => 'callback' };

// What the service does.
export const YES = { answer: true };
export const NO = { answer: false };
export const FAILS = { code: 9, answer: true };
export const AWAY = null;

// What JavaScript sees. A call that is never answered keeps everything that it holds.
export const PENDING = { pending: true, kept: { contexts: 1, works: 1, deferreds: 1 } };
export const FORGOTTEN = { kept: { contexts: 1, works: 1, references: 1 } };
// The message of a fault; the runtime's own, for a missing argument and a callback that cannot be called.
export const INJECTED = 'injected failure';
export const RUNTIME = "the runtime's message";
export const THROWS = { thrown: RUNTIME };
export const UNCALLABLE = { uncaught: [RUNTIME], ...FORGOTTEN };

// An item, its text for the service, and the lines logged as it is read and, on the worker, as it is written.
export const ITEMS = [{ configKey: 'k', value: { on: true, level: 2.9 } }];
export const TEXT = '{"configKey":"k","value":{"on":true,"level":2}}';
export const READ = [I('BuildChangeConfig: key on'), I('BuildChangeConfig: key level')];
export const WRITTEN = E(`GetJsonParams ostringstream ${TEXT}`);

// The first argument has no type when it is looked at for the second time.
export const UNTYPED = { name: 'napi_typeof', nth: 2, dataless: true };

export const NO_FUNCTIONS = [42, 'x', undefined, null, {}];
export const NO_OBJECTS = ['a', 1, null, undefined, () => 1, Symbol('s')];

afterEach(() => {
  fail();
  service({});
  setCaller(null);
});

export const show = (value) =>
  inspect(value, { breakLength: Infinity, compact: true, depth: 4, maxArrayLength: 3, maxStringLength: 70 });

// What goes into the call. `service: null` is none.
const titleOf = (name, row) => ['args', 'service', 'faults'].filter((key) => key in row)
  .reduce((title, key) => `${title} ${key} ${show(row[key])}`, `${name}:`);

export function describe(error) {
  assert.ok(error instanceof Error);
  const message = error.message.replace(/^(Invalid argument|A function was expected)$/, RUNTIME);
  return error.code === undefined ? message : `${error.code}: ${message}`;
}

// The lines of the async frame around a call, which most tests ignore.
const isFrame = (line, op) => line === I(`HandleAsyncWork: workName = [${op}]`) ||
  line === I('HandleAsyncWork: end') || line.startsWith('D ZELK_SERVICE: Handle2ValueCallback ');

// What `run` and `leaves` saw of a call, as a row describes it.
function observed({ returned, uncaught, lines, ...seen }, kept, op) {
  return {
    ...seen,
    ...('thrown' in seen && { thrown: describe(seen.thrown) }),
    returned: returned instanceof Promise ? 'a promise' : returned,
    uncaught: uncaught.map(describe),
    lines: lines.filter((line) => !isFrame(line, op)),
    kept,
  };
}

async function check(name, { args, service: reply = YES, faults = [], request, kept, ...sees }) {
  const op = operation(name);
  service(reply && { [op]: reply });
  fail(...faults);
  const [left, seen] = await leaves(() => run((callback) =>
    zelk[name](...args.map((value) => (value === CALLBACK ? callback : value)))));
  const isPromise = ['pending', 'resolved', 'rejected'].some((key) => key in sees);
  assert.deepEqual(observed(seen, left, op), {
    ...(isPromise ? { returned: 'a promise', pending: false } : { returned: undefined }),
    callback: [],
    uncaught: [],
    lines: [],
    ...sees,
    requests: request ? [[op, ...request]] : [],
    kept: { ...NOTHING_LEFT, ...kept },
  });
  assert.equal(JSON.stringify(seen.resolved), JSON.stringify(sees.resolved), 'the order of the properties');
}

// Registers a test for each row.
export function testCalls(name, rows) {
  for (const row of rows) {
    test(titleOf(name, row), () => check(name, row));
  }
}
