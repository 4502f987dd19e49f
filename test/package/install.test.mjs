// `make install` and `make uninstall`, below a prefix with unusual characters.
import assert from 'node:assert/strict';
import { chownSync, existsSync, mkdirSync, readFileSync, readdirSync, symlinkSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { root, run, temporaryFolder } from '../support/system.mjs';

const PREFIX = '/opt/it\'s $5 für 100%';
const DESTDIR = temporaryFolder();
// What is installed is the release build.
const OF_RELEASE = { skip: process.env.ZELKLOGSERVICE_BUILD && 'for the release build' };

const installed = (path) => join(DESTDIR, PREFIX, path);

const install = (prefix) =>
  run(`${root}scripts/install.sh`, ['install'], { env: { PREFIX: prefix, DESTDIR } });

const filesBelow = (folder) => run('find', [folder, '-type', 'f']).stdout.split('\n').filter(Boolean);

test('the installed files work, and are where D-Bus, systemd and the shell look for them', OF_RELEASE, () => {
  assert.deepEqual(install(`/${PREFIX}//`).stderr, '');
  const env = { ZELK_SERVICE_PROGRAM: installed('bin/zelk-log-service') };
  const words = [installed('bin/zelklog'), 'tcpdump', 'on'];
  const { stdout } = run(`${root}scripts/with_service.sh`, words, { env });
  assert.equal(stdout, 'accepted\n');
  for (const [path, line] of [
    ['share/dbus-1/services/dev.zelk.LogService.service', `Exec="${PREFIX}/bin/zelk-log-service" --session`],
    ['share/dbus-1/system-services/dev.zelk.LogService.service', 'User=zelklog'],
    ['share/dbus-1/interfaces/dev.zelk.LogService1.xml', '<interface name="dev.zelk.LogService1">'],
    ['share/systemd/user/dev.zelk.LogService.service', 'BusName=dev.zelk.LogService'],
    ['lib/systemd/system/dev.zelk.LogService.service',
      'ExecStart=/usr/bin/env "/opt/it\'s $$5 für 100%%/bin/zelk-log-service" --system'],
    ['lib/sysusers.d/zelklog.conf', 'u zelklog - "Zelk log service"'],
    ['share/man/man1/zelklog.1', 'also switch each log on and off, and change an item of each configuration'],
    ['../../etc/dbus-1/system.d/dev.zelk.LogService.conf', '<policy group="zelklog">'],
  ]) {
    assert.ok(readFileSync(installed(path), 'utf8').split('\n').some((text) => text.trim() === line), path);
  }
  const script = `. "$0"
    COMP_WORDS=(zelklog modem --json config g)
    COMP_CWORD=4
    _zelklog
    echo "\${COMPREPLY[@]}"`;
  const completion = installed('share/bash-completion/completions/zelklog');
  assert.equal(run('bash', ['-c', script, completion]).stdout, 'get\n');
});

test('systemd rates the exposure of the service on the system bus as low', OF_RELEASE, () => {
  const unit = installed('lib/systemd/system/dev.zelk.LogService.service');
  const { status, stdout } = run('systemd-analyze', ['security', '--offline=yes', '--threshold=20', unit]);
  assert.equal(status, 0, stdout);
});

test('no library is looked for in the working directory', OF_RELEASE, () => {
  const files = [...filesBelow(`${root}build/release`), ...filesBelow(DESTDIR)];
  const { stdout } = run('readelf', ['--dynamic', '--wide', ...files]);
  const paths = [...stdout.matchAll(/\((?:RPATH|RUNPATH)\).*\[(.*)\]/g)].map(([, path]) => path);
  assert.ok(paths.length > 3);
  assert.deepEqual(paths.filter((path) => path.split(':').includes('')), []);
});

test('all of them can be removed', OF_RELEASE, () => {
  const { stderr } = run('make', ['-C', root, 'uninstall', `PREFIX=${PREFIX}`, `DESTDIR=${DESTDIR}`]);
  assert.deepEqual([stderr, filesBelow(DESTDIR)], ['', []]);
  assert.equal(existsSync(installed('lib/zelklogservice')), false);
});

// Root becomes a user who owns nothing else.
const NOBODY = 65534;
const isRoot = process.getuid() === 0;
const identity = isRoot ? ['setpriv', `--reuid=${NOBODY}`, `--regid=${NOBODY}`, '--clear-groups'] : ['env'];
const asUser = (words, options) => run(identity[0], [...identity.slice(1), ...words], options);
const reads = `fs.accessSync(${JSON.stringify(`${root}build/release/cmake_install.cmake`)})`;
const BY_USER = { skip: OF_RELEASE.skip ||
  (asUser(['node', '-e', reads]).status !== 0 && 'only root can read this checkout, or run Node.js') };

test('a user can install, upgrade, and remove whatever is there', BY_USER, () => {
  const home = temporaryFolder();
  if (isRoot) {
    chownSync(home, NOBODY, NOBODY);
  }
  const prefix = join(home, '.local');
  const library = join(prefix, 'lib/zelklogservice');
  const list = join(library, 'installed.txt');
  const script = (action) =>
    asUser([`${root}scripts/install.sh`, action], { env: { PREFIX: prefix, DESTDIR: '' } }).stderr;
  const shell = (code, env) => asUser(['sh', '-ec', code], { cwd: home, env }).stdout;

  shell('mkdir .local; touch .local/lib');
  assert.match(script('install'), /^Note: .*\n.*\.local\/lib is not a folder: .*\n$/);

  // Over a version that had another file, and broken off at one of the last files, as on a full disk.
  shell(`rm .local/lib
    mkdir -p .local/lib/zelklogservice/old .local/share/systemd/user/dev.zelk.LogService.service
    touch .local/lib/zelklogservice/old/file
    find "$PWD/.local" -type d -printf '%p/\n' -o -print >list
    mv list .local/lib/zelklogservice/installed.txt`);
  assert.match(script('install'), /LogService\.service.*\n.* failed halfway: `make uninstall`.*\n$/);
  assert.ok(existsSync(join(prefix, 'bin/zelklog')));
  assert.deepEqual([script('uninstall'), readdirSync(home)], ['', []]);

  assert.match(script('install'), /^Note: the session bus can .* The system bus cannot: .*\n$/);
  const whole = readFileSync(list, 'utf8');
  shell(`cd .local/lib/zelklogservice; mkdir old; touch old/file
    sed -i '\\|lib/zelklogservice/.*/$|d' installed.txt
    printf '%s\n' "$PWD/old/" "$PWD/old/file" >>installed.txt`);
  script('install');
  assert.deepEqual([readFileSync(list, 'utf8'), existsSync(join(library, 'old'))], [whole, false]);

  const bus = { XDG_DATA_HOME: join(prefix, 'share'), ZELK_LOG_SERVICE: 'session' };
  const commands = `dbus-run-session -- sh -c 'cd .local/bin; ./zelklog modem on; ./zelklog modem status'`;
  assert.equal(shell(commands, bus), 'accepted\non\n');
  const { exports } = JSON.parse(readFileSync(join(library, 'package.json'), 'utf8'));
  for (const [file] of JSON.stringify(exports).matchAll(/(?<=")\.\/[^"]+\.\w+(?=")/g)) {
    assert.ok(existsSync(join(library, file)), file);
  }
  assert.deepEqual([script('uninstall'), readdirSync(home)], ['', []]);
});

test('a prefix and a checkout that cannot be written down in files are refused in one line', () => {
  const isRefused = ({ status, stdout, stderr }, line) => {
    assert.deepEqual([status, stdout], [1, '']);
    assert.match(stderr, line);
  };
  for (const name of ['a"b', 'a;b', 'a\\b', 'a${b}', 'a\nb']) {
    isRefused(install(`/${name}`), /^scripts\/install\.sh: PREFIX.*\n$/);
    const checkout = join(DESTDIR, name);
    mkdirSync(checkout);
    symlinkSync(join(root, 'scripts'), join(checkout, 'scripts'));
    isRefused(run(join(checkout, 'scripts/setup.sh'), ['build']),
      /^scripts\/setup\.sh: the path of this checkout .*\n$/);
  }
  isRefused(install('not/absolute'), /^scripts\/install\.sh: PREFIX.*\n$/);
});
