// The command line: what each command asks, prints and ends with.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { once } from 'node:events';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../..', import.meta.url));
const hasBus = existsSync(join(root, 'build', process.env.ZELKLOGSERVICE_BUILD || 'release', 'libzelk_dbus.so'));

function zelklog(words, env = {}) {
  const settings = { ZELK_LOG_SERVICE: '', OHOS_FULL_TOKEN_ID: '', HILOG_LEVEL: '', HILOG_FILE: '', ...env };
  const { status, stdout, stderr } = spawnSync(process.execPath, [join(root, 'bin/zelklog'), ...words],
    { encoding: 'utf8', env: { ...process.env, ...settings } });
  return { status, stdout, stderr };
}

// Each command, what it prints for a person, and what with --json.
const ANSWERS = [
  ['modem status', 'off', 'false'],
  ['modem on', 'accepted', 'true'],
  ['modem off --item a x=1', 'accepted', 'true'],
  ['modem config get a b', 'a\n  (nothing set)\nb\n  (nothing set)', '[{"configKey":"a","value":{}},{"configKey":"b","value":{}}]'],
  ['modem config set a x=1', 'accepted', 'true'],
  ['modem command reset now=true', 'accepted', 'true'],
  ['tcpdump status', 'off', 'false'],
  ['tcpdump on --item a x=1', 'accepted', 'true'],
  ['tcpdump off', 'accepted', 'true'],
  ['tcpdump config get a', 'a\n  (nothing set)', '[{"configKey":"a","value":{}}]'],
  ['tcpdump config set --item a x=1', 'accepted', 'true'],
  ['bluetooth-pcm on', 'done', 'false'],
  ['bluetooth-pcm off', 'done', 'false'],
  ['remote list', '{"devices":[]}', '"{\\"devices\\":[]}"'],
  ['remote query q', '{"request":"q","logs":[]}', '"{\\"request\\":\\"q\\",\\"logs\\":[]}"'],
  ['protocol p', '{"request":"p","data":""}', '"{\\"request\\":\\"p\\",\\"data\\":\\"\\"}"'],
  ['remote fetch r 20', '{"request":"r","value":20,"logs":[]}'],
  ['remote fetch r -- -9007199254740991', '{"request":"r","value":-9007199254740991,"logs":[]}'],
];

test('each command prints the answer of its function, and writes no log lines unless asked', () => {
  for (const [words, text, json] of ANSWERS) {
    assert.deepEqual(zelklog(words.split(' ')), { status: 0, stdout: `${text}\n`, stderr: '' }, words);
    if (json) {
      assert.deepEqual(zelklog([...words.split(' '), '--json']), { status: 0, stdout: `${json}\n`, stderr: '' }, words);
    }
  }
  assert.match(zelklog(['--verbose', 'modem', 'status']).stderr, / I C02d19\/ZELK_SERVICE: HandleAsyncWork: end\n/);
});

test('the queries that throw are answered all the same, with a note', () => {
  for (const [word, text] of [['masks', 'ap 0x0\ncp 0x0'], ['direct-pack', '{"directPack":false}']]) {
    const { status, stdout, stderr } = zelklog(['modem', word]);
    assert.deepEqual([status, stdout], [0, `${text}\n`]);
    assert.match(stderr, /^zelklog: note: getModemLog\w+ is marked as not supported at present.*\n$/);
  }
});

// The words of an item, and the text that the service gets.
const ITEMS = [
  [['a', 't=true', 'f=false', 'n=-42', 's=on'], '{"configKey":"a","value":{"t":true,"f":false,"n":-42,"s":"on"}}'],
  [['a', 'x="42"', 'y="', 'z=1.5', 'e=', 'w=a=b'], '{"configKey":"a","value":{"x":"42","y":""","z":"1.5","e":"","w":"a=b"}}'],
  [['a', 'x=[1,2]', 'y:=[true]', 'z:=7'], '{"configKey":"a","value":{"x":[1,"2"],"y":["1"],"z":7}}'],
  [['a', 'x:="[1]"', 'min=-2147483648', 'max=2147483647'],
    '{"configKey":"a","value":{"x":"[1]","min":-2147483648,"max":2147483647}}'],
];

test('items reach the service with the types as typed', () => {
  const sent = (words) => [...zelklog(words, { HILOG_LEVEL: 'E' }).stderr.matchAll(/GetJsonParams ostringstream (.*)/g)]
    .map(([, text]) => text);
  for (const [words, text] of ITEMS) {
    assert.deepEqual(sent(['modem', 'command', ...words]), [text]);
    assert.deepEqual(sent(['modem', 'on', '--item', ...words]), [text]);
  }
  const several = ['--item', 'b=c', 'y=2', '--item=d', 'z=3'];
  assert.deepEqual(sent(['tcpdump', 'config', 'set', 'a', 'x=1', ...several]), [
    '{"configKey":"a","value":{"x":1}}', '{"configKey":"b=c","value":{"y":2}}', '{"configKey":"d","value":{"z":3}}']);
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
  ['modem config set a x=2147483648', /x: 2147483648 is no whole number of 32 bits/],
  ['modem config set a x:=1.5', /x: 1.5 is no whole number/],
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

test('a wrong command line ends with 2 and one word about it, and nothing is called', () => {
  for (const [words, message] of USAGE) {
    const { status, stdout, stderr } = zelklog(words.split(' ').filter(Boolean), { HILOG_LEVEL: 'D' });
    assert.equal(status, 2, words);
    assert.equal(stdout, '');
    assert.match(stderr, message);
    assert.doesNotMatch(stderr, /C02d19/);
  }
});

test('help shows examples, and every command has help', () => {
  const { status, stdout } = zelklog(['--help']);
  assert.equal(status, 0);
  const examples = [...stdout.matchAll(/^ {2}zelklog (modem status|modem config get .*)$/gm)];
  assert.equal(examples.length, 2);
  for (const [, words] of examples) {
    assert.equal(zelklog(words.split(' ')).status, 0, words);
  }
  assert.match(zelklog(['modem', 'on', '--help']).stdout, /--item <NAME key=value\.\.\.>/);
});

const NO_SERVICE = { ZELK_LOG_SERVICE: 'none' };
const NO_RIGHTS = { OHOS_FULL_TOKEN_ID: '1' };

// What ends without an answer: the words, the setting, the exit status, the message.
const FAILURES = [
  ['modem status', NO_SERVICE, 1, /getModemLogStatus failed: .*its answer was false$/],
  ['remote list', NO_SERVICE, 1, /getRemoteDevicesList failed: .*its answer was ""$/],
  ['modem config get a', NO_SERVICE, 124, /getModemLogConfig gave no answer: the log service/],
  ['modem masks', NO_SERVICE, 124, /getModemLogLogMasks gave no answer: the log service/],
  ['tcpdump on', NO_SERVICE, 124, /handleTcpdumpSwitch gave no answer: the log service/],
  ['modem status', NO_RIGHTS, 1, /getModemLogStatus was refused: this process is not a system application/],
  ['modem direct-pack', NO_RIGHTS, 1, /getModemLogDirectPackConfig was refused: this process/],
  ['modem status', { ZELKLOGSERVICE_BUILD: 'nowhere' }, 1, /^zelklogservice: .*nowhere.* does not exist: run/],
];

test('a call without an answer ends at once, with one line and its own status', () => {
  for (const [words, env, expected, message] of FAILURES) {
    const { status, stdout, stderr } = zelklog(words.split(' '), env);
    assert.equal(status, expected, words);
    assert.equal(stdout, '');
    assert.match(stderr, /^.+\n$/);
    assert.match(stderr.trimEnd(), message);
  }
});

test('a call that hangs ends with 124 when its time is over', { skip: !hasBus }, async () => {
  const folder = mkdtempSync(join(tmpdir(), 'zelk-cli-'));
  const path = join(folder, 'bus');
  // It takes connections and says nothing.
  const server = createServer().listen(path);
  await once(server, 'listening');
  const begin = Date.now();
  const { status, stderr } = zelklog(['modem', 'status', '--timeout', '0.5'], { ZELK_LOG_SERVICE: `unix:path=${path}` });
  assert.deepEqual([status, stderr], [124, 'zelklog: getModemLogStatus gave no answer within 0.5 s (--timeout)\n']);
  assert.ok(Date.now() - begin < 10000);
  server.close();
  rmSync(folder, { recursive: true });
});

const hasTerminals = spawnSync('script', ['-qec', 'true', '/dev/null']).status === 0;

test('colours appear on a terminal only, and not with NO_COLOR', { skip: !hasTerminals }, () => {
  const onTerminal = (env) => {
    const command = `${process.execPath} ${join(root, 'bin/zelklog')} modem on`;
    return spawnSync('script', ['-qec', command, '/dev/null'], { encoding: 'utf8', env: { ...process.env, ...env } }).stdout;
  };
  assert.equal(onTerminal({ NO_COLOR: '' }), '\u001b[32maccepted\u001b[39m\r\n');
  assert.equal(onTerminal({ NO_COLOR: '1' }), 'accepted\r\n');
});

test('the service in a process of its own keeps what was set', { skip: !hasBus }, () => {
  const script = `set -e
    zelklog() { ${process.execPath} ${join(root, 'bin/zelklog')} "$@"; }
    zelklog modem on --item log level=3 path=/x >/dev/null
    zelklog modem status
    zelklog modem config get log
    zelklog tcpdump status
    kill $ZELK_SERVICE_PID
    sleep 0.5
    zelklog modem status || echo "ended with $?"`;
  const { stdout, stderr } = spawnSync(join(root, 'scripts/with_service.sh'), ['bash', '-c', script], { encoding: 'utf8' });
  assert.equal(stdout, 'on\nlog\n  level = 3\n  path = "/x"\noff\nended with 1\n', stderr);
});

test('a call may be longer than one word of a command line', () => {
  const keys = Array.from({ length: 20_000 }, (_, i) => `key${i}`);
  const { status, stdout } = zelklog(['modem', 'config', 'get', ...keys, '--json']);
  assert.deepEqual([status, JSON.parse(stdout).length], [0, keys.length]);
});
