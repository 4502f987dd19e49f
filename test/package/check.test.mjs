// zelklog check, and what zelklog says of a call that broke off: which method is wrong, and what came.
import assert from 'node:assert/strict';
import { once } from 'node:events';
import { after, test } from 'node:test';
import { running, start, startBus, stop } from '../support/bus.mjs';
import { folder, hasTerminals, onTerminal, serving, startMuteBus, zelklog } from '../support/command.mjs';
import { hasBus, root, run } from '../support/system.mjs';

after(() => running.forEach((child) => stop(child)));

// The methods that are not ok or skipped, as { method: [verdict, received, expected] }.
const faultsIn = (results) => Object.fromEntries(results.filter(({ verdict }) => !/ok|skipped/.test(verdict))
  .map(({ method, verdict, received, expected }) => [method, [verdict, received, expected]]));

const NEVER = '() => new Promise(() => {})';
const items = (...texts) => `() => ${JSON.stringify(texts)}`;
const SILENT = ['HandleModemLogSwitch', 'GetTcpdumpConfig', 'HandleTcpdumpSwitch', 'GetRemoteDevicesList'];
const LATE = SILENT.flatMap((name) => (name.endsWith('Switch') ? [name, `${name}WithConfigs`] : name));
const AN_OBJECT = 'the JSON text of an object';
const GONE = ['wrong', 'the service is gone', 'an answer'];

// Handlers of a service, the faults that are found in it, and the time limit.
const SERVICES = [
  [`GetModemLogDirectPackConfig: () => '', GetTcpdumpStatus: () => { throw new ServiceError(5, true); },
    GetModemLogConfig: ${items('{"configKey":"k","value":{}}')}, GetTcpdumpConfig: ${items('{}', '{}')},
    GetModemLogLogMasks: ${items('{"configKey":"\u009b","value":"0x0"}', '{"configKey":"\u009b",}')},
    GetModemLogStatus: () => globalThis.isOn ?? false, SendModemLogCommand: () => false,
    HandleModemLogSwitch: (on, configs) => { if (configs) globalThis.isOn = on; return true; }`, {
    GetModemLogConfig: ['wrong', '{"configKey":"k","value":{}}', 'a "configKey" and a "value", both strings'],
    GetModemLogLogMasks: ['wrong', String.raw`{"configKey":"\u009b",}`, AN_OBJECT],
    HandleModemLogSwitch: ['wrong', 'GetModemLogStatus then answers false', 'true'],
    SendModemLogCommand: ['wrong', 'false', 'true'],
    GetTcpdumpStatus: ['wrong', 'code 5 and true', 'code 0'],
    GetTcpdumpConfig: ['wrong', '2 texts', 'one text for each key: 1'],
  }],
  [`GetModemLogLogMasks: () => [], GetModemLogStatus: () => true, ChangeTcpdumpConfig: () => true,
    GetModemLogConfig: ${items('{"configKey":"k","value":"[]"}')}, GetRemoteDevicesList: () => undefined`, {
    GetModemLogConfig: ['wrong', '{"configKey":"k","value":"[]"}', `a "value" that is ${AN_OBJECT}`],
    GetModemLogLogMasks: ['wrong', 'an empty list', 'at least one text'],
    GetModemLogStatus: ['wrong', 'after HandleModemLogSwitch: true', 'false'],
    ChangeTcpdumpConfig: ['wrong', /^GetTcpdumpConfig then answers \{/, /"flag":true/],
    GetRemoteDevicesList: ['wrong', 'no answer', 'a string'],
  }],
  [`GetModemLogConfig: ${items('{"configKey":"k","value":"{}"}')},
    QueryRemoteDevicesLogs: () => { service.leave(); return ''; }`, {
    GetModemLogConfig:
      ['wrong', 'after HandleModemLogSwitchWithConfigs: {"configKey":"k","value":"{}"}', /"flag":true/],
    GetRemoteDevicesList: GONE,
    QueryProtocolData: GONE,
  }],
  [SILENT.map((name) => `${name}: ${NEVER}`).join(),
    Object.fromEntries(LATE.map((name) => [name, ['wrong', 'no answer within 0.6 s', 'an answer']])), 0.6],
];

test('a check with changes finds what is wrong, and only that', async () => {
  for (const [handlers, expected, seconds = 20] of SERVICES) {
    const { status, stdout, stderr } =
      await zelklog(`check --changes --json --timeout ${seconds}`, serving(handlers));
    const results = JSON.parse(stdout);
    const faults = faultsIn(results);
    assert.deepEqual(Object.keys(faults).sort(), Object.keys(expected).sort(), handlers);
    for (const [method, words] of Object.entries(expected)) {
      words.forEach((word, i) => (word instanceof RegExp
        ? assert.match(faults[method][i], word, handlers)
        : assert.equal(faults[method][i], word, handlers)));
    }
    assert.deepEqual([results.length, status, stderr], [18, 1, '']);
  }
});

test('zelk-log-service is right, and is as before afterwards', { skip: !hasBus }, () => {
  const { status, stdout } = run('scripts/with_service.sh', ['bash', '-ec', `
    bin/zelklog tcpdump on; bin/zelklog check; bin/zelklog check --changes --key 'a"b' --request é;
    bin/zelklog modem status; bin/zelklog tcpdump status`], { cwd: root });
  const verdicts = stdout.match(/^\w+/gm);
  assert.deepEqual([status, verdicts.filter((verdict) => verdict === 'ok').length], [0, 10 + 18], stdout);
  assert.deepEqual(verdicts.slice(-2), ['off', 'on']);
  assert.match(stdout, /^ok {7}GetTcpdumpConfig +\["{\\"configKey\\":\\"a\\\\\\"b/m);
  assert.match(stdout, /^ok {7}QueryProtocolData +{"request":"é","data":""}$/m);
});

const hasPython = hasBus && run('/usr/bin/python3', ['-c', 'import dbus, gi']).status === 0;
test('a foreign service is told what is missing, wrong and late', { skip: !hasPython }, async () => {
  const address = `unix:path=${folder}/python`;
  await startBus(address);
  const service = start('/usr/bin/python3', `${root}test/support/faulty_service.py`, address);
  await once(service.stdout, 'data');
  const env = { ZELK_LOG_SERVICE: address };
  const UNKNOWN = 'org.freedesktop.DBus.Error.UnknownMethod: ';
  for (const [words, status, message] of [
    ['modem status', 1, / failed: .* service answers GetModemLogStatus with the types "ii", not "ib"$/],
    ['tcpdump on', 124, / gave no answer: the log service has no method HandleTcpdumpSwitch \(/],
    ['remote query q', 1, / QueryRemoteDevicesLogs with an error \([\w.]*TypeError: last line\)$/],
  ]) {
    const seen = await zelklog(words, env);
    assert.deepEqual([seen.status, seen.stdout], [status, ''], words);
    assert.match(seen.stderr.trimEnd(), message);
  }
  process.env.ZELK_LOG_SERVICE = address;
  const { request } = await import('zelklogservice/testing');
  assert.deepEqual(await request('GetModemLogStatus'), { code: 1004, answer: undefined, why: {
    text: 'the answer has the types "ii", not "ib"', received: 'ii', expected: 'ib',
  } });
  const { code, why: { text, ...why } } = await request('GetModemLogLogMasks');
  assert.deepEqual([code, text.startsWith(UNKNOWN), why], [1003, true, { error: UNKNOWN.slice(0, -2) }]);

  const { status, stdout } = await zelklog('check --json --timeout 5', env);
  const results = JSON.parse(stdout);
  const { GetModemLogConfig: missing, QueryRemoteDevicesLogs: failed, ...faults } = faultsIn(results);
  assert.ok(missing[0] === 'missing' && missing[1].startsWith(UNKNOWN) && missing[2] === undefined, missing);
  assert.ok(failed[0] === 'wrong' && failed[1].endsWith('TypeError: last line'), failed);
  assert.deepEqual([faults.GetModemLogStatus, faults.GetTcpdumpConfig, faults.GetRemoteDevicesList,
    faults.QueryProtocolData], [['wrong', 'the types "ii"', 'the types "ib"'],
    ['wrong', 'no answer within 5 s', 'an answer'], GONE, GONE]);
  const [{ verdict, received }] = results.filter(({ method }) => method === 'FetchRemoteDevicesLogs');
  assert.deepEqual([verdict, received, status], ['ok', `${String.raw`\u001b`.repeat(33)}…`, 1]);
});

test('without a log service, a check says why', { skip: !hasBus }, async (t) => {
  for (const [place, stdout, why] of [
    ['none', '', 'the log service is switched off (ZELK_LOG_SERVICE=none)'],
    [`unix:path=${folder}/nothing`, '[]\n', 'the bus cannot be reached: No such file or directory'],
    [await startMuteBus(t), '[]\n', 'no answer within 0.5 s'],
  ]) {
    const option = stdout === '' ? '--changes' : '--json';
    const seen = await zelklog(`check --timeout 0.5 ${option}`, { ZELK_LOG_SERVICE: place });
    const stderr = `zelklog: no log service was reached (ZELK_LOG_SERVICE): ${why}\n`;
    assert.deepEqual(seen, { pid: seen.pid, status: 1, stdout, stderr });
  }
});

test('a method that takes its time is named on a terminal', { skip: !hasTerminals }, () => {
  const stdout = onTerminal('check --timeout 1.5', serving(`GetTcpdumpStatus: ${NEVER}`));
  assert.deepEqual(stdout.match(/waiting for \w+/g), ['waiting for GetTcpdumpStatus']);
});
