// `make install` and `make uninstall`, below a prefix with unusual characters.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import {
  existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, statSync, symlinkSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../../', import.meta.url));
const release = join(root, 'build/release');
const PREFIX = '/opt/it\'s $5 für 100%';
const DESTDIR = mkdtempSync(join(tmpdir(), 'zelk-install-'));
// What is installed is the release build.
const OF_RELEASE = { skip: process.env.ZELKLOGSERVICE_BUILD && 'for the release build' };
after(() => rmSync(DESTDIR, { recursive: true }));

const installed = (path) => join(DESTDIR, PREFIX, path);

function run(program, args, env = {}) {
  const options = { cwd: root, encoding: 'utf8', env: { ...process.env, ...env } };
  const { status, stdout, stderr } = spawnSync(program, args, options);
  return { status, stdout, stderr };
}

const change = (what, prefix = PREFIX) => run('scripts/install.sh', [what], { PREFIX: prefix, DESTDIR });

// The paths of all files below a folder.
function filesBelow(folder) {
  return readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const path = join(folder, entry.name);
    return entry.isDirectory() ? filesBelow(path) : [path];
  });
}

const isElf = (path) => statSync(path).isFile() && readFileSync(path, 'latin1').startsWith('\x7fELF');

test('the installed files work, and are where D-Bus, systemd and the shell look for them', OF_RELEASE, () => {
  assert.deepEqual(change('install').stderr, '');
  const service = { ZELK_SERVICE_PROGRAM: installed('bin/zelk-log-service') };
  const { stdout } = run('scripts/with_service.sh', [installed('bin/zelklog'), 'tcpdump', 'on'], service);
  assert.equal(stdout, 'accepted\n');
  for (const [path, line] of [
    ['share/dbus-1/services/dev.zelk.LogService.service', `Exec="${PREFIX}/bin/zelk-log-service" --session`],
    ['share/dbus-1/system-services/dev.zelk.LogService.service', 'User=zelklog'],
    ['share/dbus-1/interfaces/dev.zelk.LogService1.xml', '<interface name="dev.zelk.LogService1">'],
    ['share/systemd/user/dev.zelk.LogService.service', 'BusName=dev.zelk.LogService'],
    ['lib/systemd/system/dev.zelk.LogService.service',
      'ExecStart=/usr/bin/env "/opt/it\'s $$5 für 100%%/bin/zelk-log-service" --system'],
    ['lib/sysusers.d/zelklog.conf', 'u zelklog - "Zelk log service"'],
    ['share/man/man1/zelklog.1', 'show whether the modem log is on'],
    ['../../etc/dbus-1/system.d/dev.zelk.LogService.conf', '<policy group="zelklog">'],
  ]) {
    assert.ok(readFileSync(installed(path), 'utf8').split('\n').some((text) => text.trim() === line), path);
  }
  const words = 'COMP_WORDS=(zelklog modem --json config g); COMP_CWORD=4; _zelklog; echo "${COMPREPLY[@]}"';
  const completion = installed('share/bash-completion/completions/zelklog');
  assert.equal(run('bash', ['-c', `. "$0" && ${words}`, completion]).stdout, 'get\n');
});

test('systemd rates the exposure of the service on the system bus as low', OF_RELEASE, () => {
  const unit = installed('lib/systemd/system/dev.zelk.LogService.service');
  const { status, stdout } = run('systemd-analyze', ['security', '--offline=yes', '--threshold=20', unit]);
  assert.equal(status, 0, stdout);
});

test('no library is looked for in the working directory', OF_RELEASE, () => {
  const programs = [...filesBelow(release), ...filesBelow(DESTDIR)].filter(isElf);
  const { stdout } = run('readelf', ['--dynamic', '--wide', ...programs]);
  const paths = [...stdout.matchAll(/\((?:RPATH|RUNPATH)\).*\[(.*)\]/g)].map(([, path]) => path);
  assert.ok(paths.length > 3);
  assert.deepEqual(paths.filter((path) => path.split(':').includes('')), []);
});

test('all of them can be removed', OF_RELEASE, () => {
  const { stderr } = run('make', ['uninstall', `PREFIX=${PREFIX}`, `DESTDIR=${DESTDIR}`]);
  assert.deepEqual([stderr, filesBelow(DESTDIR)], ['', []]);
  assert.equal(existsSync(installed('lib/zelklogservice')), false);
});

test('a prefix and a checkout that cannot be written down in files are refused in one line', () => {
  const isRefused = ({ status, stdout, stderr }, line) => {
    assert.deepEqual([status, stdout], [1, '']);
    assert.match(stderr, line);
  };
  for (const name of ['a"b', 'a;b', 'a\\b', 'a${b}', 'a\nb']) {
    isRefused(change('install', `/${name}`), /^scripts\/install\.sh: PREFIX.*\n$/);
    const checkout = join(DESTDIR, name);
    mkdirSync(checkout);
    symlinkSync(join(root, 'scripts'), join(checkout, 'scripts'));
    isRefused(run(join(checkout, 'scripts/setup.sh'), ['build']),
      /^scripts\/setup\.sh: the path of this checkout .*\n$/);
  }
  isRefused(change('install', 'not/absolute'), /^scripts\/install\.sh: PREFIX.*\n$/);
});
