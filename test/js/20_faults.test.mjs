// Every Node-API call of every function is made to fail once, then in pairs. A table says what places in the
// module do when their call fails; what JavaScript and the service see, and what stays allocated, must follow
// from it.
import assert from 'node:assert/strict';
import { before, test } from 'node:test';
import { E } from '../support/cases.mjs';
import { answering, forms } from '../support/forms.mjs';
import { counts, fail, gatedNames, leaves, names, run, service, trace, zelk } from '../support/zelk.mjs';

// How far after a first fault the second of a pair may be. A long run takes all; sanitizers are slow.
const PAIR_REACH = Number(process.env.ZELK_FAULT_PAIR_REACH || (process.env.ZELKLOGSERVICE_BUILD ? 1 : 4));
const INJECTED = 9; // The status of a planned fault; the runtime's own failures have others.
const MESSAGES = { 1: 'Invalid argument', 10: 'An exception is pending', [INJECTED]: 'injected failure' };
const UNSUPPORTED = /DirectPackConfig|LogMasks/;
const QUEUE = 'napi_queue_async_work';

// What the module does when one of its Node-API calls fails, and the places where it does: FUNCTION CALL. It
// goes on at all others.
const BEHAVIOURS = [
  [{ throws: true, ends: true }, [ // Only cleaning up follows.
    'ReadArguments napi_get_cb_info', 'ReadType napi_typeof', 'KeepCallback napi_create_reference',
    'MatchValueType napi_typeof', // The second list of types is tried all the same.
    'CreateResult napi_create_promise', 'CreateResult napi_get_undefined',
    'CreateWork napi_create_string_utf8', 'CreateWork napi_create_async_work',
    'CallCallback napi_get_reference_value', 'CallCallback napi_call_function',
    'CallCallback napi_delete_reference', 'SettlePromise napi_resolve_deferred',
    'SettlePromise napi_reject_deferred', 'QueueWork napi_create_promise',
  ]],
  [{ throws: true }, [
    'CreateUndefined napi_get_undefined', 'Settle napi_resolve_deferred', 'Settle napi_reject_deferred',
    'CreateStringValue napi_create_string_utf8', 'SetPropertyStringUtf8 napi_create_string_utf8',
    'SetPropertyStringUtf8 napi_set_named_property',
  ]],
  // Throws an error of its own.
  [{ ends: true }, ['StartAsyncWork napi_queue_async_work', 'QueueWork napi_queue_async_work']],
  [{ ends: true, line: 'GetModemLogStatusCallback: fill bool failed' }, ['AnswerStatus napi_get_boolean']],
  // And writes a line.
  ...Object.entries({
    'GetType napi_typeof': 'GetType: unknown type',
    'IsArray napi_is_array': 'IsArray: failed to check array type',
    'GetInt64 napi_get_value_int64': 'GetInt32: failed to get int32 value , so return zero',
    'GetPropertyNames napi_get_array_length': 'failed to get array length',
    'GetArrayLength napi_get_array_length': 'GetArrayLength: failed to get the length of array',
    'GetArrayType napi_get_array_length': 'GetArrayType: failed to get the length of array',
    'GetArrayType napi_get_element': 'GetArrayType: failed to get the element of array',
  }).map(([place, line]) => [{ line }, [place]]),
];
const PLACES = Object.fromEntries(
  BEHAVIOURS.flatMap(([behaviour, places]) => places.map((place) => [place, behaviour])));

const isRemote = (name) => !gatedNames.includes(name);
const namesOf = (calls) => calls.map(([call]) => call);

// Asserts that in the calls of one step each place does what the table says. Gives the errors thrown.
function walk(calls, lines) {
  const thrown = [];
  let isPending = false;
  const expectThrow = (k, error) => {
    const [call, status] = calls[k] ?? [];
    assert.equal(call, 'napi_throw_error');
    if (status === 0) {
      thrown.push(error);
      isPending = true;
    }
    return k;
  };
  // The calls after a failing one at k; returns the index of the last of them.
  const expectCheck = (k, status) => {
    const following = namesOf(calls.slice(k + 1, k + 3));
    assert.deepEqual(following, ['napi_get_last_error_info', 'napi_is_exception_pending']);
    const seemsPending = isPending && calls[k + 2][1] === 0;
    return seemsPending || calls[k + 1][1] !== 0 ? k + 2 : expectThrow(k + 3, MESSAGES[status]);
  };
  for (let k = 0; k < calls.length; ++k) {
    const [call, status, site] = calls[k];
    if (k === 0 && site.endsWith(' ThrowError')) { // An unsupported function throws first.
      expectThrow(k, '6');
      continue;
    }
    const place = PLACES[`${site.split(' ').at(-1)} ${call}`] ?? {};
    if (status === 0) {
      continue;
    }
    const isFirst = !calls.slice(0, k).some(([, , other]) => other === site);
    if (call === QUEUE) {
      expectThrow(++k, `${status} error at ${QUEUE}`);
      k = calls[k][1] === 0 ? k : expectCheck(k, calls[k][1]); // The throw itself is a checked call.
    } else if (place.throws) {
      k = expectCheck(k, status);
    }
    if (place.line) {
      assert.ok(lines.includes(E(place.line)), `${site} ${call} is logged`);
    }
    if (place.ends && !(isFirst && site.endsWith(' MatchValueType'))) {
      const cleaning = namesOf(calls.slice(k + 1)).filter((other) => !/^napi_delete_/.test(other));
      assert.deepEqual(cleaning, [], 'only cleaning up follows');
    }
  }
  return thrown;
}

// Checks what was seen of a run whose Node-API calls were `calls`.
function judge(name, args, calls, seen, left) {
  const ok = (step, call) => step.filter(([other, status]) => other === call && status === 0).length;
  const cannot = (call) => calls.some(([other, status]) => other === call && status !== 0);
  const queue = namesOf(calls).indexOf(QUEUE);
  const isQueued = queue >= 0 && calls[queue][1] === 0;
  const asked = isQueued ? calls.slice(0, queue + 1) : calls;
  const answered = isQueued ? calls.slice(queue + 1) : [];

  const thrown = walk(asked, seen.lines);
  assert.deepEqual(seen.thrown ? [describe(seen.thrown)] : [], thrown);
  const uncaught = walk(answered, seen.lines);
  assert.deepEqual(seen.uncaught.map(describe), uncaught);

  const settled = ok(answered, 'napi_resolve_deferred') + ok(answered, 'napi_reject_deferred');
  const called = ok(answered, 'napi_call_function');
  const isDelivered = settled > 0 || (called > 0 && ok(answered, 'napi_delete_reference') > 0);
  assert.equal(seen.callback.length, called);
  assert.equal(seen.pending, seen.returned instanceof Promise ? !settled : undefined);
  const promised = ok(asked, 'napi_create_promise');
  assert.ok(seen.thrown || seen.returned instanceof Promise === (promised === 1 && queue >= 0));
  assert.ok(seen.requests.length <= Number(isQueued), 'at most one request, and only when queued');
  if (asked.find(([, , site]) => site.endsWith(' MatchValueType'))?.[1] && !UNSUPPORTED.test(name)) {
    assert.ok(queue < 0 || typeof args[1] === 'function', 'only the second list of types can still match');
  }

  const isRefused = queue >= 0 && !isQueued;
  const isKept = isQueued ? !isDelivered : isRefused && thrown.at(-1)?.endsWith(`error at ${QUEUE}`) === true;
  const referenced = ok(asked, 'napi_create_reference') === 1;
  const hasWork = cannot('napi_delete_async_work') || (!isRemote(name) && (isKept || isRefused));
  assert.deepEqual(left, {
    contexts: Number(isKept && !isRemote(name)),
    references: Number(referenced && (isKept || cannot('napi_delete_reference'))),
    works: Number(hasWork),
    deferreds: promised - settled,
  });
}

function describe({ code, message }) {
  const isUnsupported = code === '6' && / not support /.test(message);
  return isUnsupported ? '6' : [code, message].filter(Boolean).join(' ');
}

// One run of one form under one plan; gives the number of faults that came about.
async function attempt(name, index, ...faults) {
  const plan = faults.map((nth) => ({ nth }));
  fail(...plan);
  let args;
  const [left, seen] = await leaves(() => run((callback) => {
    args = forms(name, callback)[index];
    return zelk[name](...args);
  }));
  const calls = trace();
  try {
    judge(name, args, calls, seen, left);
  } catch (error) {
    error.message = `${name} form ${index} faults ${JSON.stringify(plan)}: ${error.message}\n` +
      calls.map((call) => call.join(' ')).join('\n');
    throw error;
  }
  return counts().faults;
}

async function sweep(name, index) {
  await attempt(name, index, 0);
  for (let first = 1; await attempt(name, index, first) > 0; ++first) {
    for (let second = first + 1; second <= first + PAIR_REACH; ++second) {
      if (await attempt(name, index, first, second) < 2) {
        break;
      }
    }
  }
}

before(() => { // After an error the caller does not get the promise and cannot handle its rejection.
  process.removeAllListeners('unhandledRejection').on('unhandledRejection', () => {});
});

for (const name of names) {
  test(`${name} survives every fault`, async () => {
    for (const code of [0, 5]) {
      service(answering(names, code));
      for (let index = 0; index < forms(name).length; ++index) {
        await sweep(name, index);
      }
    }
  });
}
