// How the package loads: both kinds of import, worker threads, and the errors when it cannot.
import assert from 'node:assert/strict';
import { existsSync, mkdirSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { basename, join } from 'node:path';
import { test } from 'node:test';
import { buildFolder, libraryName, OWN, packageCopy, root, run, version } from '../support/system.mjs';

const require = createRequire(import.meta.url);

test('require gives an ordinary object of the native functions, which are fixed', async () => {
  const library = require(root);
  const { default: whole, ...named } = await import('../../js/index.mjs');
  assert.equal(whole, library);
  const native = require(join(buildFolder, 'zelklogservice.node'));
  const names = Object.getOwnPropertyNames(native);
  for (const [object, is] of [[native, false], [library, true]]) {
    const property = (name) => ({ value: native[name], writable: is, enumerable: is, configurable: is });
    assert.deepEqual(Object.getOwnPropertyDescriptors(object),
      Object.fromEntries(names.map((name) => [name, property(name)])));
  }
  assert.equal(Object.getPrototypeOf(library), Object.prototype);
  assert.deepEqual(named, { ...library });
});

const MODULE = 'zelklogservice.node';
const LIBRARIES = [MODULE, libraryName('ohos_host'), libraryName('zelk_service_api')];
const DBUS = libraryName('zelk_dbus');

const runNode = (script, build = '', options = []) =>
  run(process.execPath, [...options, '-e', script], { env: { ZELKLOGSERVICE_BUILD: build } });

const patched = (what) => `Object.defineProperty(process, ${what});`;
const refusing = (reason) => `process.dlopen = () => {
  throw Object.assign(new Error(${JSON.stringify(reason)}), { code: 'ERR_DLOPEN_FAILED' });
};`;

const CHECKOUT = { 'CMakeLists.txt': '' };
const sources = (texts) => packageCopy({ files: [], where: '.', texts });
const whole = packageCopy();
const garbage = packageCopy({ files: [], texts: { [`${OWN}/${MODULE}`]: 'x' } });
const incomplete = packageCopy({ files: [MODULE] });

const PERMISSION =
  ['--permission', '--experimental-permission'].find((name) => process.allowedNodeEnvironmentFlags.has(name));

// Each: what is wrong, the folder to load, what is set up before, the code and text of the error, and that of
// its cause where the loader or the module itself threw one; options of Node.js.
const REFUSALS = [
  ['another platform', whole, patched(`'platform', { value: 'darwin' }`), 'ERR_ZELK_PLATFORM',
    /Linux only, and this is darwin/],
  ['an old Node.js', whole, patched(`'versions', { value: { node: '16.20.2' } }`), 'ERR_ZELK_NODE_VERSION',
    /needs Node\.js 18 or newer, and this is 16\.20\.2: install/],
  ['a build that is not a folder name', root, `process.env.ZELKLOGSERVICE_BUILD = '../x';`,
    'ERR_ZELK_BUILD_NAME', /ZELKLOGSERVICE_BUILD="\.\.\/x" is not the name of a folder/],
  ['a checkout that was never built', sources(CHECKOUT), '', 'ERR_ZELK_NO_BUILD',
    /build\/release\/zelklogservice\.node does not exist: run `make build` in/],
  ['sources that were installed', sources(), '', 'ERR_ZELK_NO_BUILD', /never built: .*`make pack`/],
  ['a file in place of the libraries', sources({ lib: '' }), '', 'ERR_ZELK_NO_BUILD',
    /\/lib is a file, not a folder: install this package anew/],
  ['another processor', whole, patched(`'arch', { value: 'riscv64' }`), 'ERR_ZELK_PROCESSOR',
    /no build for linux-riscv64, only for linux-\w+: run/],
  ['another C library', garbage, patched(`'report', { value: { getReport: () => ({ header: {} }) } }`),
    'ERR_ZELK_LIBC', /for the GNU C library, and this Node\.js uses another one/, /./],
  ['an old C library', whole, refusing(`libc.so.6: version \`GLIBC_2.34' not found (required by x)`),
    'ERR_ZELK_LIBC', /needs newer .* with GLIBC_2\.34: use a newer system/, /GLIBC_2\.34/],
  ['a run-time library missing', whole,
    refusing('libgcc_s.so.1: cannot open shared object file: No such file or directory\nx'),
    'ERR_ZELK_LIBRARY', /libgcc_s\.so\.1 is missing: .*`apt-get install libgcc-s1`/, /^libgcc_s/],
  ['a library of the package missing', incomplete, '', 'ERR_ZELK_LOAD',
    /libzelk_service_api-[\d.]+\.so: cannot open.*install it anew/, /libzelk_service_api/],
  ['an error of the module itself', whole, `const { dlopen } = process;
    process.dlopen = (module, file) => dlopen({ exports: Object.freeze({}) }, file);`,
  'ERR_ZELK_INIT', /was loaded, but could not set itself up \(Unknown failure\)$/, /^Unknown failure$/],
  ['addons switched off', whole, '', 'ERR_ZELK_ADDONS_OFF',
    /--no-addons .*without/, /disabled/, ['--no-addons']],
  ['the permission model', whole, '', 'ERR_ZELK_ADDONS_OFF',
    /permission model.*with --allow-addons$/, /disabled/, [PERMISSION, '--allow-fs-read=*']],
];

for (const [what, folder, before, code, message, cause = /^undefined$/, options = []] of REFUSALS) {
  const skip = options.includes(undefined) && 'this Node.js lacks it';
  test(`says in one line what is wrong: ${what}`, { skip }, () => {
    const { stdout, stderr } = runNode(`${before} try { require(${JSON.stringify(folder)}) } catch (error) {
      const { code, message, stack, cause } = error;
      console.log(JSON.stringify({ code, message, stack, cause: String(cause?.message) })) }`, '', options);
    const error = JSON.parse(stdout || 'null');
    assert.equal(error?.code, code, stderr);
    assert.match(error.message, message);
    assert.match(error.message, /^zelklogservice: .+$/);
    assert.equal(error.stack, error.message);
    assert.match(error.cause, cause);
  });
}

const loads = (folder) => `console.log(typeof require(${JSON.stringify(folder)}).getModemLogStatus)`;

test('a library that Node.js has lost sight of is loaded once more', () => {
  const losing = `const { dlopen } = process; let lost = 0;
    process.dlopen = (...args) => (++lost > 1 ? dlopen(...args) : assert.fail('x did not self-register'));`;
  assert.equal(runNode(losing + loads(whole)).stdout, 'function\n');
});

test('a package uses its own libraries, and a checkout those of its build', () => {
  const checkout = packageCopy({ where: 'build/release', texts: CHECKOUT });
  mkdirSync(join(checkout, OWN), { recursive: true });
  writeFileSync(join(checkout, OWN, MODULE), 'of an older package');
  assert.equal(runNode(loads(whole), 'nowhere').stdout, 'function\n');
  assert.equal(runNode(loads(checkout)).stdout, 'function\n');
  assert.equal(runNode(loads(packageCopy({ texts: CHECKOUT }))).stdout, 'function\n');
  assert.match(runNode(loads(checkout), 'nowhere').stderr,
    /nowhere.* does not exist: run `cmake --preset nowhere/);
});

const otherVersion = version.replace(/\d/, (digit) => 9 - digit);
const ofOtherVersion = (name) => name.replace(version, otherVersion);
const packages = [version, version, otherVersion].map((number) => packageCopy({ number }));
const withBus = existsSync(join(buildFolder, DBUS)) ? [...LIBRARIES, DBUS] : LIBRARIES;

// Each: the log service, whether the modem log is on, by each package, and the libraries that are loaded.
for (const [service, status, libraries] of [
  ['embedded', [true, true, false], LIBRARIES],
  ['unix:path=/nonexistent', [null, null, null], withBus],
]) {
  const title = `in one process, two versions share nothing, and two copies of one version share: ${service}`;
  const skip = existsSync(join(buildFolder, 'libzelk_jsoncpp.so')) && 'a build that is no package';
  test(title, { skip }, () => {
    const script = `const packages = ${JSON.stringify(packages)}.map((path) => require(path));
      (async () => {
        await packages[0].handleModemLogSwitch(true, []).catch(() => {});
        const answers = await Promise.allSettled(packages.map((each) => each.getModemLogStatus()));
        const status = answers.map(({ value }) => value);
        const files = require('fs').readFileSync('/proc/self/maps', 'utf8').match(/\\/.*/g);
        console.log(JSON.stringify({ status, files }));
      })();`;
    const { stdout, stderr } = runNode(`process.env.ZELK_LOG_SERVICE = '${service}'; ${script}`);
    const seen = JSON.parse(stdout || assert.fail(stderr));
    assert.deepEqual(seen.status, status);
    const loaded = packages.map((folder) => seen.files.filter((file) => file.startsWith(folder)));
    const names = loaded.map((files) => [...new Set(files)].map((file) => basename(file)).sort());
    assert.deepEqual(names, [[...libraries].sort(), [MODULE], libraries.map(ofOtherVersion).sort()]);
  });
}
