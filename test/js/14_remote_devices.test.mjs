import assert from 'node:assert/strict';
import { test } from 'node:test';
import { AWAY, E, testCalls, W } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

const F = (text) => `I FRAMEWORK: ${text}`;
const begun = (op) => [F(`[NapiContext]"[${op}]"`), F('[OnGlobalExecuteCallback]"enter"')];
const worked = (op, code) => [
  F(`[OnExecuteCallback]"[${op}]errorcode=${code}"`),
  F('[OnGlobalExecuteCallback]"leave"'),
  F('[OnGlobalCompleteCallback]"enter"'),
];
const ended = (op) => [F('[OnGlobalCompleteCallback]"leave"'), F(`[~NapiContext]"[${op}]"`)];
const resolving = (op) => F(`[OnCompleteCallback]"[${op}]resolve deferred"`);
const rejecting = (op, code) => W(`[OnCompleteCallback]"[${op}]has some error[${code}], reject deferred"`);
const response = (text) => `I PROTOCOL: [operator()]"napi callback into response : ${text}"`;

// Everyone is answered with the text of the reply, also when the request fails.
for (const { name, request, asked = [], gone = [] } of [
  { name: 'fetchRemoteDevicesLogs', request: ['req', 5] },
  { name: 'queryRemoteDevicesLogs', request: ['req'] },
  { name: 'getRemoteDevicesList', request: [] },
  {
    name: 'queryProtocolData',
    request: ['req'],
    asked: ['E FRAMEWORK: [QueryProtocolData]"get proxy success. request:req"', response('reply')],
    gone: [response('')],
  },
]) {
  const op = operation(name);
  const answer = 'reply\0é';
  const row = { args: request, request: request.map((each) => (each === 5 ? 5n : each)) };
  testCalls(name, [
    {
      ...row,
      service: { answer },
      resolved: answer,
      lines: [...begun(op), ...asked, ...worked(op, 0), resolving(op), ...ended(op)],
    },
    {
      ...row,
      service: { code: 5, answer },
      rejected: answer,
      lines: [...begun(op), ...asked, ...worked(op, 5), rejecting(op, 5), ...ended(op)],
    },
    {
      args: request,
      service: AWAY,
      rejected: '',
      lines: [
        ...begun(op), W(`[${op}]"get proxy fail."`), ...gone, ...worked(op, 1), rejecting(op, 1), ...ended(op),
      ],
    },
  ]);
}

// Each requires its exact number of arguments, and logs 1 for every number.
for (const { name, wrong } of [
  { name: 'fetchRemoteDevicesLogs', wrong: [[], ['x'], ['x', 1, 2]] },
  { name: 'queryRemoteDevicesLogs', wrong: [[], ['a', 'b']] },
  { name: 'queryProtocolData', wrong: [[], ['a', 'b', 'c']] },
]) {
  testCalls(name, wrong.map((args) => {
    const counts = `expected=1z actual=${args.length}`;
    return { args, lines: [W(`[${operation(name)}]"param count is incorrect. ${counts}"`)] };
  }));
}

// Arguments are read as Node-API converts them: what is requested, and the error line.
const MAX = 2n ** 63n - 1n;
const ZERO = 'GetInt32: failed to get int32 value , so return zero';
const LENGTH = 'GetString: len error';
const SECOND_READ = { name: 'napi_get_value_string_utf8', nth: 2 };
for (const { title, name = 'queryRemoteDevicesLogs', args, request, line, faults = [] } of [
  ...[
    [2 ** 53 + 2, 9007199254740994n], [-(2 ** 53), -9007199254740992n], [2 ** 63, MAX], [1e300, MAX],
    [-1e300, -(2n ** 63n)], [NaN, 0n], [-Infinity, 0n], [-2.9, -2n], ['5', 0n, ZERO], [undefined, 0n, ZERO],
  ].map(([number, integer, line]) => (
    { title: number, name: 'fetchRemoteDevicesLogs', args: ['r', number], request: ['r', integer], line })),
  { title: 'surplus arguments', name: 'getRemoteDevicesList', args: [1, 2, 3], request: [] },
  { title: 'a text of 8194 bytes', args: ['x'.repeat(8194)], request: ['x'.repeat(8194)] },
  { title: 'one of two bytes each', args: ['é'.repeat(4097)], request: ['é'.repeat(4097)] },
  { title: 'a text of 8195 bytes', args: ['x'.repeat(8195)], request: [''], line: LENGTH },
  { title: 'one of two bytes but for the last', args: ['é'.repeat(4097) + 'x'], request: [''], line: LENGTH },
  { title: 'an empty text', args: [''], request: [''], line: LENGTH },
  { title: 'a text with a NUL', args: ['a\0b'], request: ['a'] },
  { title: 'half a surrogate pair', args: ['\ud800x'], request: ['\ufffdx'] },
  { title: 'no text', args: [7], request: [''], line: 'GetString: get len error' },
  { title: 'no bytes', args: ['x'], request: [''], line: 'failed to get string value', faults: [SECOND_READ] },
]) {
  test(`${name} reads ${title}`, async () => {
    fail(...faults);
    const { requests, lines } = await run(() => zelk[name](...args));
    assert.deepEqual({ requests, errors: lines.filter((each) => each.startsWith('E')) },
      { requests: [[operation(name), ...request]], errors: line ? [E(line)] : [] });
  });
}

// The lines about Node-API calls that fail. The context is freed, and the deferred stays.
const op = 'GetRemoteDevicesList';
const thrown = 'injected failure';
testCalls('getRemoteDevicesList', [
  { faults: [{ name: 'napi_create_promise' }], thrown, left: 0 },
  { faults: [{ name: 'napi_create_async_work' }], thrown },
  {
    faults: [{ name: 'napi_queue_async_work' }],
    thrown: '9: error at napi_queue_async_work',
    lines: [F(`[Execute]"[${op}]napi_queue_async_work fail: errorCode=9"`)],
  },
].map(({ faults, thrown, lines = [], left = 1 }) => ({
  args: [],
  faults,
  thrown,
  kept: { deferreds: left },
  lines: [F(`[NapiContext]"[${op}]"`), ...lines, F(`[~NapiContext]"[${op}]"`)],
})));
testCalls('getRemoteDevicesList', [
  {
    args: [],
    faults: [{ name: 'napi_create_string_utf8', nth: 2 }],
    service: { answer: '' },
    request: [],
    pending: true,
    kept: { deferreds: 1 },
    uncaught: [thrown],
    lines: [
      ...begun(op), ...worked(op, 0), W(`[OnCompleteCallback]"[${op}]reject deferred"`), ...ended(op),
    ],
  },
]);
