// The module under test and the means to look behind it. A test reads as: service → call → value, requests, lines.
import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';

export const buildFolder = fileURLToPath(
  new URL(`../../build/${process.env.ZELKLOGSERVICE_BUILD || 'release'}/`, import.meta.url));
const require = createRequire(import.meta.url);
const control = require(`${buildFolder}zelk_test.node`);

process.env.HILOG_LEVEL ??= 'X';

// The module's own object files under the fault layer.
export const zelk = require(`${buildFolder}zelklogservice_test.node`);
// The module's inside: see probes.cpp.
export const probes = control.probes();

export const names = Object.getOwnPropertyNames(zelk);
// What a getter function does without one, in the order of the table.
export const remoteNames = ['fetchRemoteDevicesLogs', 'queryRemoteDevicesLogs', 'getRemoteDevicesList', 'queryProtocolData'];

const ask = (name, argument = null) => JSON.parse(control[name](JSON.stringify(argument)));

// Puts a scripted service behind the module: {Operation: {code, answer, delay}}; null is no service, 'embedded' the
// reference service.
export const service = (script = {}) => ask('setService', script);
// Makes Node-API calls of the module fail: [{name, nth, status}], where no name means any call.
export const fail = (...plan) => ask('planFaults', plan);
// The module's Node-API calls since the last plan that was not empty: [[name, status]].
export const trace = () => ask('trace');
export const counts = () => ask('counts');
export const proxyCount = () => ask('takeProxyCount');

export const SYSTEM_APP = '0x100000001';
export function identity(token) {
  process.env.OHOS_FULL_TOKEN_ID = token;
}

service({});
ask('captureLines', true);

const turn = () => new Promise((resolve) => setImmediate(resolve));

// Waits until no work of the module is in flight and what it answered has been delivered.
export async function idle() {
  while (counts().inFlight > 0) {
    await turn();
  }
  await turn();
}

const LEVELS = { 3: 'D', 4: 'I', 5: 'W', 6: 'E', 7: 'F' };

// Runs `action(callback)` to its end. Gives what JavaScript saw (returned or thrown; resolved, rejected or pending;
// callback: the argument lists of its calls; uncaught: errors outside any call) and what others saw: the service's
// requests and the log lines, as "E ZELK_SERVICE text".
export async function run(action) {
  const seen = { callback: [], uncaught: [] };
  const onUncaught = (error) => seen.uncaught.push(error);
  const others = process.rawListeners('uncaughtException');
  process.removeAllListeners('uncaughtException');
  process.on('uncaughtException', onUncaught);
  ask('takeRequests');
  ask('takeLines');
  ask('takeProxyCount');
  try {
    try {
      seen.returned = action((...args) => seen.callback.push(args));
    } catch (error) {
      seen.thrown = error;
    }
    if (seen.returned instanceof Promise) {
      seen.pending = true;
      const settle = (key) => (value) => {
        seen[key] = value;
        seen.pending = false;
      };
      seen.returned.then(settle('resolved'), settle('rejected'));
    }
    await idle();
  } finally {
    process.removeListener('uncaughtException', onUncaught);
    others.forEach((listener) => process.on('uncaughtException', listener));
  }
  seen.requests = ask('takeRequests');
  seen.lines = ask('takeLines').map(([level, domain, tag, message]) => {
    assert.equal(domain, 0xd002d19);
    return `${LEVELS[level]} ${tag}: ${message}`;
  });
  return seen;
}

// The lines of the async frame around a call, which most tests have no interest in.
const FRAME = /^(I ZELK_SERVICE: HandleAsyncWork: (workName = .*|end)|D ZELK_SERVICE: Handle2ValueCallback .*)$/;
export const withoutFrame = (lines) => lines.filter((line) => !FRAME.test(line));

// What the module holds between two points of a test: {records, references, works, deferreds}.
export function held() {
  const { records, references, works, deferreds } = counts();
  return { records, references, works, deferreds };
}

// Asserts that `action` leaves `kept` behind (nothing by default) and gives its result.
export async function keeps(kept, action) {
  const before = held();
  const result = await action();
  const after = held();
  const left = Object.fromEntries(Object.keys(after).map((key) => [key, after[key] - before[key]]));
  assert.deepEqual(left, { records: 0, references: 0, works: 0, deferreds: 0, ...kept });
  return result;
}
