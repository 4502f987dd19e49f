// The module under test and the means to look behind it. A test reads as: service → call → value, requests,
// lines.
import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';

export const buildFolder = fileURLToPath(
  new URL(`../../build/${process.env.ZELKLOGSERVICE_BUILD || 'release'}/`, import.meta.url));
const require = createRequire(import.meta.url);
const control = require(`${buildFolder}zelk_test.node`);

// The module's own object files under the fault layer, and the module's inside: see probes.cpp.
export const zelk = require(`${buildFolder}zelklogservice_test.node`);
export const probes = control.probes();

export const names = Object.getOwnPropertyNames(zelk);
export const remoteNames = names.filter((name) => /Remote|Protocol/.test(name));
export const gatedNames = names.filter((name) => !remoteNames.includes(name));

const asking = (name) => (argument = null) => JSON.parse(control[name](JSON.stringify(argument)));
const [takeLines, takeRequests] = ['takeLines', 'takeRequests'].map(asking);
export const [counts, proxyCount] = ['counts', 'takeProxyCount'].map(asking);

// Puts a scripted service behind the module: {Operation: {code, answer, delay}}; null is no service,
// 'embedded' the reference service.
export const service = asking('setService');
// Makes Node-API calls of the module fail: [{name, nth, status}], where no name means any call.
const planFaults = asking('planFaults');
export const fail = (...plan) => planFaults(plan);
// The module's Node-API calls since the last plan that was not empty: [[name, status]].
export const trace = asking('trace');

export const SYSTEM_APP = '0x100000001';
export const identity = (token) => (process.env.OHOS_FULL_TOKEN_ID = token);

service({});
asking('captureLines')(true);

// Until no work of the module is in flight and what it answered has been delivered.
async function idle() {
  let isLast;
  do {
    isLast = counts().inFlight === 0;
    await new Promise(setImmediate);
  } while (!isLast);
}

const LEVELS = { 3: 'D', 4: 'I', 5: 'W', 6: 'E', 7: 'F' };

// Runs `action(callback)` to its end. Gives what JavaScript saw (returned or thrown; resolved, rejected or
// pending; callback: the argument lists of its calls; uncaught: errors outside any call) and what others saw:
// the service's requests and the log lines, as "E ZELK_SERVICE: text".
export async function run(action) {
  const seen = { callback: [], uncaught: [] };
  const others = process.rawListeners('uncaughtException');
  process.removeAllListeners('uncaughtException').on('uncaughtException', (error) => seen.uncaught.push(error));
  [takeRequests, takeLines, proxyCount].forEach((take) => take());
  try {
    try {
      seen.returned = action((...args) => seen.callback.push(args));
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
    process.removeAllListeners('uncaughtException');
    others.forEach((listener) => process.on('uncaughtException', listener));
  }
  seen.requests = takeRequests();
  seen.lines = takeLines().map(([level, domain, tag, message]) => {
    assert.equal(domain, 0xd002d19);
    return `${LEVELS[level]} ${tag}: ${message}`;
  });
  return seen;
}

const HELD = ['records', 'references', 'works', 'deferreds'];

// What the module holds after `action` and did not before, {records, references, works, deferreds}, and its
// result.
export async function leaves(action) {
  const before = counts();
  const result = await action();
  const after = counts();
  return [Object.fromEntries(HELD.map((key) => [key, after[key] - before[key]])), result];
}

// Runs `action`, which must leave `kept` behind and nothing else.
export async function keeps(kept, action) {
  const [left, result] = await leaves(() => run(action));
  assert.deepEqual(left, { records: 0, references: 0, works: 0, deferreds: 0, ...kept });
  return result;
}
