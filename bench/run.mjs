// Runs the benchmarks of build/bench and prints one table of ratios with their targets.
//
//   node bench/run.mjs [--json | --once] [GROUP…]
//
// Groups: calls bus values text log memory load command kit; all by default. With --json the table is a JSON
// array. With --once each row is measured once and without its target, to check that it can still be
// measured.
// Exit status: 1 when a target is missed by more than the measure's own noise, 0 otherwise.
import { execFileSync } from 'node:child_process';
import {
  copyFileSync, existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, statSync, writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { setTimeout as sleep } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';

import { withService } from './lib/private_bus.mjs';
import { addon, now } from './lib/rounds.mjs';
import { ROWS, evaluate, isNoisy, print } from './lib/table.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const root = path.dirname(here);
const build = path.join(root, 'build', 'bench');
const script = (name) => path.join(here, name);
const program = (name) => path.join(build, name);

const IS_ONCE = process.argv.includes('--once');
const ROUNDS = IS_ONCE ? 1 : 41; // Of processes.
const PROCESSES = IS_ONCE ? 1 : 3;

// The settings of every measured process. The module writes no lines, and has the service in the process.
const SETTINGS = {
  HILOG_LEVEL: 'X', HILOG_FILE: '', OHOS_FULL_TOKEN_ID: '', ZELK_LOG_SERVICE: 'embedded',
  ZELK_BENCH_ONCE: IS_ONCE ? '1' : '',
};

function run(file, args, settings = {}) {
  return execFileSync(file, args, {
    env: { ...process.env, ...SETTINGS, ...settings },
    encoding: 'utf8',
    stdio: ['ignore', 'pipe', 'inherit'],
  });
}

// Lines of {measure, rounds}.
const measures = (...call) => run(...call).trim().split('\n').map((line) => JSON.parse(line));
const node = (name, settings = {}) => measures(process.execPath, [script(name)], settings);
const nodeWithGc = (name, settings = {}) =>
  measures(process.execPath, ['--expose-gc', script(name)], { MALLOC_ARENA_MAX: '1', ...settings });

// Where things lie in memory differs from process to process, and moves some rows by more than the noise
// within one.
function inProcesses(measureOnce) {
  const all = new Map();
  for (let i = 0; i < PROCESSES; ++i) {
    for (const { measure: name, rounds } of measureOnce()) {
      all.set(name, [...(all.get(name) ?? []), ...rounds]);
    }
  }
  return Array.from(all, ([name, rounds]) => ({ measure: name, rounds }));
}

function inFolder(use) {
  const folder = mkdtempSync(path.join(tmpdir(), 'zelk-bench-'));
  try {
    return use(folder);
  } finally {
    rmSync(folder, { recursive: true });
  }
}

async function answersCalls(address) {
  const bus = addon('bare_bus');
  bus.open(address);
  for (let i = 0; i < 200; ++i) {
    try {
      return await bus.getStatus();
    } catch {
      await sleep(25);
    }
  }
  throw new Error('the log service does not answer on its bus');
}

const bus = () => withService(
  (address) => [program('zelk-log-service'), ['--address', address]], answersCalls,
  (address) => node('bus.mjs', { ZELK_LOG_SERVICE: address }));

// Makes the package unless there already is one of these sources.
function pack() {
  const stamp = path.join(root, 'build/pack/commit');
  const wanted = run(path.join(root, 'scripts/prepack.sh'), ['--stamp']);
  if (!existsSync(stamp) || readFileSync(stamp, 'utf8') !== wanted) {
    run('make', ['-C', root, 'pack']);
  }
}

// Installs the package into `folder` as a user does, and beside it one with the same package.json and an
// empty addon. Returns the paths of both.
function installPackages(folder) {
  pack();
  const { name, version } = JSON.parse(readFileSync(path.join(root, 'package.json'), 'utf8'));
  const file = path.join(root, `build/pack/${name}-${version}.tgz`);
  run('npm', ['install', '--prefix', folder, '--offline', '--no-audit', '--loglevel=error', file]);
  const installed = path.join(folder, 'node_modules', name);
  const empty = path.join(folder, 'node_modules/empty');
  mkdirSync(path.join(empty, 'js'), { recursive: true });
  copyFileSync(path.join(installed, 'package.json'), path.join(empty, 'package.json'));
  copyFileSync(program('empty.node'), path.join(empty, 'js/empty.node'));
  writeFileSync(path.join(empty, 'js/index.js'), `module.exports = require('./empty.node');\n`);
  return { installed, empty };
}

function load() {
  return inFolder((folder) => {
    const { installed, empty } = installPackages(folder);
    const milliseconds = (file) => Number(run(process.execPath, [script('load.mjs'), file]));
    const rounds = Array.from({ length: ROUNDS }, () => [milliseconds(installed), milliseconds(empty)]);
    const module = path.join(installed, `lib/linux-${process.arch}/zelklogservice.node`);
    const size = statSync(module).size / 1000;
    return [{ measure: 'load', rounds }, { measure: 'size', rounds: [[size]] }];
  });
}

function command() {
  const zelklog = path.join(root, 'bin', 'zelklog');
  const nanoseconds = (args) => {
    const start = now();
    run(process.execPath, args, { ZELKLOGSERVICE_BUILD: 'bench' });
    return now() - start;
  };
  const ours = [zelklog, 'modem', 'status'];
  const rounds = Array.from({ length: ROUNDS }, () => [nanoseconds(ours), nanoseconds(['-e', '0'])]);
  return [{ measure: 'command', rounds }];
}

const logFiles = (folder) => measures(program('bench_log'), [path.join(folder, 'theirs')],
  { HILOG_LEVEL: 'I', HILOG_FILE: path.join(folder, 'ours') });

const GROUPS = {
  calls: () => node('calls.mjs'),
  bus,
  values: () => [...inProcesses(() => node('items.mjs')), ...node('replies.mjs')],
  text: () => measures(program('bench_text'), []),
  log: () => [...measures(program('bench_log'), ['suppressed']), ...inFolder(logFiles)],
  memory: () => inProcesses(() => nodeWithGc('memory.mjs')),
  load,
  command,
  kit: () => nodeWithGc('kit.mjs', { ZELKLOGSERVICE_BUILD: 'bench' }),
};

const TRIES = IS_ONCE ? 1 : 5;

// The rows of a group. Measures again while one of them is noisy; of each row the steadiest try counts.
async function measure(group) {
  const results = new Map();
  for (let i = 0; i < TRIES; ++i) {
    process.stderr.write(`measuring ${group} ${i === 0 ? '' : 'again '}…\n`);
    for (const { measure: name, rounds } of await GROUPS[group]()) {
      const result = evaluate(ROWS.find((row) => row.measure === name), rounds);
      if (!results.has(name) || result.noise < results.get(name).noise) {
        results.set(name, result);
      }
    }
    if (![...results.values()].some(isNoisy)) {
      break;
    }
  }
  return [...results.values()];
}

async function main(args) {
  const names = args.filter((arg) => !['--json', '--once'].includes(arg));
  const unknown = names.find((name) => !(name in GROUPS));
  if (unknown) {
    console.error(`bench/run.mjs: no group "${unknown}": choose from ${Object.keys(GROUPS).join(' ')}`);
    return 2;
  }
  const results = [];
  for (const name of names.length > 0 ? names : Object.keys(GROUPS)) {
    results.push(...await measure(name));
  }
  const order = ROWS.map(({ measure: name }) => name);
  results.sort((a, b) => order.indexOf(a.measure) - order.indexOf(b.measure));
  if (args.includes('--json')) {
    console.log(JSON.stringify(results, null, 2));
  } else {
    print(results, IS_ONCE ? ['what', 'against', 'value'] : undefined);
  }
  const measured = results.map(({ measure: name }) => name);
  const lost = order.filter((name) => !measured.includes(name));
  if (names.length === 0 && lost.length > 0) {
    console.error(`bench/run.mjs: not measured: ${lost.join(' ')}`);
    return 1;
  }
  return !IS_ONCE && results.some(({ verdict }) => verdict === 'MISS') ? 1 : 0;
}

process.exitCode = await main(process.argv.slice(2));
