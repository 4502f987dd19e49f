// Every Node-API call of every function is made to fail once, then in pairs, and what follows is judged from
// the trace of the calls alone: what JavaScript and the service see, and what stays allocated.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import '../support/cases.mjs';
import { answering, forms } from '../support/forms.mjs';
import { counts, fail, gatedNames, leaves, names, run, service, trace, zelk } from '../support/zelk.mjs';

// How far behind a first fault the second of a pair may lie. A long run takes them all, a build with
// sanitizers is slow.
const PAIR_REACH = Number(process.env.ZELK_FAULT_PAIR_REACH || (process.env.ZELKLOGSERVICE_BUILD ? 1 : 4));
const INJECTED = 9; // The status of a planned fault; the runtime's own refusals have others.
const MESSAGES = { 1: 'Invalid argument', 10: 'An exception is pending', [INJECTED]: 'injected failure' };
const UNSUPPORTED = /DirectPackConfig|LogMasks/;
// Functions that compare their arguments with two lists of types: a second try follows the first.
const MATCHED = /^(get\w+(Config|LogMasks)|change\w+|send\w+)$/;
const QUEUE = 'napi_queue_async_work';

const CHECKED = new RegExp('^napi_(get_cb_info|create_(reference|promise|async_work)|get_(undefined|reference_value)|' +
  'call_function|(resolve|reject)_deferred)$');

const isRemote = (name) => !gatedNames.includes(name);
const namesOf = (calls) => calls.map(([call]) => call);

// Whether a failure of calls[k] is to be thrown; every other one is logged at most. `isAnswer`: in the
// complete step.
function isChecked(name, calls, k, isAnswer) {
  const [call] = calls[k];
  const [before, beforeStatus] = calls[k - 1] ?? [];
  switch (call) {
    case 'napi_typeof': // Of an argument. A value's type is asked for once it is fetched, or was found to be no array.
      return !(/^napi_get_(named_property|element)$/.test(before) && beforeStatus === 0) &&
        !(before === 'napi_is_array' && calls[k - 2][0] !== 'napi_is_array');
    case 'napi_delete_reference':
      return isAnswer;
    case 'napi_set_named_property':
    case 'napi_create_string_utf8': { // The strings of a reply's item, not those of the object that is its value.
      const earlier = namesOf(calls.slice(0, k));
      const item = earlier.slice(earlier.lastIndexOf('napi_set_element') + 1);
      return !isAnswer || isRemote(name) || item.filter((other) => other === 'napi_create_object').length === 1;
    }
    default:
      return CHECKED.test(call);
  }
}

// Whether the call goes on although calls[k] failed and was thrown.
function goesOn(name, calls, k) {
  const earlier = namesOf(calls.slice(0, k));
  if (calls[k][0] === 'napi_get_undefined') { // As the resource, once there is something to return.
    return earlier.includes('napi_create_promise') || earlier.includes('napi_get_undefined');
  }
  return MATCHED.test(name) && calls[k][0] === 'napi_typeof' && !earlier.includes('napi_typeof');
}

// Goes through the calls of one step, asserting that failures are thrown as they should be. Gives the errors
// thrown.
function walk(name, calls, isAnswer) {
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
  // The calls after a failing one at k; gives the index of the last of them.
  const expectCheck = (k, status) => {
    assert.deepEqual(namesOf(calls.slice(k + 1, k + 3)), ['napi_get_last_error_info', 'napi_is_exception_pending']);
    const seemsPending = isPending && calls[k + 2][1] === 0;
    return seemsPending || calls[k + 1][1] !== 0 ? k + 2 : expectThrow(k + 3, MESSAGES[status]);
  };
  for (let k = 0; k < calls.length; ++k) {
    const [call, status] = calls[k];
    if (k === 0 && !isAnswer && UNSUPPORTED.test(name)) {
      expectThrow(k, '6');
    } else if (call === QUEUE && status !== 0) {
      expectThrow(++k, `${status} error at ${QUEUE}`);
      k = calls[k][1] === 0 ? k : expectCheck(k, calls[k][1]); // The throw itself is a checked call.
    } else if (status !== 0 && isChecked(name, calls, k, isAnswer)) {
      isPending ||= call === 'napi_call_function' && status === 10;
      const stops = !isAnswer && !goesOn(name, calls, k);
      k = expectCheck(k, status);
      const isCleaning = namesOf(calls.slice(k + 1)).every((other) => other === 'napi_delete_reference');
      assert.ok(!stops || isCleaning, 'only cleaning up follows');
    } else {
      assert.ok(!/last_error|pending|throw/.test(call), `${call} after nothing that failed`);
    }
  }
  return thrown;
}

// What a run must have looked like whose Node-API calls were `calls`.
function judge(name, args, calls, seen, left, own) {
  const ok = (step, call) => step.filter(([other, status]) => other === call && status === 0).length;
  const cannot = (call) => calls.some(([other, status]) => other === call && status !== 0);
  const queue = namesOf(calls).indexOf(QUEUE);
  const isQueued = queue >= 0 && calls[queue][1] === 0;
  const asked = isQueued ? calls.slice(0, queue + 1) : calls;
  const answered = isQueued ? calls.slice(queue + 1) : [];

  const thrown = walk(name, asked, false);
  assert.deepEqual(seen.thrown ? [describe(seen.thrown)] : [], thrown);
  const uncaught = walk(name, answered, true);
  const hasCalled = own !== null && uncaught.length === 0 &&
    answered.some(([call, status]) => call === 'napi_call_function' && status === 10);
  assert.deepEqual(seen.uncaught.map((error) => (error === own ? own : describe(error))), hasCalled ? [own] : uncaught);

  const settled = ok(answered, 'napi_resolve_deferred') + ok(answered, 'napi_reject_deferred');
  const isDelivered = settled + (ok(answered, 'napi_call_function') && ok(answered, 'napi_delete_reference')) > 0;
  assert.equal(seen.callback.length, ok(answered, 'napi_call_function') + hasCalled);
  assert.equal(seen.pending, seen.returned instanceof Promise ? !settled : undefined);
  assert.ok(seen.thrown || seen.returned instanceof Promise === (ok(asked, 'napi_create_promise') === 1 && queue >= 0));
  assert.ok(seen.requests.length <= (isQueued ? 1 : 0), 'at most one request, and only of a call that was queued');

  if (MATCHED.test(name) && !UNSUPPORTED.test(name) && asked.find(([call]) => call === 'napi_typeof')?.[1]) {
    assert.ok(queue < 0 || typeof args[1] === 'function', 'only the second list of types can still match');
  }
  if (name.endsWith('Status') && answered[0]?.[0] === 'napi_get_boolean' && answered[0][1] !== 0) {
    assert.equal(answered.length, 1, 'a status that cannot be made is answered by nothing');
  }

  const isKept = isQueued ? !isDelivered : queue >= 0 && thrown.at(-1)?.endsWith(`error at ${QUEUE}`) === true;
  assert.deepEqual(left, {
    records: Number(isKept && !isRemote(name)),
    references: Number(ok(asked, 'napi_create_reference') === 1 && (isKept || cannot('napi_delete_reference'))),
    works: Number(cannot('napi_delete_async_work') || (!isRemote(name) && (isKept || (queue >= 0 && !isQueued)))),
    deferreds: ok(asked, 'napi_create_promise') - settled,
  });
}

const describe = (error) => (/^\d+ .* not support /.test(`${error.code} ${error.message}`)
  ? '6'
  : [error.code, error.message].filter(Boolean).join(' '));
const outcome = ({ thrown, uncaught, lines, returned, ...rest }) =>
  ({ thrown: thrown && describe(thrown), uncaught: uncaught.map(describe), ...rest });
const value = (seen) => [seen.resolved, seen.rejected, ...seen.callback.flat()].filter((each) => each !== undefined);

// One run of one form under one plan; gives what was seen.
async function attempt(name, index, own, ...faults) {
  const plan = faults.map((nth) => ({ nth }));
  fail(...plan);
  let args;
  const [left, seen] = await leaves(() => run((callback) => {
    args = forms(name, (...values) => {
      callback(...values);
      if (own) {
        throw own;
      }
    })[index];
    return zelk[name](...args);
  }));
  const calls = trace();
  const text = `${name} form ${index} faults ${JSON.stringify(plan)}`;
  try {
    judge(name, args, calls, seen, left, own);
  } catch (error) {
    error.message = `${text}: ${error.message}\n${calls.map((call) => call.join(' ')).join('\n')}`;
    throw error;
  }
  return { seen, calls, faults: counts().faults, text };
}

const tried = { forms: 0, single: 0, pairs: 0 };

async function sweep(name, index, own) {
  const whole = outcome((await attempt(name, index, own, 0)).seen);
  tried.forms++;
  for (let first = 1; ; ++first) {
    const single = await attempt(name, index, own, first);
    if (single.faults === 0) {
      break;
    }
    tried.single++;
    for (let second = first + 1; second <= first + PAIR_REACH; ++second) {
      if ((await attempt(name, index, own, first, second)).faults < 2) {
        break;
      }
      tried.pairs++;
    }
    // What cannot be read of an argument may change the question, never the answer.
    const answer = value(single.seen);
    const isComparable = !whole.thrown && !whole.uncaught.length &&
      single.seen.requests.length === whole.requests.length;
    if (namesOf(single.calls).indexOf(QUEUE) >= first && answer.length > 0 && isComparable) {
      assert.deepEqual(answer, value(whole), single.text);
    }
  }
  assert.deepEqual(outcome((await attempt(name, index, own, 0)).seen), whole, `${name} form ${index}: works again`);
}

before(() => { // An error in the call keeps its promise from the caller, who cannot handle a rejection then.
  process.removeAllListeners('unhandledRejection').on('unhandledRejection', () => {});
});
after(() => console.log(`faults tried: ${tried.single} single, ${tried.pairs} pairs, in ${tried.forms} combinations of ` +
  'form, service and callback'));

for (const name of names) {
  test(`${name} survives every fault`, async () => {
    for (const code of [0, 5]) {
      service(answering(names, { code }));
      for (let index = 0; index < forms(name).length; ++index) {
        await sweep(name, index, null);
      }
    }
    if (!isRemote(name)) {
      const withCallback = forms(name, 'callback').findIndex((args) => args.at(-1) === 'callback');
      await sweep(name, withCallback, new Error("the callback's own"));
    }
  });
}
