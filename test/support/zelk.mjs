// The module under test and the means to control and observe it.
import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { captureLog, logService, ServiceError } from 'zelklogservice/testing';
import { operation } from './forms.mjs';
import { buildFolder } from './system.mjs';

const require = createRequire(import.meta.url);
// The module's sources compiled once more, under the fault layer.
export const zelk = require(`${buildFolder}zelklogservice_test.node`);
const control = require(`${buildFolder}zelk_test.node`);

export const names = Object.getOwnPropertyNames(zelk);
export const gatedNames = names.filter((name) => !/Remote|Protocol/.test(name));

const asking = (name) => (argument = null) => JSON.parse(control[name](JSON.stringify(argument)));
export const counts = asking('counts');
// Makes Node-API calls of the module fail: names for the first use of each, or faults as in control.h.
const planFaults = asking('planFaults');
export const fail = (...faults) => planFaults(faults.map((fault) => (
  typeof fault === 'string' ? { name: fault, nth: 1 } : { nth: 1, ...fault })));
// The module's Node-API calls since the last plan that was not empty: [[name, status, function that calls]].
export const trace = asking('trace');
// Calls helpers of the module: see probes.cpp.
export const { probe } = control;

const logServiceInForce = logService();
const log = captureLog();

// Sets the log service's answers, {Operation: {code, answer}}; others have code 0. Null: there is no service.
export function service(script) {
  for (const op of names.map(operation)) {
    const { code = 0, answer } = script?.[op] ?? {};
    logServiceInForce.handle(op, () => {
      if (code !== 0) {
        throw new ServiceError(code, answer);
      }
      return answer;
    });
  }
  logServiceInForce[script === null ? 'leave' : 'join']();
}

// The service that the environment names.
export const leaveService = () => logServiceInForce.restore();

service({});

// Waits until no async work of the module is in flight and all its answers have been delivered.
async function idle() {
  let isLast;
  do {
    isLast = counts().inFlight === 0;
    await new Promise(setImmediate);
  } while (!isLast);
}

// Runs `action(callback)` to its end. Gives what JavaScript saw (returned or thrown; resolved, rejected or
// pending; callback: the argument lists of its calls; uncaught: errors outside any call) and what others saw:
// the service's requests and the log lines, as "E ZELK_SERVICE: text".
export async function run(action) {
  const seen = { callback: [], uncaught: [] };
  process.setUncaughtExceptionCaptureCallback((error) => seen.uncaught.push(error));
  logServiceInForce.clear();
  log.lines.length = 0;
  try {
    try {
      seen.returned = action(function callback(...args) {
        seen.callback.push(this === undefined ? args : [...args, 'with a receiver', this]);
      });
    } catch (error) {
      seen.thrown = error;
    }
    if (seen.returned instanceof Promise) {
      seen.pending = true;
      const settle = (key) => (value) => Object.assign(seen, { [key]: value, pending: false });
      seen.returned.then(settle('resolved'), settle('rejected'));
    }
    await idle();
  } finally {
    process.setUncaughtExceptionCaptureCallback(null);
  }
  assert.deepEqual(logServiceInForce.errors, []);
  seen.requests = logServiceInForce.requests.map(({ operation, args }) => [operation, ...args]);
  seen.lines = log.lines.map(({ level, domain, tag, message }) => {
    assert.equal(domain, tag === 'DBUS' ? 0 : 0xd002d19);
    return `${level} ${tag}: ${message}`;
  });
  return seen;
}

export const NOTHING_LEFT = { contexts: 0, references: 0, works: 0, deferreds: 0 };

// What `action` leaves allocated, as above, and its result.
export async function leaves(action) {
  const before = counts();
  const result = await action();
  const after = counts();
  const left = Object.keys(NOTHING_LEFT).map((key) => [key, after[key] - before[key]]);
  return [Object.fromEntries(left), result];
}
