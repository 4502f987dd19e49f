import assert from 'node:assert/strict';
import { test } from 'node:test';
import { AWAY, E, noService, testCalls, W } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';
import { fail, run, zelk } from '../support/zelk.mjs';

// The lines of a call in which those of its request and of its answer stand.
const F = (text) => `I FRAMEWORK: ${text}`;
const framed = (op, code, requesting, answering) => [
  F(`[NapiContext]"[${op}]"`),
  F('[OnGlobalExecuteCallback]"enter"'),
  ...requesting,
  F(`[OnExecuteCallback]"[${op}]errorcode=${code}"`),
  F('[OnGlobalExecuteCallback]"leave"'),
  F('[OnGlobalCompleteCallback]"enter"'),
  answering,
  F('[OnGlobalCompleteCallback]"leave"'),
  F(`[~NapiContext]"[${op}]"`),
];
const resolving = (op) => F(`[OnCompleteCallback]"[${op}]resolve deferred"`);
const rejecting = (op, code) => W(`[OnCompleteCallback]"[${op}]has some error[${code}], reject deferred"`);
const response = (text) => `I PROTOCOL: [operator()]"napi callback into response : ${text}"`;
const ASKED = ['E FRAMEWORK: [QueryProtocolData]"get proxy success. request:req"', response('reply')];

// The answer is the text of the reply, also when the request fails.
for (const { name, args, request = args, asked = [], unasked = [] } of [
  { name: 'fetchRemoteDevicesLogs', args: ['req', 5], request: ['req', 5n] },
  { name: 'queryRemoteDevicesLogs', args: ['req'] },
  { name: 'getRemoteDevicesList', args: [] },
  { name: 'queryProtocolData', args: ['req'], asked: ASKED, unasked: [response('')] },
]) {
  const op = operation(name);
  const answer = 'reply\0é';
  const done = framed(op, 0, asked, resolving(op));
  const failed = framed(op, 5, asked, rejecting(op, 5));
  const lost = framed(op, 1, [noService(op), ...unasked], rejecting(op, 1));
  testCalls(name, [
    { args, service: { answer }, request, resolved: answer, lines: done },
    { args, service: { code: 5, answer }, request, rejected: answer, lines: failed },
    { args, service: AWAY, rejected: '', lines: lost },
  ]);
}

// Three require their exact number of arguments, and log 1 for every number.
for (const [name, ...wrong] of [
  ['fetchRemoteDevicesLogs', [], ['x'], ['x', 1, 2]],
  ['queryRemoteDevicesLogs', [], ['a', 'b']],
  ['queryProtocolData', [], ['a', 'b', 'c']],
]) {
  const complaint = `[${operation(name)}]"param count is incorrect. expected=1z`;
  testCalls(name, wrong.map((args) => ({ args, lines: [W(`${complaint} actual=${args.length}"`)] })));
}

// Arguments are read as Node-API converts them: arguments, those of the request, and the line of an error.
function testReading(title, name, args, request, line, ...faults) {
  test(`${name} reads ${title}`, async () => {
    fail(...faults);
    const { requests, lines } = await run(() => zelk[name](...args));
    const errors = lines.filter((each) => each.startsWith('E'));
    assert.deepEqual({ requests, errors },
      { requests: [[operation(name), ...request]], errors: line ? [E(line)] : [] });
  });
}

const ZERO = 'GetInt32: failed to get int32 value , so return zero';
for (const [number, integer, line] of [
  [2 ** 53 + 2, 9007199254740994n], [1e300, 2n ** 63n - 1n], [NaN, 0n], [-2.9, -2n],
  ['5', 0n, ZERO], [undefined, 0n, ZERO],
]) {
  testReading(`the number ${number}`, 'fetchRemoteDevicesLogs', ['r', number], ['r', integer], line);
}

const LENGTH = 'GetString: len error';
const READ = { name: 'napi_get_value_string_utf8', nth: 2 };
for (const [title, text, expected, ...line] of [
  ['8194 bytes', 'x'.repeat(8194), 'x'.repeat(8194)],
  ['8195 bytes', 'x'.repeat(8195), '', LENGTH],
  ['8195 bytes of 4098 characters', 'é'.repeat(4097) + 'x', '', LENGTH],
  ['an empty text', '', '', LENGTH],
  ['a text up to its first NUL', 'a\0b', 'a'],
  ['half a surrogate pair', '\ud800x', '\ufffdx'],
  ['what is no text', 7, '', 'GetString: get len error'],
  ['a text that cannot be copied', 'x', '', 'failed to get string value', READ],
]) {
  testReading(title, 'queryRemoteDevicesLogs', [text], [expected], ...line);
}
testReading('none of its arguments', 'getRemoteDevicesList', [1, 2, 3], []);

// When a Node-API call fails the context is freed, and the promise stays pending.
const op = 'GetRemoteDevicesList';
const [MADE, FREED] = [F(`[NapiContext]"[${op}]"`), F(`[~NapiContext]"[${op}]"`)];
const UNQUEUED = F(`[Execute]"[${op}]napi_queue_async_work fail: errorCode=9"`);
const thrown = 'injected failure';
testCalls('getRemoteDevicesList', [
  ['napi_create_promise', thrown, 0, [MADE, FREED]],
  ['napi_create_async_work', thrown, 1, [MADE, FREED]],
  ['napi_queue_async_work', '9: error at napi_queue_async_work', 1, [MADE, UNQUEUED, FREED]],
].map(([call, error, deferreds, lines]) => (
  { args: [], faults: [call], thrown: error, kept: { deferreds }, lines })));
testCalls('getRemoteDevicesList', [
  {
    args: [],
    service: {},
    faults: [{ name: 'napi_create_string_utf8', nth: 2 }],
    request: [],
    pending: true,
    kept: { deferreds: 1 },
    uncaught: [thrown],
    lines: framed(op, 0, [], W(`[OnCompleteCallback]"[${op}]reject deferred"`)),
  },
]);
