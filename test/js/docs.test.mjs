// The documents: their links, their tables, and their examples, which are run as a reader would: every ```sh run block,
// in order, in a folder that looks like the checkout. A ```text output block behind it is what it prints; log lines are
// compared without time, process and thread. A block such as ```python file=NAME is what the reader saves as NAME.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../..', import.meta.url));
const build = process.env.ZELKLOGSERVICE_BUILD || 'release';
const documents = ['README.md', 'docs/desktop.md', 'docs/service-author.md'];

const succeeds = (command, ...args) => spawnSync(command, args, { stdio: 'ignore' }).status === 0;
const dbus = existsSync(`${root}build/release/zelk-log-service`) && succeeds('dbus-run-session', '--version');
const NEEDS = {
  dbus: () => dbus,
  'python3-dbus': () => dbus && succeeds('/usr/bin/python3', '-c', 'import dbus, gi'),
};

function blocksOf(document) {
  const text = readFileSync(join(root, document), 'utf8');
  return [...text.matchAll(/^```(\w+) (run|output|file=(\S+))(?: needs=(\S+))?\n(.*?)^```$/gms)].map((match) => ({
    document: `${document}:${text.slice(0, match.index).split('\n').length}`,
    kind: match[2],
    file: match[3],
    needs: match[4],
    body: match[5],
  }));
}

// Without what differs from run to run, and without the bus daemon's own remarks about this machine.
const comparable = (text) =>
  text.replace(/^dbus-daemon\[.*\n/gm, '').replace(/^\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} +\d+ +\d+ /gm, '');

let folder;

before(() => {
  folder = mkdtempSync(join(tmpdir(), 'zelk-docs-'));
  for (const name of readdirSync(root)) {
    symlinkSync(join(root, name), join(folder, name));
  }
});

after(() => rmSync(folder, { recursive: true }));

function run(body) {
  const env = { ...process.env, PATH: `${dirname(process.execPath)}:${process.env.PATH}` };
  for (const name of ['ZELK_LOG_SERVICE', 'OHOS_FULL_TOKEN_ID', 'HILOG_LEVEL', 'HILOG_FILE', 'NODE_TEST_CONTEXT']) {
    delete env[name];
  }
  const script = `exec 2>&1\n${body}`;
  return spawnSync('bash', ['-eo', 'pipefail', '-c', script], { cwd: folder, encoding: 'utf8', env, timeout: 60000 });
}

test('links lead somewhere', () => {
  for (const document of readdirSync(root).concat(readdirSync(`${root}docs`).map((name) => `docs/${name}`))) {
    const text = document.endsWith('.md') ? readFileSync(join(root, document), 'utf8') : '';
    for (const [, link] of text.matchAll(/\]\((?!https?:)([^)#]+)/g)) {
      assert.ok(existsSync(join(root, dirname(document), link)), `${document}: ${link}`);
    }
  }
});

test('the tables list the functions in order', async () => {
  const names = Object.getOwnPropertyNames((await import('zelklogservice')).default);
  for (const document of ['README.md', 'docs/functions.md']) {
    const rows = [...readFileSync(join(root, document), 'utf8').matchAll(/^\| `(\w+)/gm)].map(([, name]) => name);
    assert.deepEqual(rows.filter((name) => names.includes(name)).slice(0, names.length), names, document);
  }
});

for (const document of documents) {
  const blocks = blocksOf(document);
  blocks.forEach(({ kind, document: where, file, needs, body }, index) => {
    if (file) {
      test(`${where} is saved`, () => writeFileSync(join(folder, file), body));
    }
    if (kind !== 'run') {
      return;
    }
    const skip = build !== 'release' ? 'the examples use the release build'
      : needs && !NEEDS[needs]() ? `needs ${needs}` : false;
    test(`${where} does what it says`, { skip }, () => {
      const { status, stdout } = run(body);
      assert.equal(status, 0, stdout);
      const output = blocks[index + 1];
      if (output?.kind === 'output') {
        assert.equal(comparable(stdout), comparable(output.body));
      }
    });
  });
}
