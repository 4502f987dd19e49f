// Every Node-API call of every function is made to fail once, then in pairs. Whatever fails: what JavaScript, the
// service and the log see of a call must fit together, and fit what it leaves allocated.
import assert from 'node:assert/strict';
import { before, test } from 'node:test';
import {
  CALLBACK, describe, E, I, ITEMS, MISMATCH, PENDING, testCalls, W,
} from '../support/cases.mjs';
import { answering, forms } from '../support/forms.mjs';
import { counts, fail, gatedNames, leaves, names, run, service, trace, zelk } from '../support/zelk.mjs';

// How far after a first fault the second of a pair may be. A long run takes all.
const PAIR_REACH = Number(process.env.ZELK_FAULT_PAIR_REACH || 1);
const QUEUE = 'napi_queue_async_work';
const QUEUE_ERROR = `9: error at ${QUEUE}`;
const ERRORS = ['injected failure', "the runtime's message", QUEUE_ERROR];
// Nobody sees that these fail.
const SILENT = [
  'napi_delete_async_work', 'napi_open_handle_scope', 'napi_close_handle_scope', 'napi_is_exception_pending',
];
// Functions go on after these, although an error is thrown.
const GOES_ON = ['napi_get_undefined', 'napi_typeof'];

const succeeded = (calls, call) => calls.filter(([other, status]) => other === call && status === 0).length;
const hasFailed = (calls, ...wanted) => calls.some(([call, status]) => wanted.includes(call) && status !== 0);

// One run of one form with the n-th calls failing.
async function attempt(name, index, ...nths) {
  fail(...nths.map((nth) => ({ nth })));
  const [left, { returned, thrown, ...seen }] = await leaves(() => run((callback) =>
    zelk[name](...forms(name, callback)[index])));
  const calls = trace();
  const queue = calls.findIndex(([call]) => call === QUEUE);
  const isQueued = calls[queue]?.[1] === 0;
  return {
    ...seen,
    thrown: thrown && describe(thrown),
    uncaught: seen.uncaught.map(describe),
    isPromise: returned instanceof Promise,
    left,
    calls,
    isQueued,
    asked: isQueued ? calls.slice(0, queue) : calls, // Those of the function itself,
    answered: isQueued ? calls.slice(queue) : [], // and of its answer.
    faults: counts().faults,
  };
}

function checkSeen(seen, usual) {
  const errors = [...(seen.thrown ? [seen.thrown] : []), ...seen.uncaught];
  const unknown = errors.filter((error) => !ERRORS.includes(error) && error !== usual.thrown);
  assert.deepEqual(unknown, [], 'no other errors');
  assert.ok(seen.uncaught.length <= 1, 'an answer throws once');
  assert.ok(seen.requests.length <= Number(seen.isQueued), 'a request only when queued');
  assert.ok(seen.callback.length <= 1, 'one answer');
  if (seen.thrown && seen.thrown !== usual.thrown && !hasFailed(seen.calls, ...GOES_ON)) {
    assert.deepEqual(seen.requests, [], 'an error ends the call');
  }
}

// What a call holds stays until it is answered, which never happens if its work could not be queued.
function whatIsLeft(name, { asked, answered, calls, thrown, isQueued }) {
  const isGated = gatedNames.includes(name);
  const settled = succeeded(answered, 'napi_resolve_deferred') + succeeded(answered, 'napi_reject_deferred');
  const isCalled = succeeded(answered, 'napi_call_function') && succeeded(answered, 'napi_delete_reference');
  const isRefused = hasFailed(asked, QUEUE);
  const isKept = isQueued ? !settled && !isCalled : thrown === QUEUE_ERROR;
  const hasReference = succeeded(asked, 'napi_create_reference') > 0;
  return {
    contexts: Number(isGated && isKept),
    references: Number(hasReference && (isKept || hasFailed(calls, 'napi_delete_reference'))),
    works: Number((isGated && (isKept || isRefused)) || hasFailed(calls, 'napi_delete_async_work')),
    deferreds: succeeded(asked, 'napi_create_promise') - settled,
  };
}

// A single fault shows in an error, a line or the answer, unless it is one that nobody sees, the call fails anyway, or
// an error hides it.
function checkEffect(seen, usual, nth) {
  const shown = ({ thrown, uncaught, callback, resolved, rejected, pending, lines }) => (
    { thrown, uncaught, callback, resolved, rejected, pending, lines: lines.sort() });
  const [call] = seen.calls[nth - 1];
  if (SILENT.includes(call)) {
    assert.deepEqual(shown(seen), shown(usual), `${call} fails silently`);
  } else if (usual.calls[nth - 1][1] === 0 && !usual.thrown && usual.uncaught.length === 0) {
    assert.notDeepEqual(shown(seen), shown(usual), `${call} does not fail silently`);
  }
}

async function sweep(name, index) {
  const usual = await attempt(name, index, 0);
  // Gives the number of faults that came about.
  const check = async (...nths) => {
    const seen = await attempt(name, index, ...nths);
    try {
      checkSeen(seen, usual);
      assert.deepEqual(seen.left, whatIsLeft(name, seen));
      if (nths.length === 1 && seen.faults === 1) {
        checkEffect(seen, usual, nths[0]);
      }
    } catch (error) {
      const calls = seen.calls.map((call, k) => `${k + 1} ${call.join(' ')}`);
      error.message = [`faults ${nths}: ${error.message}`, ...calls].join('\n');
      throw error;
    }
    return seen.faults;
  };
  for (let first = 1; await check(first) > 0; ++first) {
    for (let second = first + 1; second <= first + PAIR_REACH; ++second) {
      if (await check(first, second) < 2) {
        break;
      }
    }
  }
}

before(() => { // After an error the caller does not get the promise and cannot handle its rejection.
  process.removeAllListeners('unhandledRejection').on('unhandledRejection', () => {});
});

for (const name of names) {
  for (const code of [0, 5]) {
    for (const index of forms(name).keys()) {
      test(`${name}, form ${index}, code ${code}: every fault`, async () => {
        service(answering(names, code));
        await sweep(name, index);
      });
    }
  }
}

// What single calls that fail lead to.
const thrown = 'injected failure';
const TYPEOF = { name: 'napi_typeof' };
const UNSENT = [
  W('[ChangeModemLogConfig]"configs is empty."'),
  E("ChangeModemLogConfigCallback: asyncContext's resolved is false"),
];
const NO_LIST = [E('IsArray: failed to check array type'), E('FillConfigInfoVector: value is not array')];
const UNMATCHED = [MISMATCH, MISMATCH, E('ChangeModemLogConfig: Illegal params')];
testCalls('changeModemLogConfig', [
  { args: [ITEMS], faults: [TYPEOF], thrown, lines: UNMATCHED },
  // Only the second try at the types can still match, with a callback; the call goes on with its error pending.
  {
    args: [ITEMS, CALLBACK],
    faults: [TYPEOF],
    thrown,
    callback: [[false]],
    lines: [MISMATCH, E('GetArrayLength: failed to get the length of array'), ...UNSENT],
  },
  { args: [ITEMS], faults: [{ ...TYPEOF, nth: 2 }], thrown },
  // The first time it has been a list.
  { args: [ITEMS], faults: [{ name: 'napi_is_array', nth: 2 }], rejected: false, lines: [...NO_LIST, ...UNSENT] },
]);
testCalls('handleModemLogSwitch', [{ args: [true], faults: [TYPEOF], thrown }]);
testCalls('getModemLogLogMasks', [
  {
    args: [],
    faults: [{ name: 'napi_get_cb_info' }],
    thrown: '6: GetModemLogLogMasks current function not support in current time',
  },
]);
const ENTER = E('GetModemLogStatus: enter PARAMETER_COUNT_ONE');
testCalls('getModemLogStatus', [
  { args: [CALLBACK], faults: [TYPEOF], thrown, lines: [ENTER] },
  { args: [CALLBACK], faults: [{ name: 'napi_create_reference' }], thrown, lines: [ENTER] },
  {
    args: [],
    faults: [{ name: 'napi_get_boolean' }],
    ...PENDING,
    request: [],
    lines: [
      I('[ZelkLogServiceClient] GetModemLogStatus, callbackStatus=0'),
      I('[ZelkLogServiceClient] GetModemLogStatus, result=0'),
      E('GetModemLogStatusCallback: fill bool failed'),
    ],
  },
]);
testCalls('getTcpdumpStatus', [
  { args: [CALLBACK], faults: [{ name: 'napi_get_cb_info', wordless: true }], thrown: 'empty error message' },
]);

// What cannot be read of an item is left out, and a value of a list is zero.
const key = (name) => I(`BuildChangeConfig: key ${name}`);
const BAD_LIST = E('AddArrayParamToList: array param value type is invalid');
const NO_ELEMENT = E('GetElement: failed to get the elemrnt of array');
const [numbers, booleans] = [{ l: [1, 2] }, { l: [true, true] }];
testCalls('changeModemLogConfig', [
  { value: { p: 1 }, fault: 'napi_typeof', nth: 3, text: '}',
    lines: [key('p'), E('GetType: unknown type'), E('AddParamToList: WRONG TYPE')] },
  { value: numbers, fault: 'napi_get_array_length', nth: 2, text: '}',
    lines: [E('failed to get array length')] },
  { value: numbers, fault: 'napi_get_array_length', nth: 3, text: '}',
    lines: [key('l'), E('GetArrayType: failed to get the length of array'), BAD_LIST] },
  { value: numbers, fault: 'napi_get_array_length', nth: 4, text: '{"l":[}',
    lines: [key('l'), E('GetArrayLength: failed to get the length of array')] },
  { value: numbers, fault: 'napi_get_element', nth: 2, text: '}',
    lines: [E('failed to get the element of array')] },
  { value: numbers, fault: 'napi_get_element', nth: 3, text: '}',
    lines: [key('l'), E('GetArrayType: failed to get the element of array'), BAD_LIST] },
  { value: numbers, fault: 'napi_get_element', nth: 5, text: '{"l":["2"]}', lines: [key('l'), NO_ELEMENT] },
  { value: numbers, fault: 'napi_is_array', nth: 3, text: '}',
    lines: [key('l'), E('IsArray: failed to check array type')] },
  { value: numbers, fault: 'napi_get_value_int32', text: '{"l":[0,"2"]}',
    lines: [key('l'), E('GetInt32: failed to get int32 value , so return zero')] },
  { value: booleans, fault: 'napi_get_value_bool', text: '{"l":[false,"1"]}',
    lines: [key('l'), E('failed to get bool value')] },
  { value: { p: 'x' }, fault: 'napi_get_value_string_utf8', nth: 6, text: '{"p":""}',
    lines: [key('p'), E('failed to get string value')] },
  { value: numbers, fault: 'napi_get_named_property', nth: 3, text: '}',
    lines: [key('l'), E('GetProperty: failed to GetProperty')] },
].map(({ value, fault, nth = 1, text, lines }) => ({
  args: [[{ configKey: 'a', value }]],
  faults: [{ name: fault, nth }],
  resolved: true,
  request: [[`{"configKey":"a","value":${text}}`]],
  lines: [...lines, E(`GetJsonParams ostringstream {"configKey":"a","value":${text}}`)],
})));
