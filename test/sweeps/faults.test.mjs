// Every Node-API call of every function is made to fail once, then in pairs. Whatever fails: what JavaScript,
// the service and the log see of a call must fit together, and fit what it leaves allocated.
import assert from 'node:assert/strict';
import { before, test } from 'node:test';
import { describe, INJECTED, RUNTIME } from '../support/cases.mjs';
import { answering, forms } from '../support/forms.mjs';
import { counts, fail, gatedNames, leaves, names, run, service, trace, zelk } from '../support/zelk.mjs';

// How far after a first fault the second of a pair may be. A long run takes all.
const PAIR_REACH = Number(process.env.ZELK_FAULT_PAIR_REACH || 1);
const PENDING_EXCEPTION = 10; // A status of Node-API.
const QUEUE = 'napi_queue_async_work';
const QUEUE_ERROR = `9: error at ${QUEUE}`;
// Nobody sees that these fail.
const SILENT = ['napi_delete_async_work', 'napi_open_handle_scope', 'napi_is_exception_pending'];
// A call goes on after a failure in these functions of the module, although an error is thrown.
const GOES_ON = ['CreateUndefined', 'MatchValueType'];

const succeeded = (calls, call) => calls.filter(([other, status]) => other === call && status === 0).length;
const hasFailed = (calls, ...wanted) => calls.some(([call, status]) => wanted.includes(call) && status !== 0);

// One run of one form with the n-th calls failing.
async function attempt(name, index, ...nths) {
  fail(...nths.map((nth) => ({ nth })));
  const [left, { thrown, ...seen }] = await leaves(() => run((callback) =>
    zelk[name](...forms(name, callback)[index])));
  const calls = trace();
  const queue = calls.findIndex(([call]) => call === QUEUE);
  const isQueued = calls[queue]?.[1] === 0;
  return {
    ...seen,
    thrown: thrown && describe(thrown),
    uncaught: seen.uncaught.map(describe),
    left,
    calls,
    isQueued,
    asked: isQueued ? calls.slice(0, queue) : calls, // Those of the function itself,
    answered: isQueued ? calls.slice(queue) : [], // and of its answer.
    faults: counts().faults,
  };
}

const errorsOf = ({ thrown, uncaught }) => (thrown ? [thrown, ...uncaught] : uncaught);

// Whether the module throws although it knows that an error is pending.
const throwsOver = (calls) => calls.some(([call, status], k) => call === 'napi_throw_error' &&
  status === PENDING_EXCEPTION && calls[k - 1][0] === 'napi_is_exception_pending' && calls[k - 1][1] === 0);

function checkSeen(seen, usual) {
  // After an error that could not be thrown may come the runtime's own about a missing argument.
  const late = hasFailed(seen.calls, 'napi_throw_error', 'napi_get_last_error_info') ? [RUNTIME] : [];
  assert.ok([undefined, INJECTED, QUEUE_ERROR, usual.thrown, ...late].includes(seen.thrown), seen.thrown);
  assert.ok(seen.uncaught.length <= 1, 'an answer throws once');
  assert.ok([undefined, INJECTED, RUNTIME].includes(seen.uncaught[0]), seen.uncaught[0]);
  assert.ok(!throwsOver(seen.calls), 'no error is thrown over another');
  assert.ok(seen.requests.length <= Number(seen.isQueued), 'a request only when queued');
  assert.ok(seen.callback.length <= 1, 'one answer');
  const goesOn = seen.calls.some(([, status, by]) => status !== 0 && GOES_ON.includes(by));
  if (seen.thrown && seen.thrown !== usual.thrown && !goesOn) {
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

const isAnswered = (seen) => 'resolved' in seen || 'rejected' in seen || seen.callback.length > 0;
const shown = ({ thrown, uncaught, callback, resolved, rejected, pending, lines }) => (
  { thrown, uncaught, callback, resolved, rejected, pending, lines: lines.sort() });

// A single fault shows in an error, a line or the answer, unless the call fails anyway or an error hides it.
// One that keeps the call from being answered is thrown or logged.
function checkEffect(seen, usual, nth) {
  const [call] = seen.calls[nth - 1];
  if (SILENT.includes(call)) {
    assert.deepEqual(shown(seen), shown(usual), `${call} fails silently`);
  } else if (usual.calls[nth - 1][1] === 0 && errorsOf(usual).length === 0) {
    assert.notDeepEqual(shown(seen), shown(usual), `${call} does not fail silently`);
  }
  if (isAnswered(usual) && !isAnswered(seen)) {
    const logged = seen.lines.filter((line) => line.startsWith('E ') && !usual.lines.includes(line));
    assert.notEqual(errorsOf(seen).length + logged.length, 0, `${call} is thrown or logged`);
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
      if (seen.faults === 0) {
        assert.deepEqual(shown(seen), shown(usual), 'faults leave no trace');
      } else if (nths.length === 1) {
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
