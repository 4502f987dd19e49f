// The command line: what each command asks, prints and ends with.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../..', import.meta.url));
const build = join(root, 'build', process.env.ZELKLOGSERVICE_BUILD || 'release');
const hasBus = existsSync(join(build, 'libzelk_dbus.so'));
const program = join(root, 'bin/zelklog');
const folder = mkdtempSync(join(tmpdir(), 'zelk-cli-'));
after(() => rmSync(folder, { recursive: true }));

function zelklog(words, env = {}) {
  const settings = { ZELK_LOG_SERVICE: '', OHOS_FULL_TOKEN_ID: '', HILOG_LEVEL: '', HILOG_FILE: '', ...env };
  const { status, stdout, stderr } = spawnSync(process.execPath, [program, ...words],
    { encoding: 'utf8', env: { ...process.env, ...settings } });
  return { status, stdout, stderr };
}

// The settings under which the command finds a log service with these answers: {Operation: {code, answer}}.
function answering(answers) {
  const file = join(mkdtempSync(join(folder, 'service-')), 'service.cjs');
  writeFileSync(file, `
    const { logService, ServiceError } = require(${JSON.stringify(join(root, 'testing.js'))});
    const service = logService();
    for (const [operation, { code, answer }] of Object.entries(${JSON.stringify(answers)})) {
      service.handle(operation, () => {
        if (code !== 0) {
          throw new ServiceError(code, answer);
        }
        return answer;
      });
    }`);
  return { NODE_OPTIONS: `--require=${file}` };
}

// Each command, what it prints for a person, and what with --json.
const QUERIES = [
  ['modem status', 'off', 'false'],
  ['modem config get a b', 'a\n  (nothing set)\nb\n  (nothing set)',
    '[{"configKey":"a","value":{}},{"configKey":"b","value":{}}]'],
  ['tcpdump status', 'off', 'false'],
  ['tcpdump config get a', 'a\n  (nothing set)', '[{"configKey":"a","value":{}}]'],
  ['remote list', '{"devices":[]}', '"{\\"devices\\":[]}"'],
  ['remote query q', '{"request":"q","logs":[]}', '"{\\"request\\":\\"q\\",\\"logs\\":[]}"'],
  ['protocol p', '{"request":"p","data":""}', '"{\\"request\\":\\"p\\",\\"data\\":\\"\\"}"'],
  ['remote fetch r 20', '{"request":"r","value":20,"logs":[]}'],
  ['remote fetch r -- -9007199254740991', '{"request":"r","value":-9007199254740991,"logs":[]}'],
];

function prints(words, stdout, stderr) {
  assert.deepEqual(zelklog(words.split(' ')), { status: 0, stdout, stderr }, words);
}

test('each query prints the answer of its function, and writes no log lines unless asked', () => {
  for (const [words, text, json] of QUERIES) {
    prints(words, `${text}\n`, '');
    if (json) {
      prints(`${words} --json`, `${json}\n`, '');
    }
  }
  const { stderr } = zelklog(['--verbose', 'modem', 'status']);
  assert.match(stderr, / I C02d19\/ZELK_SERVICE: HandleAsyncWork: end\n/);
  assert.match(zelklog(['--verbose', 'modem', 'status'], { HILOG_LEVEL: 'F' }).stderr, /^$/);
});

const CHANGES = [
  ['modem on', 'accepted', 'true'],
  ['modem off --item a x=1', 'accepted', 'true'],
  ['modem config set a x=1', 'accepted', 'true'],
  ['modem command reset now=true', 'accepted', 'true'],
  ['tcpdump on --item a x=1', 'accepted', 'true'],
  ['tcpdump off', 'accepted', 'true'],
  ['tcpdump config set --item a x=1', 'accepted', 'true'],
  ['bluetooth-pcm on', 'done', 'false'],
  ['bluetooth-pcm off', 'done', 'false'],
];

test('each change prints its answer, with a note that the embedded service does not stay', () => {
  const stderr = 'zelklog: note: this was for the embedded log service, which ends with this command; ' +
    'ZELK_LOG_SERVICE=session or system reaches one that stays\n';
  for (const [words, text, json] of CHANGES) {
    prints(words, `${text}\n`, stderr);
    prints(`${words} --json`, `${json}\n`, stderr);
  }
});

// What a terminal would obey, how it is shown, and how in JSON.
const HOSTILE = '\u001b]0;x\u0007\t\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069';
const SHOWN = String.raw`\u001b]0;x\u0007\u0009\u007f\u009b1m\u061c\u200e\u200f\u202a\u202e\u2066\u2069`;
const OBEYED = /[^\P{Other}\n]/u; // Controls and marks of direction, but no line feed.

test('characters that a terminal would obey are shown, wherever they come from', () => {
  const value = { [HOSTILE]: `${HOSTILE}\n` };
  const item = { configKey: `${HOSTILE}\n`, value: JSON.stringify(value) };
  const mask = { configKey: HOSTILE, value: HOSTILE };
  const env = answering({
    GetModemLogConfig: { code: 0, answer: [JSON.stringify(item)] },
    GetModemLogLogMasks: { code: 0, answer: [JSON.stringify(mask)] },
    QueryProtocolData: { code: 0, answer: `${HOSTILE}\n` },
    QueryRemoteDevicesLogs: { code: 5, answer: HOSTILE },
  });
  const shows = (words, expected) => {
    const { stdout, stderr } = zelklog(words, env);
    assert.doesNotMatch(stdout + stderr, OBEYED, words.join(' '));
    assert.ok((stdout || stderr).includes(expected), stdout + stderr);
    return stdout;
  };
  shows(['modem', 'config', 'get', 'k'], `${SHOWN}\\u000a\n  ${SHOWN} = "`);
  shows(['modem', 'masks'], `${SHOWN} ${SHOWN}\n`);
  shows(['protocol', 'p'], `${SHOWN}\n\n`);
  shows(['remote', 'query', 'q'], 'x\\u0007');
  shows([HOSTILE], `unknown command '${SHOWN}'`);
  shows(['protocol', HOSTILE, '--verbose'], SHOWN);
  assert.match(zelklog(['protocol', HOSTILE, '--verbose'], env).stderr, /: .*\\u001b\]0;x/);
  assert.deepEqual(JSON.parse(shows(['modem', 'config', 'get', 'k', '--json'], '\\u009b')),
    [{ ...item, value }]);
});

test('standard output that cannot be written makes 1, silently if only its reader has gone', () => {
  const ends = (redirection) => {
    const command = `set -o pipefail; "$0" "$1" modem status ${redirection}; echo "ended with $?" >&2`;
    return spawnSync('bash', ['-c', command, process.execPath, program], { encoding: 'utf8' }).stderr;
  };
  assert.match(ends('>/dev/full'), /^zelklog: cannot write to standard output: ENOSPC: .*\nended with 1\n$/);
  assert.equal(ends('| true'), 'ended with 1\n');
});

test('the queries that throw are answered all the same, with a note', () => {
  for (const [word, text] of [['masks', 'ap 0x0\ncp 0x0'], ['direct-pack', '{"directPack":false}']]) {
    const { status, stdout, stderr } = zelklog(['modem', word]);
    assert.deepEqual([status, stdout], [0, `${text}\n`]);
    assert.match(stderr, /^zelklog: note: getModemLog\w+ is marked as not supported at present.*\n$/);
  }
  const incomplete = answering({ GetModemLogLogMasks: { code: 0, answer: ['{}'] } });
  assert.equal(zelklog(['modem', 'masks'], incomplete).stdout, '(missing) (missing)\n');
});

// The words of an item, and the text that the service gets.
const ITEMS = [
  [['a', 't=true', 'f=false', 'n=-42', 's=on'],
    '{"configKey":"a","value":{"t":true,"f":false,"n":-42,"s":"on"}}'],
  [['a', 'x="42"', 'y="', 'z=1.5', 'e=', 'w=a=b'],
    '{"configKey":"a","value":{"x":"42","y":""","z":"1.5","e":"","w":"a=b"}}'],
  [['a', 'x=[1,2]', 'y:=[true]', 'z:=7'], '{"configKey":"a","value":{"x":[1,"2"],"y":["1"],"z":7}}'],
  [['a', 'x:="[1]"', 'min=-2147483648', 'max=2147483647'],
    '{"configKey":"a","value":{"x":"[1]","min":-2147483648,"max":2147483647}}'],
];

test('items reach the service with the types as typed', () => {
  const sent = (words) => {
    const { stderr } = zelklog(words, { HILOG_LEVEL: 'E' });
    return [...stderr.matchAll(/GetJsonParams ostringstream (.*)/g)].map(([, text]) => text);
  };
  for (const [words, text] of ITEMS) {
    assert.deepEqual(sent(['modem', 'command', ...words]), [text]);
    assert.deepEqual(sent(['modem', 'on', '--item', ...words]), [text]);
  }
  const several = ['--item', 'b=c', 'y=2', '--item=d', 'z=3'];
  assert.deepEqual(sent(['tcpdump', 'config', 'set', 'a', 'x=1', ...several]), [
    '{"configKey":"a","value":{"x":1}}',
    '{"configKey":"b=c","value":{"y":2}}',
    '{"configKey":"d","value":{"z":3}}',
  ]);
});

const USAGE = [
  ['', /Usage: zelklog/],
  ['modem', /Usage: zelklog modem/],
  ['modem lights', /unknown command 'lights'/],
  ['modem status extra', /too many arguments/],
  ['modem config get', /missing required argument 'KEY'/],
  ['modem config set', /give at least one item/],
  ['modem config set a x', /"x" is not of the form key=value/],
  ['modem config set a =x', /"=x" is not of the form/],
  ['modem config set a x=2147483648', /x: 2147483648 is not a whole number of 32 bits/],
  ['modem config set a x:=1.5', /x: 1.5 is not a whole number/],
  ['modem config set a x:=[', /x: \[ is not JSON/],
  ['modem config set a x=["b"]', /x: of arrays, only those of booleans and those of numbers/],
  ['modem config set a x=[1,true]', /x: of arrays/],
  ['modem config set a x=[]', /x: of arrays/],
  ['modem config set a x:={"y":1}', /x: a value is a boolean/],
  ['modem config set a x:=null', /x: a value is a boolean/],
  [`protocol ${'x'.repeat(8195)}`, /the request is longer than 8194 bytes/],
  ['remote fetch r 1.5', /Not a whole number/],
  ['remote fetch r 9007199254740993', /Not a whole number/],
  ['modem status --timeout 0', /Not a number of seconds/],
  ['modem status --timeout soon', /Not a number of seconds/],
];

test('a wrong command line ends with 2 and one line about it, and nothing is called', () => {
  for (const [words, message] of USAGE) {
    const { status, stdout, stderr } = zelklog(words.split(' ').filter(Boolean), { HILOG_LEVEL: 'D' });
    assert.equal(status, 2, words);
    assert.equal(stdout, '');
    assert.match(stderr, message);
    assert.doesNotMatch(stderr, /C02d19/);
  }
});

test('help shows examples that work, and that of each command what holds for all', () => {
  const { status, stdout } = zelklog(['--help']);
  assert.equal(status, 0);
  const examples = [...stdout.matchAll(/^ {2}zelklog (modem status|modem config get .*)$/gm)];
  assert.equal(examples.length, 2);
  for (const [, words] of examples) {
    assert.equal(zelklog(words.split(' ')).status, 0, words);
  }
  for (const words of ['modem on', 'protocol', 'remote fetch']) {
    const help = zelklog([...words.split(' '), '--help']).stdout;
    for (const common of ['--json', '--timeout <SECONDS>', 'ZELK_LOG_SERVICE', 'HILOG_LEVEL']) {
      assert.ok(help.includes(`\n  ${common} `), `${words}: ${common}`);
    }
  }
});

const NO_SERVICE = { ZELK_LOG_SERVICE: 'none' };
const NO_RIGHTS = { OHOS_FULL_TOKEN_ID: '1' };

const FAILING = answering({ GetModemLogStatus: { code: 5 }, HandleTcpdumpSwitch: { code: 5 } });
const WITH_FILE = { HILOG_LEVEL: 'E', HILOG_FILE: join(folder, 'log') };

// What ends without an answer: the words, the setting, the exit status, the message.
const FAILURES = [
  ['modem status', NO_SERVICE, 1, 'getModemLogStatus failed: no log service was reached (ZELK_LOG_SERVICE)'],
  ['modem status', FAILING, 1,
    'getModemLogStatus failed: the log service reported an error; its answer was false'],
  ['modem status', { ...NO_SERVICE, ...WITH_FILE }, 1,
    'getModemLogStatus failed: no log service was reached, or it ' +
    'reported an error (the lines in HILOG_FILE say which)'],
  ['remote list', NO_SERVICE, 1,
    'getRemoteDevicesList failed: no log service was reached (ZELK_LOG_SERVICE)'],
  ['modem masks', NO_SERVICE, 124,
    'getModemLogLogMasks gave no answer: no log service was reached (ZELK_LOG_SERVICE)'],
  ['tcpdump on', NO_SERVICE, 124,
    'handleTcpdumpSwitch gave no answer: no log service was reached (ZELK_LOG_SERVICE)'],
  ['tcpdump on', FAILING, 124,
    'handleTcpdumpSwitch gave no answer: the log service reported an error or had nothing to answer'],
  ['modem status', NO_RIGHTS, 1,
    'getModemLogStatus was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)'],
  ['modem direct-pack', NO_RIGHTS, 1,
    'getModemLogDirectPackConfig was refused: this process is not a system application (OHOS_FULL_TOKEN_ID)'],
];

test('a call without an answer ends at once, with one line and its own status', () => {
  for (const [words, env, status, message] of FAILURES) {
    assert.deepEqual(zelklog(words.split(' '), env), { status, stdout: '', stderr: `zelklog: ${message}\n` });
  }
  const { status, stderr } = zelklog(['modem', 'status'], { ZELKLOGSERVICE_BUILD: 'nowhere' });
  assert.equal(status, 1);
  assert.match(stderr, /^zelklogservice: .*nowhere.* does not exist: run .*\n$/);
});

test('a call that hangs ends with 124 when its time is over', { skip: !hasBus }, async () => {
  const path = join(folder, 'bus');
  // It takes connections and says nothing.
  const server = createServer().listen(path);
  await once(server, 'listening');
  const words = ['modem', 'status', '--timeout', '0.5'];
  const { status, stderr } = zelklog(words, { ZELK_LOG_SERVICE: `unix:path=${path}` });
  assert.equal(stderr, 'zelklog: getModemLogStatus gave no answer within 0.5 s (--timeout)\n');
  assert.equal(status, 124);
  server.close();
});

const hasTerminals = spawnSync('script', ['-qec', 'true', '/dev/null']).status === 0;

test('colours appear on a terminal only, and not with NO_COLOR', { skip: !hasTerminals }, () => {
  const onTerminal = (env) => {
    const settings = { ...process.env, NODE: process.execPath, PROGRAM: program, ...env };
    const command = '"$NODE" "$PROGRAM" modem on 2>/dev/null';
    return spawnSync('script', ['-qec', command, '/dev/null'], { encoding: 'utf8', env: settings }).stdout;
  };
  assert.equal(onTerminal({ NO_COLOR: '' }), '\u001b[32maccepted\u001b[39m\r\n');
  assert.equal(onTerminal({ NO_COLOR: '1' }), 'accepted\r\n');
});

test('a call may be longer than one word of a command line', () => {
  const keys = Array.from({ length: 20_000 }, (_, i) => `key${i}`);
  const { status, stdout } = zelklog(['modem', 'config', 'get', ...keys, '--json']);
  assert.deepEqual([status, JSON.parse(stdout).length], [0, keys.length]);
});
