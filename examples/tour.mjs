// A tour of all sixteen functions: each call, its answer, and the log lines that the module writes for it.
//
//   node examples/tour.mjs                              with the log service inside this process
//   ZELK_LOG_SERVICE=session node examples/tour.mjs     with the log service on the session bus
//
// In a project that installed the package it is node_modules/zelklogservice/examples/tour.mjs.
import { existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setImmediate as nextTurn } from 'node:timers/promises';
import { inspect } from 'node:util';

const colour = process.stdout.isTTY && !process.env.NO_COLOR;
const strong = (text) => (colour ? `\u001b[1m${text}\u001b[22m` : text);
const weak = (text) => (colour ? `\u001b[2m${text}\u001b[22m` : text);

// The module's log goes to a file, so that each line can be shown below the call that wrote it.
const folder = mkdtempSync(join(tmpdir(), 'zelk-tour-'));
const logFile = join(folder, 'hilog');
process.env.HILOG_FILE = logFile;
process.env.HILOG_LEVEL ||= 'I';
process.on('exit', () => rmSync(folder, { recursive: true }));

let shown = 0;

function newLogLines() {
  const lines = existsSync(logFile) ? readFileSync(logFile, 'utf8').split('\n').slice(0, -1) : [];
  const fresh = lines.slice(shown);
  shown = lines.length;
  return fresh;
}

function end(message) {
  console.error(message);
  process.exit(1);
}

// The only reason for which these calls can be refused.
const NO_RIGHTS = 'the calls are refused: this process is not a system application (OHOS_FULL_TOKEN_ID)';

const zelk = await import('../js/index.mjs').then((module) => module.default, (error) => end(error.message));
let current;

// Several functions answer nothing when the log service fails. Then there is nothing left to wait for.
const FAILED = 'the log service failed or was not reached (ZELK_LOG_SERVICE)';
process.on('beforeExit', () => end(`${current} got no answer: ${FAILED}`));

const indented = (value) => inspect(value, { depth: 5, breakLength: 100 }).replaceAll('\n', '\n      ');

async function report(call, answer) {
  current = call;
  console.log(`  ${call}`);
  const value = await answer.catch((left) => end(`${call} failed, with the answer ${left}: ${FAILED}`));
  console.log(`    → ${strong(indented(value))}`);
  await nextTurn();
  for (const line of newLogLines()) {
    console.log(weak(`      ${line}`));
  }
}

function textOf(name, args, ...others) {
  const texts = args.map((value) => inspect(value, { depth: 5, breakLength: Infinity }));
  return `${name}(${[...texts, ...others].join(', ')})`;
}

const byPromise = (name, ...args) => report(textOf(name, args), zelk[name](...args) ?? end(NO_RIGHTS));

// The value of a rejection is an answer as well.
const byPromiseInTest = (name, ...args) =>
  report(textOf(name, args), zelk[name](...args).catch((left) => ({ 'rejected with': left })));

const byCallback = (name, ...args) =>
  report(textOf(name, args, 'callback'), new Promise((resolve) => zelk[name](...args, resolve)));

// The call throws, and still calls its callback.
async function unsupported(name) {
  let thrown;
  await report(`${name}(callback)`, new Promise((resolve) => {
    try {
      zelk[name](resolve);
    } catch (error) {
      thrown = error;
    }
  }));
  console.log(`    and it threw: code ${thrown.code}, "${thrown.message}"`);
}

const chapter = (title) => console.log(`\n${strong(title)}`);

console.log(strong(`zelklogservice on Node.js ${process.versions.node}`));
console.log(`Log service: ${process.env.ZELK_LOG_SERVICE || 'embedded'} (ZELK_LOG_SERVICE)`);

chapter('Is the modem log on? Any function answers by promise, or by callback if it is given one.');
await byPromise('getModemLogStatus');
await byCallback('getModemLogStatus');

chapter('Switch it on, with two configuration items.');
await byPromise('handleModemLogSwitch', true, [
  { configKey: 'modemLog', value: { path: '/data/log/modem', level: 3, verbose: true } },
  { configKey: 'ring', value: { megabytes: 64 } },
]);
await byPromise('getModemLogStatus');

chapter('Read the items back, and change one.');
await byPromise('getModemLogConfig', ['modemLog', 'ring', 'neverSet']);
await byPromise('changeModemLogConfig', [{ configKey: 'modemLog', value: { level: 4 } }]);
await byPromise('getModemLogConfig', ['modemLog']);

chapter('Send a command, and switch the log off.');
await byPromise('sendModemLogCommand', { configKey: 'flush', value: { wait: true } });
await byPromise('handleModemLogSwitch', false);

chapter('Two queries are marked as not supported: they throw, but still answer their callback.');
await unsupported('getModemLogDirectPackConfig');
await unsupported('getModemLogLogMasks');

chapter('Network packet capture.');
await byPromise('handleTcpdumpSwitch', true, [
  { configKey: 'capture', value: { interface: 'wlan0', snaplen: 96 } },
]);
await byPromise('getTcpdumpStatus');
await byPromise('changeTcpdumpConfig', [{ configKey: 'capture', value: { snaplen: 1500 } }]);
await byPromise('getTcpdumpConfig', ['capture']);
await byPromise('handleTcpdumpSwitch', false);

chapter('The audio log of Bluetooth calls. A switch that succeeds answers false here.');
await byPromise('handleBluetoothCallPcmLogSwitch', true);

chapter('Remote devices, by promise only.');
await byPromise('getRemoteDevicesList');
await byPromise('fetchRemoteDevicesLogs', 'since yesterday', 20);
await byPromise('queryRemoteDevicesLogs', 'crash');
await byPromise('queryProtocolData', 'version');

chapter('For tests: a log service in JavaScript replaces that one, and fails or never answers.');
const { ServiceError, logService } = await import('../testing/testing.mjs');
const service = logService({
  GetModemLogStatus: () => {
    throw new ServiceError(5, true);
  },
  HandleModemLogSwitch: () => new Promise(() => {}),
}, { timeout: 100 });
await byPromiseInTest('getModemLogStatus');
await byPromiseInTest('handleModemLogSwitch', true, [{ configKey: 'ring', value: { megabytes: 64 } }]);
console.log(`  what it was asked\n    → ${strong(indented(service.requests))}`);
service.restore();

console.log('\nAll sixteen functions were called.');
process.exit();
