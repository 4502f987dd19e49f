import { AWAY, E, INJECTED, noService, testCalls, W } from '../support/cases.mjs';
import { operation } from '../support/forms.mjs';

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
function testReading(name, rows) {
  const op = operation(name);
  testCalls(name, rows.map(([args, request, line, ...faults]) => ({
    args, service: {}, faults, request, resolved: '',
    lines: [...(line ? [E(line)] : []), ...framed(op, 0, [], resolving(op))],
  })));
}

const ZERO = 'GetInt32: failed to get int32 value , so return zero';
testReading('fetchRemoteDevicesLogs', [
  [2 ** 53 + 2, 9007199254740994n], [1e300, 2n ** 63n - 1n], [NaN, 0n], [-2.9, -2n],
  ['5', 0n, ZERO], [undefined, 0n, ZERO],
].map(([number, integer, ...line]) => [['r', number], ['r', integer], ...line]));

const LENGTH = 'GetString: len error';
const COPY = { name: 'napi_get_value_string_utf8', nth: 2 };
testReading('queryRemoteDevicesLogs', [
  ['x'.repeat(8194), 'x'.repeat(8194)],
  ['x'.repeat(8195), '', LENGTH],
  ['é'.repeat(4097) + 'x', '', LENGTH],
  ['', '', LENGTH],
  ['a\0b', 'a'],
  ['\ud800x', '\ufffdx'],
  [7, '', 'GetString: get len error'],
  ['x', '', 'failed to get string value', COPY],
].map(([text, read, ...line]) => [[text], [read], ...line]));
testReading('getRemoteDevicesList', [[[1, 2, 3], []]]);

// When a Node-API call fails the context is freed, and the promise stays pending.
const op = 'GetRemoteDevicesList';
const [MADE, FREED] = [F(`[NapiContext]"[${op}]"`), F(`[~NapiContext]"[${op}]"`)];
const UNQUEUED = F(`[Execute]"[${op}]napi_queue_async_work fail: errorCode=9"`);
const deferred = { deferreds: 1 };
const unmade = framed(op, 0, [], W(`[OnCompleteCallback]"[${op}]reject deferred"`));
testCalls('getRemoteDevicesList', [
  { faults: ['napi_create_promise'], thrown: INJECTED, lines: [MADE, FREED] },
  { faults: ['napi_create_async_work'], thrown: INJECTED, kept: deferred, lines: [MADE, FREED] },
  { faults: ['napi_queue_async_work'], thrown: '9: error at napi_queue_async_work', kept: deferred,
    lines: [MADE, UNQUEUED, FREED] },
  { faults: [{ name: 'napi_create_string_utf8', nth: 2 }], service: {}, request: [], pending: true,
    kept: deferred, uncaught: [INJECTED], lines: unmade },
].map((row) => ({ args: [], ...row })));
