// How the package loads: both kinds of import, worker threads, and what it says when it cannot.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { copyFileSync, mkdirSync, mkdtempSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Worker } from 'node:worker_threads';

const root = fileURLToPath(new URL('../..', import.meta.url));
const build = join(root, 'build', process.env.ZELKLOGSERVICE_BUILD || 'release');
const require = createRequire(import.meta.url);

const scratch = mkdtempSync(join(tmpdir(), 'zelk-package-'));
after(() => rmSync(scratch, { recursive: true }));

test('require and import give the same exports object, and import each function by name', async () => {
  const library = require(root);
  const { default: whole, ...named } = await import('../../index.mjs');
  assert.equal(whole, library);
  assert.deepEqual(Object.keys(named).sort(), Object.getOwnPropertyNames(library).sort());
  for (const [name, method] of Object.entries(named)) {
    assert.equal(method, library[name], name);
  }
});

test('loads again and again in worker threads, several at a time', async () => {
  const script = `
    const { parentPort, workerData } = require('worker_threads');
    require(workerData).getRemoteDevicesList().then((list) => parentPort.postMessage(list));`;
  const answer = () => new Promise((resolve, reject) => {
    const worker = new Worker(script, { eval: true, workerData: root });
    let list;
    worker.on('message', (message) => (list = message));
    worker.on('error', reject).on('exit', () => resolve(list));
  });
  for (let round = 0; round < 3; round++) {
    assert.deepEqual(await Promise.all([answer(), answer(), answer()]), Array(3).fill('{"devices":[]}'));
  }
});

// A copy of the package as it is installed, with the libraries that `fill` puts into its lib/.
function installed(name, fill) {
  const folder = join(scratch, name);
  mkdirSync(join(folder, 'lib'), { recursive: true });
  for (const file of ['index.js', 'library.js', 'requirements.js']) {
    copyFileSync(join(root, file), join(folder, file));
  }
  fill((file) => join(folder, 'lib', file));
  return folder;
}

const unbuilt = installed('unbuilt', () => {});
const incomplete = installed('incomplete', (path) => copyFileSync(join(build, 'zelklogservice.node'), path('zelklogservice.node')));
const garbage = installed('garbage', (path) => writeFileSync(path('zelklogservice.node'), 'x'));
const patched = (what) => `Object.defineProperty(process, ${what});`;

// Each: what is wrong, the folder to load, what is set up before, and the code and text of the error.
const REFUSALS = [
  ['another platform', root, patched(`'platform', { value: 'darwin' }`), 'ERR_ZELK_PLATFORM', /Linux only, and this is darwin/],
  ['an old Node.js', root, patched(`'versions', { value: { node: '16.20.2' } }`), 'ERR_ZELK_NODE_VERSION',
    /needs Node\.js 18 or newer, and this is 16\.20\.2: install/],
  ['no build', root, `process.env.ZELKLOGSERVICE_BUILD = 'nowhere';`, 'ERR_ZELK_NO_BUILD',
    /build\/nowhere\/zelklogservice\.node does not exist: run `cmake --preset nowhere/],
  ['a checkout that was never built', unbuilt, '', 'ERR_ZELK_NO_BUILD', /does not exist: run `make build`/],
  ['a build that is no folder name', root, `process.env.ZELKLOGSERVICE_BUILD = '../x';`, 'ERR_ZELK_BUILD_NAME',
    /ZELKLOGSERVICE_BUILD="\.\.\/x" is not the name of a folder/],
  ['a run-time library of Debian missing', garbage,
    `process.dlopen = () => { throw new Error('libjsoncpp.so.25: cannot open shared object file: No such file or directory\\nx') };`,
    'ERR_ZELK_LIBRARY', /libjsoncpp\.so\.25 is missing: run `apt-get install libjsoncpp25`/],
  ['a library of the package missing', incomplete, '', 'ERR_ZELK_LOAD',
    /libzelk_service_api\.so: cannot open.*install it anew/],
  ['a file that is no library', garbage, '', 'ERR_ZELK_LOAD',
    /cannot load .*zelklogservice\.node \(/],
];

for (const [what, folder, before, code, message] of REFUSALS) {
  test(`says in one line what is wrong: ${what}`, () => {
    const script = `${before} try { require(${JSON.stringify(folder)}) } catch ({ code, message, stack }) {
      console.log(JSON.stringify({ code, message, stack })) }`;
    const env = { ...process.env, ZELKLOGSERVICE_BUILD: '' };
    const { stdout, stderr } = spawnSync(process.execPath, ['-e', script], { encoding: 'utf8', env });
    const error = JSON.parse(stdout || 'null');
    assert.equal(error?.code, code, stderr);
    assert.match(error.message, message);
    assert.match(error.message, /^zelklogservice: .+$/);
    assert.equal(error.stack, error.message);
  });
}

test('an installed package takes its own libraries, whatever build is named', () => {
  const folder = installed('complete', (path) => {
    for (const file of ['zelklogservice.node', 'libohos_host.so', 'libzelk_service_api.so']) {
      symlinkSync(join(build, file), path(file));
    }
  });
  const script = `console.log(typeof require(${JSON.stringify(folder)}).getModemLogStatus)`;
  const env = { ...process.env, ZELKLOGSERVICE_BUILD: 'nowhere' };
  assert.equal(spawnSync(process.execPath, ['-e', script], { encoding: 'utf8', env }).stdout, 'function\n');
});
