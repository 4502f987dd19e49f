// The command line: the requests, the output and the exit status of each command.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdtempSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { join } from 'node:path';
import { test } from 'node:test';
import { parseItem } from '../../bin/items.js';
import { buildFolder, root, run, temporaryFolder } from '../support/system.mjs';

const program = `${root}bin/zelklog`;
const folder = temporaryFolder();
const PLAIN = { ZELK_LOG_SERVICE: '', OHOS_FULL_TOKEN_ID: '', HILOG_LEVEL: '', HILOG_FILE: '' };
const zelklog = (words, env) => run(process.execPath, [program, ...words], { env: { ...PLAIN, ...env } });

// The settings under which each process of the command runs this code first.
function preloading(code) {
  const file = join(mkdtempSync(`${folder}/`), 'first.cjs');
  writeFileSync(file, code);
  return { NODE_OPTIONS: `${process.env.NODE_OPTIONS ?? ''} --require=${file}` };
}

// The settings under which the command finds a log service with these answers, {Operation: answer} or, of one
// that fails, {Operation: {code, answer}}, which reports each request on standard error.
const answering = (answers) => preloading(`
  const { logService, ServiceError } = require(${JSON.stringify(`${root}testing.js`)});
  const service = logService();
  for (const [operation, answer] of Object.entries(${JSON.stringify(answers)})) {
    service.handle(operation, (...args) => {
      console.error([operation, ...args.map((each) => typeof each + ' ' + each)].join('; '));
      if (answer?.code) {
        throw new ServiceError(answer.code, answer.answer);
      }
      return answer ?? undefined;
    });
  }`);

const CHANGED = 'zelklog: note: this was for the embedded log service, which ends with this command; ' +
  'ZELK_LOG_SERVICE=session or system reaches one that stays\n';
const unsupported = (name) =>
  `zelklog: note: ${name} is marked as not supported at present; the log service answered\n`;
const ITEM = '{"configKey":"a","value":{"x":1}}';

// Each command, the request that it makes, its answer, what is printed, and the note.
const COMMANDS = [
  ['modem status', 'GetModemLogStatus', true, 'on'],
  ['modem config get a b', 'GetModemLogConfig; object a,b',
    ['{"configKey":"a","value":"{\\"x\\":1}"}', '{"configKey":"b","value":"{}"}'],
    'a\n  x = 1\nb\n  (nothing set)'],
  ['modem masks', 'GetModemLogLogMasks', ['{"configKey":"ap","value":"0x0"}', '{}'],
    'ap 0x0\n(missing) (missing)', unsupported('getModemLogLogMasks')],
  ['modem direct-pack', 'GetModemLogDirectPackConfig', 'text', 'text',
    unsupported('getModemLogDirectPackConfig')],
  ['modem on', 'HandleModemLogSwitch; boolean true', true, 'accepted', CHANGED],
  ['modem off --item a x=1', `HandleModemLogSwitch; boolean false; object ${ITEM}`, false, 'not accepted',
    CHANGED],
  ['modem config set a x=1 --item b=c y=2 --item=d z=3', `ChangeModemLogConfig; object ${ITEM},` +
  '{"configKey":"b=c","value":{"y":2}},{"configKey":"d","value":{"z":3}}', true, 'accepted', CHANGED],
  ['modem command a x=1', `SendModemLogCommand; string ${ITEM}`, true, 'accepted', CHANGED],
  ['tcpdump status', 'GetTcpdumpStatus', false, 'off'],
  ['tcpdump config get c', 'GetTcpdumpConfig; object c', ['{}'], '(missing)\n  (nothing set)'],
  ['tcpdump on --item a x=1', `HandleTcpdumpSwitch; boolean true; object ${ITEM}`, true, 'accepted', CHANGED],
  ['tcpdump config set --item a x=1', `ChangeTcpdumpConfig; object ${ITEM}`, true, 'accepted', CHANGED],
  ['bluetooth-pcm on', 'HandleBluetoothCallPcmLogSwitch; boolean true', null, 'done', CHANGED],
  ['bluetooth-pcm off --json', 'HandleBluetoothCallPcmLogSwitch; boolean false', null, 'false', CHANGED],
  ['remote list', 'GetRemoteDevicesList', 'text', 'text'],
  ['remote query q', 'QueryRemoteDevicesLogs; string q', 'text', 'text'],
  ['remote fetch r -- -9007199254740991', 'FetchRemoteDevicesLogs; string r; bigint -9007199254740991',
    'text', 'text'],
  ['protocol p', 'QueryProtocolData; string p', 'text', 'text'],
];

test('each command makes its request and prints the answer, and no log lines unless asked', () => {
  for (const [words, request, answer, stdout, note = ''] of COMMANDS) {
    const [operation] = request.split(';');
    assert.deepEqual(zelklog(words.split(' '), answering({ [operation]: answer })),
      { status: 0, stdout: `${stdout}\n`, stderr: `${request}\n${note}` }, words);
  }
  const { stderr } = zelklog(['--verbose', 'modem', 'status']);
  assert.match(stderr, / I C02d19\/ZELK_SERVICE: HandleAsyncWork: end\n/);
  assert.match(zelklog(['--verbose', 'modem', 'status'], { HILOG_LEVEL: 'F' }).stderr, /^$/);
});

// What a terminal would obey, how it is shown, and how in JSON.
const HOSTILE = '\u001b]0;x\u0007\t\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069';
const SHOWN = String.raw`\u001b]0;x\u0007\u0009\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069`;
const OBEYED = /[^\P{Other}\n]/u; // Controls and marks of direction, but no line feed.

test('characters that a terminal would obey are shown, wherever they come from', () => {
  const value = { [HOSTILE]: `${HOSTILE}\n` };
  const item = { configKey: `${HOSTILE}\n`, value: JSON.stringify(value) };
  const env = answering({
    GetModemLogConfig: [JSON.stringify(item)],
    QueryProtocolData: `${HOSTILE}\n`,
    QueryRemoteDevicesLogs: { code: 5, answer: HOSTILE },
  });
  for (const [words, expected] of [
    [['modem', 'config', 'get', 'k'], `${SHOWN}\\u000a\n  ${SHOWN} = "`],
    [['modem', 'config', 'get', 'k', '--json'], '\\u009b'],
    [['remote', 'query', 'q'], 'x\\u0007'],
    [[HOSTILE], `unknown command '${SHOWN}'`],
    [['protocol', HOSTILE], `${SHOWN}\n\n`],
    [['protocol', HOSTILE, '--verbose'], `request:${SHOWN}`],
  ]) {
    const { stdout, stderr } = zelklog(words, env);
    assert.doesNotMatch(stdout + stderr, OBEYED, words.join(' '));
    assert.ok((stdout + stderr).includes(expected), stdout + stderr);
    if (words.includes('--json')) {
      assert.deepEqual(JSON.parse(stdout), [{ ...item, value }]);
    }
  }
});

test('standard output that cannot be written exits with 1, silently if only its reader is gone', () => {
  const ends = (redirection) => {
    const command = `set -o pipefail; "$0" "$1" modem status ${redirection}; echo "ended with $?" >&2`;
    return run('bash', ['-c', command, process.execPath, program]).stderr;
  };
  assert.match(ends('>/dev/full'), /^zelklog: cannot write to standard output: ENOSPC: .*\nended with 1\n$/);
  assert.equal(ends('| true'), 'ended with 1\n');
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
  ['modem lights', /unknown command 'lights'/],
  ['modem status extra', /too many arguments/],
  ['modem config get', /missing required argument 'KEY'/],
  ['modem config set', /give at least one item/],
  ['modem config set a x', /"x" is not of the form key=value/],
  [`protocol ${'é'.repeat(4098)}`, /the request is longer than 8194 bytes/],
  ['remote fetch r 9007199254740993', /Not a whole number/],
  ['modem status --timeout 0', /Not a number of seconds/],
];

test('a wrong command line ends with 2 and one line about it, and nothing is called', () => {
  for (const [words, message] of USAGE) {
    const { status, stdout, stderr } = zelklog(words.split(' '), { HILOG_LEVEL: 'D' });
    assert.deepEqual([status, stdout], [2, ''], words);
    assert.match(stderr, message);
    assert.doesNotMatch(stderr, /C02d19/);
  }
});

test('the help of each command shows what holds for all', () => {
  const { status, stdout } = zelklog(['remote', 'fetch', '--help']);
  assert.equal(status, 0);
  for (const common of ['--json', '--timeout <SECONDS>', 'ZELK_LOG_SERVICE', 'HILOG_LEVEL']) {
    assert.ok(stdout.includes(`\n  ${common} `), common);
  }
});

const NO_SERVICE = { ZELK_LOG_SERVICE: 'none', HILOG_FILE: join(folder, 'unused') };
const NO_RIGHTS = { OHOS_FULL_TOKEN_ID: '1' };
const FAILING = answering({ GetModemLogStatus: { code: 5 }, HandleTcpdumpSwitch: { code: 5 } });
const DYING = preloading('process.send && process.exit(7);'); // In the process of the call.
const THROWING = preloading(`
  const functions = new Proxy({}, { get: () => () => { throw new Error('own'); } });
  require.cache[${JSON.stringify(`${root}index.js`)}] = { exports: functions, loaded: true };`);
const WITH_FILE = { HILOG_LEVEL: 'E', HILOG_FILE: join(folder, 'log') };
const UNKNOWN = 'getModemLogStatus failed: no log service was reached, or it reported an error ' +
  '(see the log: HILOG_LEVEL, HILOG_FILE)';

// Calls that end without an answer: the words, the setting, the exit status, the message.
const FAILURES = [
  ['modem status', NO_SERVICE, 1, 'getModemLogStatus failed: no log service was reached (ZELK_LOG_SERVICE)'],
  ['modem status', FAILING, 1,
    'getModemLogStatus failed: the log service reported an error; its answer was false'],
  ['modem status', { ...NO_SERVICE, ...WITH_FILE }, 1, UNKNOWN],
  ['modem status', { ...NO_SERVICE, HILOG_LEVEL: 'w' }, 1, UNKNOWN],
  ['modem status', THROWING, 1, 'getModemLogStatus threw an error: own'],
  ['modem masks', THROWING, 1, 'getModemLogLogMasks threw an error: own'],
  ['modem status', DYING, 1, 'getModemLogStatus broke off: its process ended with 7'],
  ['modem masks', NO_SERVICE, 124,
    'getModemLogLogMasks gave no answer: no log service was reached (ZELK_LOG_SERVICE)'],
  ['tcpdump on', FAILING, 124,
    'handleTcpdumpSwitch gave no answer: the log service reported an error or had nothing to answer'],
  ['modem status', NO_RIGHTS, 1,
    'getModemLogStatus was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)'],
  ['modem direct-pack', NO_RIGHTS, 1,
    'getModemLogDirectPackConfig was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)'],
];

test('a call without an answer ends, with one line and its own status', () => {
  for (const [words, env, status, message] of FAILURES) {
    const seen = zelklog(words.split(' '), env);
    assert.deepEqual([seen.status, seen.stdout], [status, '']);
    // But for the request and the report of a wrong setting.
    const own = seen.stderr.replace(/^([A-Z]|zelklogservice: HILOG_LEVEL="w": ).*\n/, '');
    assert.equal(own, `zelklog: ${message}\n`);
  }
  const refused = zelklog(['modem', 'status'], { ...NO_RIGHTS, ZELK_LOG_SERVICE: 'bogus' });
  assert.match(refused.stderr, /^zelklogservice: ZELK_LOG_SERVICE="bogus".*no service\nzelklog: .* refused/);
  const { status, stderr } = zelklog(['modem', 'status'], { ZELKLOGSERVICE_BUILD: 'nowhere' });
  assert.equal(status, 1);
  assert.match(stderr, /^zelklogservice: .*nowhere.* does not exist: run .*\n$/);
});

const hasBus = existsSync(`${buildFolder}zelk-log-service`);

test('a call that hangs ends with its command, or with its time', { skip: !hasBus }, async () => {
  const server = createServer().listen(join(folder, 'bus')); // It accepts connections and sends nothing.
  await once(server, 'listening');
  const env = { ...process.env, ZELK_LOG_SERVICE: `unix:path=${folder}/bus` };
  const child = spawn(process.execPath, [program, 'modem', 'status'], { env });
  const [connection] = await once(server, 'connection');
  child.kill('SIGKILL');
  await once(connection.resume(), 'close', { signal: AbortSignal.timeout(10_000) });
  const { status, stderr } = zelklog(['modem', 'status', '--timeout', '0.5'], env);
  const late = 'zelklog: getModemLogStatus gave no answer within 0.5 s (--timeout)\n';
  assert.deepEqual([status, stderr], [124, late]);
  server.close();
});

const hasTerminals = run('script', ['-qec', 'true', '/dev/null']).status === 0;

test('colours appear on a terminal only, and not with NO_COLOR', { skip: !hasTerminals }, () => {
  for (const [NO_COLOR, output] of [['', '\u001b[32maccepted\u001b[39m\r\n'], ['1', 'accepted\r\n']]) {
    const command = '"$NODE" "$PROGRAM" modem on 2>/dev/null';
    const env = { NODE: process.execPath, PROGRAM: program, NO_COLOR };
    assert.equal(run('script', ['-qec', command, '/dev/null'], { env }).stdout, output);
  }
});

test('a call may be longer than one word of a command line', () => {
  const keys = Array.from({ length: 20_000 }, (_, i) => `key${i}`);
  const { status, stdout } = zelklog(['modem', 'config', 'get', ...keys, '--json']);
  assert.deepEqual([status, JSON.parse(stdout).length], [0, keys.length]);
});
