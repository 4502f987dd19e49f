// The documentation: its links, its tables, and its examples, which are run as a reader would: every ```sh
// run block, in order, in a folder that looks like the checkout, or in the folder ZELK_INSTALLED_IN, in which
// the package is installed. The ```text output block after it is its output; log lines are compared without
// time, process and thread. A block such as ```python file=NAME is saved as NAME.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, readdirSync, readFileSync, symlinkSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { test } from 'node:test';
import { root, run, temporaryFolder, version } from '../support/system.mjs';

const build = process.env.ZELKLOGSERVICE_BUILD || 'release';
const { ZELK_INSTALLED_IN: project } = process.env;
const read = (document) => readFileSync(join(root, document), 'utf8');
const prose = (document) => read(document).replace(/^```.*?^```$/gms, '');

const succeeds = (command, ...args) => spawnSync(command, args, { stdio: 'ignore' }).status === 0;
const service = project || existsSync(`${root}build/release/zelk-log-service`);
const bus = service && succeeds('dbus-run-session', '--version');
const imports = (modules) => bus && succeeds('/usr/bin/python3', '-c', `import ${modules}`);
const HAS = {
  dbus: bus && !project, // With the checkout's scripts.
  'python3-dbus': imports('dbus, gi'),
  'python3-dbusmock': imports('dbusmock'),
};

const skip = project ? 'of the checkout' : false;
const folder = project ?? temporaryFolder();
if (!project) {
  readdirSync(root).forEach((name) => symlinkSync(join(root, name), join(folder, name)));
}

// Without the parts that differ from run to run, and without the bus daemon's own messages.
const comparable = (text) =>
  text.replace(/^dbus-daemon\[.*\n/gm, '').replace(/^\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} +\d+ +\d+ /gm, '');

function runScript(body) {
  const {
    ZELK_LOG_SERVICE, OHOS_FULL_TOKEN_ID, HILOG_LEVEL, HILOG_FILE, NODE_TEST_CONTEXT, ...env
  } = process.env;
  const programs = project ? join(project, 'node_modules/.bin') : join(folder, 'bin');
  env.PATH = `${programs}:${dirname(process.execPath)}:${env.PATH}`;
  const script = `exec 2>&1\n${body}`;
  return spawnSync('bash', ['-eo', 'pipefail', '-c', script], { cwd: folder, encoding: 'utf8', env });
}

test('what the manuals point to is packed', { skip: build !== 'release' || skip }, () => {
  const { stdout, stderr } = run('npm', ['pack', '--dry-run', '--json', '--ignore-scripts'], { cwd: root });
  const files = JSON.parse(stdout || assert.fail(stderr))[0].files;
  const own = new Map(files.map(({ path, size }) => [path, size]).filter(([path]) => !/^node_m/.test(path)));
  const wanted = new Map(readdirSync(`${root}docs`).map((name) => [`docs/${name}`, 'all of docs/']));
  wanted.set('examples/tour.mjs', 'the examples');
  for (const document of [...own.keys()].filter((path) => path.endsWith('.md'))) {
    for (const [, link] of prose(document).matchAll(/\]\((?!https?:)([^)#]+)/g)) {
      wanted.set(join(dirname(document), link), `a link of ${document}`);
    }
  }
  assert.deepEqual([...wanted].filter(([path]) => !own.has(path)), []);
  const reading = [...own].filter(([path]) => /^(docs|examples|service)\/|^[A-Z]+\.md/.test(path));
  assert.ok(reading.reduce((sum, [, size]) => sum + size, 0) < 250_000, `too much to read: ${reading}`);
});

test('the version is that of package.json', { skip }, () => {
  const { version: inLock, packages } = JSON.parse(read('package-lock.json'));
  const { version: inBundle } = JSON.parse(read('bundle.json'));
  const [, inChangelog] = /^## (\d\S*) - /m.exec(read('CHANGELOG.md'));
  const versions = { inLock, inPackageOfLock: packages[''].version, inBundle, inChangelog };
  assert.deepEqual(versions, Object.fromEntries(Object.keys(versions).map((place) => [place, version])));
});

test('the tables list the functions in order', { skip }, async () => {
  const names = Object.getOwnPropertyNames((await import('zelklogservice')).default);
  for (const document of ['README.md', 'docs/functions.md']) {
    const rows = [...read(document).matchAll(/^\| `(\w+)/gm)].map(([, name]) => name);
    assert.deepEqual(rows.filter((name) => names.includes(name)).slice(0, names.length), names, document);
  }
});

const WITH_EXAMPLES = [
  'README.md', 'docs/desktop.md', 'docs/device.md', 'docs/service-author.md', 'docs/testing.md',
];
for (const document of WITH_EXAMPLES) {
  const text = read(document);
  const blocks = [...text.matchAll(/^```\w+ (run|output|file=(\S+))(?: needs=(\S+))?\n(.*?)^```$/gms)];
  blocks.forEach(({ index, 1: kind, 2: file, 3: needs, 4: body }, i) => {
    const where = `${document}:${text.slice(0, index).split('\n').length}`;
    if (file) {
      test(`${where} is saved, and is the example of that name`, () => {
        writeFileSync(join(folder, file), body);
        if (existsSync(`${root}examples/${file}`)) {
          assert.equal(read(`examples/${file}`), body);
        }
      });
    } else if (kind === 'run') {
      const other = build !== 'release' && 'for the release build';
      const lacking = needs?.split(',').find((need) => !HAS[need]);
      test(`${where} does what it says`, { skip: other || (lacking && `needs ${lacking}`) }, () => {
        const { status, stdout } = runScript(body);
        assert.equal(status, 0, stdout);
        if (blocks[i + 1]?.[1] === 'output') {
          assert.equal(comparable(stdout), comparable(blocks[i + 1][4]));
        }
      });
    }
  });
}
