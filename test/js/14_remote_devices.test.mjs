import assert from 'node:assert/strict';
import { test } from 'node:test';
import { setCaller } from 'zelklogservice/testing';
import { E, expectCall, W } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';
import { fail, keeps, run, service, zelk } from '../support/zelk.mjs';

// Function, arguments, the request they become.
const CALLS = [
  ['fetchRemoteDevicesLogs', ['req', 5], ['FetchRemoteDevicesLogs', 'req', 5n]],
  ['queryRemoteDevicesLogs', ['req'], ['QueryRemoteDevicesLogs', 'req']],
  ['getRemoteDevicesList', [], ['GetRemoteDevicesList']],
  ['queryProtocolData', ['req'], ['QueryProtocolData', 'req']],
];

const LEAVE = 'I FRAMEWORK: [OnGlobalCompleteCallback]"leave"';
const destroyed = (name) => `I FRAMEWORK: [~NapiContext]"[${name}]"`;
const executorLines = (name, code) => [
  `I FRAMEWORK: [NapiContext]"[${name}]"`,
  'I FRAMEWORK: [OnGlobalExecuteCallback]"enter"',
  ...(code === 1 ? [W(`[${name}]"get proxy fail."`)] : []),
  ...(name !== 'QueryProtocolData'
    ? []
    : [
        ...(code === 1 ? [] : ['E FRAMEWORK: [QueryProtocolData]"get proxy success. request:req"']),
        `I PROTOCOL: [operator()]"napi callback into response : ${code === 1 ? '' : 'reply'}"`,
      ]),
  `I FRAMEWORK: [OnExecuteCallback]"[${name}]errorcode=${code}"`,
  'I FRAMEWORK: [OnGlobalExecuteCallback]"leave"',
  'I FRAMEWORK: [OnGlobalCompleteCallback]"enter"',
  code === 0
    ? `I FRAMEWORK: [OnCompleteCallback]"[${name}]resolve deferred"`
    : `W FRAMEWORK: [OnCompleteCallback]"[${name}]has some error[${code}], reject deferred"`,
  LEAVE, destroyed(name),
];

test('serve every caller, and answer with the reply text, a failure too', async () => {
  setCaller({ systemApplication: false });
  for (const [name, args, request] of CALLS) {
    const answer = 'reply\0é';
    for (const [code, sees, requests] of [
      [0, { resolved: answer }, [request]],
      [5, { rejected: answer }, [request]],
      [1, { rejected: '' }, []],
    ]) {
      service(code === 1 ? null : { [request[0]]: { code, answer } });
      await expectCall(name, () => args, sees, requests, executorLines(request[0], code));
    }
  }
});

test('require their exact number of arguments, and log 1 for every number', async () => {
  for (const [name, ...wrong] of [
    ['fetchRemoteDevicesLogs', [], ['x'], ['x', 1, 2]], ['queryRemoteDevicesLogs', [], ['a', 'b']],
    ['queryProtocolData', [], ['a', 'b', 'c']],
  ]) {
    for (const args of wrong) {
      const counts = `expected=1z actual=${args.length}`;
      await expectCall(name, () => args, {}, [],
        [W(`[${operation(name)}]"param count is incorrect. ${counts}"`)]);
    }
  }
});

test('read their arguments as Node-API converts them', async () => {
  const MAX = 2n ** 63n - 1n;
  const zero = E('GetInt32: failed to get int32 value , so return zero');
  for (const [number, expected, ...lines] of [
    [2 ** 53 + 2, 9007199254740994n], [-(2 ** 53), -9007199254740992n], [2 ** 63, MAX], [1e300, MAX],
    [-1e300, -(2n ** 63n)], [NaN, 0n], [-Infinity, 0n], [-2.9, -2n], ['5', 0n, zero], [undefined, 0n, zero],
  ]) {
    const seen = await run(() => zelk.fetchRemoteDevicesLogs('r', number));
    assert.deepEqual(seen.requests, [['FetchRemoteDevicesLogs', 'r', expected]], String(number));
    assert.deepEqual(seen.lines.filter((line) => line === zero), lines, String(number));
  }
  const { requests } = await run(() => zelk.getRemoteDevicesList(1, 2, 3));
  assert.deepEqual(requests, [['GetRemoteDevicesList']]);
});

test('read texts of 1 to 8194 bytes, up to their first NUL', async () => {
  const length = 'GetString: len error';
  const rows = [
    ...['x'.repeat(8194), 'é'.repeat(4097)].map((text) => [text, text]),
    ...['x'.repeat(8195), 'é'.repeat(4097) + 'x', ''].map((text) => [text, '', length]),
    ['a\0b', 'a'], ['\ud800x', '\ufffdx'], [7, '', 'GetString: get len error'],
    ['x', '', 'failed to get string value', { name: 'napi_get_value_string_utf8', nth: 2 }],
  ];
  for (const [text, expected, line, ...faults] of rows) {
    fail(...faults);
    const { requests, lines } = await run(() => zelk.queryRemoteDevicesLogs(text));
    assert.deepEqual(requests, [['QueryRemoteDevicesLogs', expected]]);
    assert.deepEqual(lines.filter((each) => each.startsWith('E')), line ? [E(line)] : []);
  }
});

test('an answer that cannot be made leaves the promise pending and the errors uncaught', async () => {
  fail({ name: 'napi_create_string_utf8', nth: 2 });
  const { pending, uncaught, lines } = await keeps({ deferreds: 1 }, () => zelk.getRemoteDevicesList());
  assert.deepEqual([pending, uncaught.map(({ message }) => message)], [true, ['injected failure']]);
  assert.deepEqual(lines.slice(-3), [
    'W FRAMEWORK: [OnCompleteCallback]"[GetRemoteDevicesList]reject deferred"', LEAVE,
    destroyed('GetRemoteDevicesList'),
  ]);
});

// The fault sweep checks what is thrown and what stays allocated; this checks the lines.
test('a context that cannot be queued is freed', async () => {
  const unqueued = 'I FRAMEWORK: [Execute]"[GetRemoteDevicesList]napi_queue_async_work fail: errorCode=9"';
  for (const [name, ...lines] of [
    ['napi_create_promise'], ['napi_create_async_work'], ['napi_queue_async_work', unqueued],
  ]) {
    fail({ name, nth: 1 });
    assert.deepEqual((await run(() => zelk.getRemoteDevicesList())).lines,
      ['I FRAMEWORK: [NapiContext]"[GetRemoteDevicesList]"', ...lines, destroyed('GetRemoteDevicesList')]);
  }
});
