// The command line: the requests, the output and the exit status of each command, what a check says of a log
// service, and what zelklog says of a call that broke off.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { join } from 'node:path';
import { text } from 'node:stream/consumers';
import { after, test } from 'node:test';
import { parseItem } from '../../bin/items.js';
import { running, start as startProcess, startBus, stop } from '../support/bus.mjs';
import { hasBus, root, run, temporaryFolder } from '../support/system.mjs';

after(() => running.forEach((child) => stop(child)));

const program = `${root}bin/zelklog`;
const folder = temporaryFolder();
const PLAIN = { ZELK_LOG_SERVICE: '', OHOS_FULL_TOKEN_ID: '', HILOG_LEVEL: '', HILOG_FILE: '' };

// Ends before a call that is never answered does.
const start = (words, env) => spawn(process.execPath, [program, ...words.split(' ')],
  { env: { ...process.env, ...PLAIN, ...env }, timeout: 22_000 });

async function zelklog(words, env) {
  const child = start(words, env);
  const closed = once(child, 'close');
  const [stdout, stderr] = await Promise.all([text(child.stdout), text(child.stderr)]);
  const [status, signal] = await closed;
  return { pid: child.pid, status: status ?? signal, stdout, stderr };
}

const hasTerminals = run('script', ['-qec', 'true', '/dev/null']).status === 0;

// What a terminal shows.
function onTerminal(words, env) {
  const command = `"$NODE" "$PROGRAM" ${words}`;
  const settings = { NODE: process.execPath, PROGRAM: program, ...env };
  return run('script', ['-qec', command, '/dev/null'], { env: settings }).stdout;
}

// The settings under which the command runs this code first.
function preloading(code) {
  const file = join(mkdtempSync(`${folder}/`), 'first.cjs');
  writeFileSync(file, code);
  return { NODE_OPTIONS: `${process.env.NODE_OPTIONS ?? ''} --require=${file}` };
}

// Those under which it finds a log service with these handlers, the members of an object.
const serving = (handlers) => preloading(`
  const { logService, ServiceError } = require(${JSON.stringify(`${root}testing/testing.js`)});
  const service = logService({ ${handlers} });`);

// The address of a bus that accepts connections and sends nothing.
async function startMuteBus(t) {
  const server = createServer().listen(`${folder}/mute`);
  t.after(() => server.close());
  await once(server, 'listening');
  return `unix:path=${folder}/mute`;
}

// Makes a test of each row, named by its first field.
const each = (t, rows, check) =>
  Promise.all(rows.map((row) => t.test(row[0].slice(0, 80), () => check(...row))));
const TWO_AT_A_TIME = { concurrency: 2 };

// The settings under which the command finds a log service with these answers, {Operation: answer} or, of one
// that fails, {Operation: {code, answer}}, which reports each request on standard error.
const answering = (answers) => serving(`
  ...Object.fromEntries(Object.entries(${JSON.stringify(answers)}).map(([operation, answer]) => [
    operation, (...args) => {
      console.error([operation, ...args.map((each) => typeof each + ' ' + each)].join('; '));
      if (answer?.code) {
        throw new ServiceError(answer.code, answer.answer);
      }
      return answer ?? undefined;
    }]))`);

const CHANGED = '\nzelklog: note: this was for the embedded log service, which ends with this command; ' +
  'ZELK_LOG_SERVICE=session or system reaches one that stays';
const unsupported = (name) =>
  `\nzelklog: note: ${name} is marked as not supported at present; the log service answered`;
const ITEM = '{"configKey":"a","value":{"x":1}}';

// Each command, the answer that it gets, what it prints, and its request with the note about it.
const COMMANDS = [
  ['modem status', true, 'on', 'GetModemLogStatus'],
  ['modem config get a b', ['{"configKey":"a","value":"{\\"x\\":1}"}', '{"configKey":"b","value":"{}"}'],
    'a\n  x = 1\nb\n  (nothing set)', 'GetModemLogConfig; object a,b'],
  ['modem masks', ['{"configKey":"ap","value":"0x0"}', '{}'], 'ap 0x0\n(missing) (missing)',
    `GetModemLogLogMasks${unsupported('getModemLogLogMasks')}`],
  ['modem direct-pack', 'text', 'text',
    `GetModemLogDirectPackConfig${unsupported('getModemLogDirectPackConfig')}`],
  ['modem off --item a x=1', false, 'not accepted',
    `HandleModemLogSwitch; boolean false; object ${ITEM}${CHANGED}`],
  ['modem config set a x=1 --item b=c y=2 --item=d z=3', true, 'accepted', `ChangeModemLogConfig; object ` +
  `${ITEM},{"configKey":"b=c","value":{"y":2}},{"configKey":"d","value":{"z":3}}${CHANGED}`],
  ['modem command a x=1', true, 'accepted', `SendModemLogCommand; string ${ITEM}${CHANGED}`],
  ['tcpdump status', false, 'off', 'GetTcpdumpStatus'],
  ['tcpdump config get c', ['{}'], '(missing)\n  (nothing set)', 'GetTcpdumpConfig; object c'],
  ['tcpdump on', true, 'accepted', `HandleTcpdumpSwitch; boolean true${CHANGED}`],
  ['tcpdump config set --item a x=1', true, 'accepted', `ChangeTcpdumpConfig; object ${ITEM}${CHANGED}`],
  ['bluetooth-pcm on', null, 'done', `HandleBluetoothCallPcmLogSwitch; boolean true${CHANGED}`],
  ['bluetooth-pcm off --json', null, 'false', `HandleBluetoothCallPcmLogSwitch; boolean false${CHANGED}`],
  ['remote list', 'text', 'text', 'GetRemoteDevicesList'],
  ['remote query q', 'text', 'text', 'QueryRemoteDevicesLogs; string q'],
  ['remote fetch r -- -9007199254740991', 'text', 'text',
    'FetchRemoteDevicesLogs; string r; bigint -9007199254740991'],
  ['protocol p', 'text', 'text', 'QueryProtocolData; string p'],
];

test('each command makes its request and prints the answer', TWO_AT_A_TIME, (t) =>
  each(t, COMMANDS, async (words, answer, output, request) => {
    const [operation] = /^\w+/.exec(request);
    const { status, stdout, stderr } = await zelklog(words, answering({ [operation]: answer }));
    assert.deepEqual([status, stdout, stderr], [0, `${output}\n`, `${request}\n`]);
  }));

test('log lines are shown when asked, as the log writes them, unless they go to a file', async () => {
  const { pid, stderr } = await zelklog('modem status --verbose');
  const id = String(pid).padStart(5);
  const begins = (thread) =>
    `^\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} ${id} ${thread} I C02d19/ZELK_SERVICE: `;
  assert.match(stderr, new RegExp(`${begins(id)}HandleAsyncWork: workName = `));
  assert.match(stderr, new RegExp(`${begins(`(?!${id})[ \\d]{5,}`)}\\[ZelkLogServiceClient\\]`, 'm'));
  assert.equal((await zelklog('modem status --verbose', { HILOG_LEVEL: 'F' })).stderr, '');
  const file = `${folder}/lines`;
  assert.equal((await zelklog('modem status', { HILOG_LEVEL: 'I', HILOG_FILE: file })).stderr, '');
  assert.match(readFileSync(file, 'utf8'), / I C02d19\/ZELK_SERVICE: HandleAsyncWork: end\n/);
});

// What a terminal would obey, how it is shown, and how in JSON.
const HOSTILE = '\u001b]0;x\u0007\t\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069';
const SHOWN = String.raw`\u001b]0;x\u0007\u0009\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069`;
const OBEYED = /[^\P{Other}\n]/u; // Controls and marks of direction, but no line feed.

test('characters that a terminal would obey are shown, wherever they come from', TWO_AT_A_TIME, (t) => {
  const value = { [HOSTILE]: `${HOSTILE}\n` };
  const item = { configKey: `${HOSTILE}\n`, value: JSON.stringify(value) };
  const env = answering({
    GetModemLogConfig: [JSON.stringify(item)],
    QueryProtocolData: `${HOSTILE}\n`,
    QueryRemoteDevicesLogs: { code: 5, answer: HOSTILE },
  });
  return each(t, [
    ['modem config get k', env, `${SHOWN}\\u000a\n  ${SHOWN} = "`],
    ['modem config get k --json', env, String.raw`"configKey":"\u001b]0;x\u0007\t\u007f`],
    ['remote query q', env, 'x\\u0007'],
    ['HOSTILE', env, `unknown command '${SHOWN}'`],
    ['protocol HOSTILE', env, `${SHOWN}\n\n`],
    ['protocol HOSTILE --json', { HILOG_LEVEL: 'I', HILOG_FILE: `/no/${HOSTILE}` }, `request:${SHOWN}"\n`],
    ['protocol \n --verbose', env, 'request:\\n"\n'],
  ], async (words, settings, expected) => {
    const { stdout, stderr } = await zelklog(words.replace('HOSTILE', HOSTILE), settings);
    const shown = stdout + stderr.replace(/^Query.*; .*$/m, ''); // But for the request.
    assert.doesNotMatch(shown, OBEYED);
    assert.ok(shown.includes(expected), shown);
  });
});

test('output that cannot be written exits with 1, silently if nobody is there to read', () => {
  const ends = (redirection) => {
    const command = `set -o pipefail; "$0" "$1" modem status ${redirection}; echo "ended with $?" >&2`;
    return run('bash', ['-c', command, process.execPath, program]).stderr;
  };
  assert.match(ends('>/dev/full'), /^zelklog: cannot write to standard output: ENOSPC: .*\nended with 1\n$/);
  assert.equal(ends('| true'), 'ended with 1\n');
  assert.equal(ends('--verbose 2>/dev/full'), 'ended with 0\n');
});

// The words of an item, and what they become.
const ITEMS = [
  [['t=true', 'f=false', 'n=-42', 's=on'], { t: true, f: false, n: -42, s: 'on' }],
  [['x="42"', 'y="', 'z=1.5', 'e=', 'w=a=b'], { x: '42', y: '"', z: '1.5', e: '', w: 'a=b' }],
  [['x=[1,2]', 'y:=[true]', 'z:=7', 'v:="[1]"'], { x: [1, 2], y: [true], z: 7, v: '[1]' }],
  [['min=-2147483648', 'max=2147483647'], { min: -2147483648, max: 2147483647 }],
];
const WRONG_ITEMS = [
  ['=x', /^"=x" is not of the form key=value$/],
  ['x=2147483648', /^x: 2147483648 is not a whole number of 32 bits/],
  ['x:=1.5', /^x: 1.5 is not a whole number/],
  ['x:=[', /^x: \[ is not JSON/],
  ...['x=["b"]', 'x=[1,true]', 'x=[]'].map((word) =>
    [word, /^x: only arrays of booleans and arrays of numbers/]),
  ...['x:={"y":1}', 'x:=null'].map((word) => [word, /^x: a value is a boolean/]),
];

test('items have the types as typed, or are refused', () => {
  for (const [words, value] of ITEMS) {
    assert.deepEqual(parseItem(['a', ...words]), { configKey: 'a', value });
  }
  for (const [word, message] of WRONG_ITEMS) {
    assert.throws(() => parseItem(['a', word]), { message }, word);
  }
});

const USAGE = [
  ['modem', /Usage: zelklog modem/],
  ['modem status extra', /too many arguments/],
  ['modem config get', /missing required argument 'KEY'/],
  ['modem config set', /give at least one item/],
  [`protocol ${'é'.repeat(4098)}`, /the request is longer than 8194 bytes/],
  ['remote fetch r 1.5', /Not a whole number/],
  ['remote fetch r 9007199254740993', /Too large: .* 9007199254740991\./],
  ['modem status --timeout 0', /Not a number of seconds/],
];

test('a wrong command line ends with 2 and says why, and nothing is called', TWO_AT_A_TIME, (t) =>
  each(t, USAGE, async (words, message) => {
    const { status, stdout, stderr } = await zelklog(words, { HILOG_LEVEL: 'D' });
    assert.deepEqual([status, stdout], [2, '']);
    assert.match(stderr, message);
    assert.doesNotMatch(stderr, /C02d19/);
  }));

test('the help of each command shows what holds for all', async () => {
  const { status, stdout } = await zelklog('remote fetch --help');
  assert.equal(status, 0);
  for (const common of ['--json', '--timeout <SECONDS>', 'ZELK_LOG_SERVICE', 'HILOG_LEVEL']) {
    assert.ok(stdout.includes(`\n  ${common} `), common);
  }
});

const NO_RIGHTS = { OHOS_FULL_TOKEN_ID: '1' };
const SETTINGS = {
  'no service and a log file': { ZELK_LOG_SERVICE: 'none', HILOG_LEVEL: 'F', HILOG_FILE: `${folder}/log` },
  'no service and no such level': { ZELK_LOG_SERVICE: 'none', HILOG_LEVEL: 'w' },
  'a service that fails': answering({ GetModemLogStatus: { code: 5 }, HandleTcpdumpSwitch: { code: 5 } }),
  'no rights': NO_RIGHTS,
  'a module that throws': preloading(`
    const functions = new Proxy({}, { get: () => () => { throw new Error('own'); } });
    require.cache[${JSON.stringify(`${root}js/index.js`)}] = { exports: functions, loaded: true };`),
};
const NOT_REACHED = 'no log service was reached (ZELK_LOG_SERVICE)';
const REFUSED = 'was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)';
const WRONG_LEVEL =
  'zelklogservice: HILOG_LEVEL="w": not one of D, I, W, E, F and X; no lines are written\n';

// Calls that end without an answer: the words and the settings, the exit status, the message, and what stands
// before it.
const FAILURES = [
  ['modem status, no service and a log file', 1, `getModemLogStatus failed: ${NOT_REACHED}`],
  ['modem status, no service and no such level', 1, `getModemLogStatus failed: ${NOT_REACHED}`, WRONG_LEVEL],
  ['modem masks, no service and a log file', 124, `getModemLogLogMasks gave no answer: ${NOT_REACHED}`],
  ['modem status, a service that fails', 1,
    'getModemLogStatus failed: the log service reported an error; its answer was false',
    'GetModemLogStatus\n'],
  ['tcpdump on, a service that fails', 124,
    'handleTcpdumpSwitch gave no answer: the log service reported an error or had nothing to answer',
    'HandleTcpdumpSwitch; boolean true\n'],
  ['modem direct-pack, no rights', 1, `getModemLogDirectPackConfig ${REFUSED}`],
  ['modem masks, a module that throws', 1, 'getModemLogLogMasks threw an error: own'],
];

test('a call without an answer ends, with one line and its own status', TWO_AT_A_TIME, (t) =>
  each(t, FAILURES, async (name, status, message, before = '') => {
    const [words, settings] = name.split(', ');
    const seen = await zelklog(words, SETTINGS[settings]);
    assert.deepEqual([seen.status, seen.stdout, seen.stderr], [status, '', `${before}zelklog: ${message}\n`]);
  }));

test('what ends the command before its call is said', async () => {
  const refused = await zelklog('modem status', { ...NO_RIGHTS, ZELK_LOG_SERVICE: 'bogus' });
  assert.match(refused.stderr, /^zelklogservice: ZELK_LOG_SERVICE="bogus".*no service\nzelklog: .* refused/);
  const unbuilt = await zelklog('modem status', { ZELKLOGSERVICE_BUILD: 'nowhere' });
  assert.equal(unbuilt.status, 1);
  assert.match(unbuilt.stderr, /^zelklogservice: .*nowhere.* does not exist: run .*\n$/);
});

test('a call that hangs ends at a signal or with its time, read or not', { skip: !hasBus }, async (t) => {
  const env = { ZELK_LOG_SERVICE: await startMuteBus(t) };
  const soon = (emitter, event) => once(emitter, event, { signal: AbortSignal.timeout(10_000) }); // Not 25 s.
  const interrupted = start('modem status --verbose', env);
  await soon(interrupted.stderr, 'data');
  interrupted.kill('SIGINT');
  assert.deepEqual(await soon(interrupted, 'exit'), [null, 'SIGINT']);

  const loud = preloading(`
    const { write } = process.stderr;
    process.stderr.write = function (text, done) {
      return write.call(this, text.replace('zelklog:', 'x'.repeat(1e6) + 'zelklog:'), done);
    };`);
  const hang = () => start('modem status --timeout 0.5 --verbose', { ...env, ...loud });
  const late = hang();
  const [shown] = await Promise.all([text(late.stderr), soon(late, 'exit')]);
  assert.match(shown, /HandleAsyncWork: end\n(.*\n)?x+zelklog: .* no answer within 0.5 s \(--timeout\)\n$/);
  assert.equal(late.exitCode, 124);
  assert.deepEqual(await soon(hang(), 'exit'), [124, null]); // Nobody reads.
});

test('colours appear on a terminal only, and not with NO_COLOR', { skip: !hasTerminals }, () => {
  for (const [NO_COLOR, output] of [['', '\u001b[32maccepted\u001b[39m\r\n'], ['1', 'accepted\r\n']]) {
    assert.equal(onTerminal('modem on 2>/dev/null', { NO_COLOR }), output);
  }
});

// The methods that are not ok or skipped, as { method: [verdict, received, expected] }.
const faultsIn = (results) => Object.fromEntries(results.filter(({ verdict }) => !/ok|skipped/.test(verdict))
  .map(({ method, verdict, received, expected }) => [method, [verdict, received, expected]]));

const NEVER = '() => new Promise(() => {})';
const items = (...texts) => `() => ${JSON.stringify(texts)}`;
const SILENT = ['GetTcpdumpStatus', 'GetTcpdumpConfig', 'QueryRemoteDevicesLogs', 'GetRemoteDevicesList'];
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
    Object.fromEntries(SILENT.map((name) => [name, ['wrong', 'no answer within 0.6 s', 'an answer']])), 0.6],
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

// A template for python-dbusmock.
const FAULTY = `
BUS_NAME, MAIN_OBJ = "dev.zelk.LogService", "/dev/zelk/LogService"
MAIN_IFACE, SYSTEM_BUS = "dev.zelk.LogService1", False

def load(mock, _parameters):
    mock.AddMethods(MAIN_IFACE, [
        ("GetModemLogStatus", "", "ii", "ret = (0, 1)"),
        ("FetchRemoteDevicesLogs", "sx", "is", "ret = (0, chr(27) * 16_000_000)"),
        ("QueryRemoteDevicesLogs", "s", "", "raise TypeError('first line' + chr(10) + 'last line')"),
        ("GetRemoteDevicesList", "", "", "import os; os._exit(0)"),
    ])
    print("ready", flush=True)
`;

const hasMock = hasBus && run('/usr/bin/python3', ['-c', 'import dbusmock']).status === 0;
test('a foreign service is told what is missing and wrong', { skip: !hasMock }, async () => {
  const address = `unix:path=${folder}/python`;
  await startBus(address);
  writeFileSync(`${folder}/faulty.py`, FAULTY);
  const service = startProcess('env', `DBUS_SESSION_BUS_ADDRESS=${address}`,
    '/usr/bin/python3', '-m', 'dbusmock', '--template', `${folder}/faulty.py`);
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

  const { status, stdout } = await zelklog('check --json', env);
  const results = JSON.parse(stdout);
  const { GetModemLogConfig: missing, QueryRemoteDevicesLogs: failed, ...faults } = faultsIn(results);
  assert.ok(missing[0] === 'missing' && missing[1].startsWith(UNKNOWN) && missing[2] === undefined, missing);
  assert.ok(failed[0] === 'wrong' && failed[1].endsWith('TypeError: last line'), failed);
  assert.deepEqual([faults.GetModemLogStatus, faults.GetRemoteDevicesList, faults.QueryProtocolData],
    [['wrong', 'the types "ii"', 'the types "ib"'], GONE, GONE]);
  const [{ verdict, received }] = results.filter(({ method }) => method === 'FetchRemoteDevicesLogs');
  assert.deepEqual([verdict, received, status], ['ok', `${String.raw`\u001b`.repeat(33)}…`, 1]);
});
