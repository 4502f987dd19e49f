import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { fail, identity, keeps, probes, run, service, SYSTEM_APP, zelk } from '../support/zelk.mjs';

afterEach(() => {
  fail();
  service({});
  identity(SYSTEM_APP);
});

// Function, arguments, the request they become.
const CALLS = [
  ['fetchRemoteDevicesLogs', ['req', 5], ['FetchRemoteDevicesLogs', 'req', '5']],
  ['queryRemoteDevicesLogs', ['req'], ['QueryRemoteDevicesLogs', 'req']],
  ['getRemoteDevicesList', [], ['GetRemoteDevicesList']],
  ['queryProtocolData', ['req'], ['QueryProtocolData', 'req']],
];

const executorLines = (name, code, end) => [
  `I FRAMEWORK: [NapiContext]"[${name}]"`,
  'I FRAMEWORK: [OnGlobalExecuteCallback]"enter"',
  ...(name === 'QueryProtocolData' && code !== 1
    ? ['E FRAMEWORK: [QueryProtocolData]"get proxy success. request:req"']
    : []),
  ...(code === 1 ? [`W FRAMEWORK: [${name}]"get proxy fail."`] : []),
  ...(name === 'QueryProtocolData'
    ? [`I PROTOCOL: [operator()]"napi callback into response : ${code === 1 ? '' : 'reply'}"`]
    : []),
  `I FRAMEWORK: [OnExecuteCallback]"[${name}]errorcode=${code}"`,
  'I FRAMEWORK: [OnGlobalExecuteCallback]"leave"',
  'I FRAMEWORK: [OnGlobalCompleteCallback]"enter"',
  code === 0
    ? `I FRAMEWORK: [OnCompleteCallback]"[${name}]resolve deferred"`
    : `W FRAMEWORK: [OnCompleteCallback]"[${name}]has some error[${code}], reject deferred"`,
  'I FRAMEWORK: [OnGlobalCompleteCallback]"leave"',
  `I FRAMEWORK: [~NapiContext]"[${name}]"`,
];

test('serve every caller and answer with the reply text, a failure with whatever reply there is', async () => {
  identity('0');
  for (const [name, args, request] of CALLS) {
    const operation = request[0];
    for (const code of [0, 5]) {
      service({ [operation]: { code, answer: 'reply\0é' } });
      const seen = await keeps({}, () => run(() => zelk[name](...args)));
      assert.equal(seen[code === 0 ? 'resolved' : 'rejected'], 'reply\0é');
      assert.deepEqual(seen.requests, [request]);
      assert.deepEqual(seen.lines, executorLines(operation, code));
    }
    service(null);
    const unreachable = await keeps({}, () => run(() => zelk[name](...args)));
    assert.equal(unreachable.rejected, '');
    assert.deepEqual(unreachable.lines, executorLines(operation, 1));
  }
});

test('want their exact number of arguments, and say 1 whatever it is', async () => {
  for (const [name, wrong] of [
    ['fetchRemoteDevicesLogs', [[], ['x'], ['x', 1, 2]]],
    ['queryRemoteDevicesLogs', [[], ['a', 'b']]],
    ['queryProtocolData', [[], ['a', 'b', 'c']]],
  ]) {
    const operation = name[0].toUpperCase() + name.slice(1);
    for (const args of wrong) {
      const seen = await run(() => zelk[name](...args));
      assert.deepEqual([seen.returned, seen.thrown, seen.requests], [undefined, undefined, []]);
      assert.deepEqual(seen.lines,
        [`W FRAMEWORK: [${operation}]"param count is incorrect. expected=1z actual=${args.length}"`]);
    }
  }
  assert.deepEqual((await run(() => zelk.getRemoteDevicesList(1, 2, 3))).requests, [['GetRemoteDevicesList']]);
});

test('read their arguments as Node-API converts them', async () => {
  const INT64_MAX = '9223372036854775807';
  const zero = 'E ZELK_SERVICE: GetInt32: failed to get int32 value , so return zero';
  for (const [number, expected, line] of [
    [2 ** 53 + 2, '9007199254740994'], [-(2 ** 53), '-9007199254740992'], [2 ** 63, INT64_MAX], [1e300, INT64_MAX],
    [-1e300, '-9223372036854775808'], [NaN, '0'], [Infinity, '0'], [-Infinity, '0'], [2.9, '2'], [-2.9, '-2'],
    ['5', '0', zero], [undefined, '0', zero], [5n, '0', zero], [{}, '0', zero],
  ]) {
    const seen = await run(() => zelk.fetchRemoteDevicesLogs('r', number));
    assert.deepEqual(seen.requests, [['FetchRemoteDevicesLogs', 'r', expected]], String(number));
    assert.equal(seen.lines.includes(zero), line !== undefined, String(number));
  }
  assert.deepEqual((await run(() => zelk.queryRemoteDevicesLogs(7))).requests, [['QueryRemoteDevicesLogs', '']]);
  assert.deepEqual((await run(() => zelk.queryProtocolData('x'.repeat(8195)))).requests, [['QueryProtocolData', '']]);
});

test('a converter that gives null leaves the promise pending and the refusal uncaught', async () => {
  const seen = await keeps({ deferreds: 1 }, () => run(() => probes.execute('text', 0, 'null')));
  assert.equal(seen.pending, true);
  assert.equal(seen.uncaught.length, 1);
  assert.deepEqual(seen.lines.slice(-3), [
    'W FRAMEWORK: [OnCompleteCallback]"[Probe]reject deferred"',
    'I FRAMEWORK: [OnGlobalCompleteCallback]"leave"',
    'I FRAMEWORK: [~NapiContext]"[Probe]"',
  ]);
});

test('a context that cannot be queued is thrown and freed', async () => {
  for (const name of ['napi_create_promise', 'napi_create_string_utf8', 'napi_create_async_work']) {
    fail({ name, nth: 1 });
    const deferreds = name === 'napi_create_promise' ? 0 : 1;
    const seen = await keeps({ deferreds }, () => run(() => zelk.getRemoteDevicesList()));
    assert.deepEqual([seen.thrown.message, seen.requests], ['injected failure', []], name);
    assert.equal(seen.lines.at(-1), 'I FRAMEWORK: [~NapiContext]"[GetRemoteDevicesList]"');
  }
  for (const [thrown, ...plan] of [
    ['error at napi_queue_async_work', { name: 'napi_queue_async_work', nth: 1, status: 9 }],
    ['injected failure', { name: 'napi_queue_async_work', nth: 1, status: 9 }, { name: 'napi_throw_error', nth: 1 }],
  ]) {
    fail(...plan);
    const seen = await keeps({ deferreds: 1 }, () => run(() => zelk.getRemoteDevicesList()));
    assert.equal(seen.thrown.message, thrown);
    assert.equal(seen.lines[1],
      'I FRAMEWORK: [Execute]"[GetRemoteDevicesList]napi_queue_async_work fail: errorCode=9"');
  }
});
