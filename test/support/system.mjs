// Paths, folders and programs.
import { spawnSync } from 'node:child_process';
import {
  cpSync, existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { fileURLToPath } from 'node:url';

export const root = fileURLToPath(new URL('../../', import.meta.url));
export const buildFolder = `${root}build/${process.env.ZELKLOGSERVICE_BUILD || 'release'}/`;
export const hasBus = existsSync(`${buildFolder}zelk-log-service`);

export const { version } = JSON.parse(readFileSync(`${root}package.json`));
export const OWN = `lib/linux-${process.arch}`; // Where a package has its libraries.
export const libraryName = (name) => `lib${name}-${version}.so`;

// Gives its path; it is removed with everything in it when the process ends.
export function temporaryFolder() {
  const folder = mkdtempSync(`${tmpdir()}/zelk-test-`);
  process.on('exit', () => rmSync(folder, { recursive: true }));
  return folder;
}

// The folder of a package of that version with files of its own: these texts, and below `where` the build's
// libraries, or those that are named.
export function packageCopy({ number = version, where = OWN, files, texts = {} } = {}) {
  const folder = temporaryFolder();
  for (const file of ['package.json', 'js', 'testing']) {
    cpSync(root + file, `${folder}/${file}`, { recursive: true });
  }
  mkdirSync(`${folder}/${where}`, { recursive: true });
  for (const file of (files ?? readdirSync(buildFolder)).filter((name) => /\.(so|node)$/.test(name))) {
    const content = readFileSync(buildFolder + file, 'latin1').replaceAll(`-${version}.so`, `-${number}.so`);
    writeFileSync(`${folder}/${where}/${file.replace(version, number)}`, content, 'latin1');
  }
  Object.entries(texts).forEach(([file, text]) => writeFileSync(`${folder}/${file}`, text));
  return folder;
}

// `env` is added to the environment.
export function run(program, args, { env, ...options } = {}) {
  const { status, stdout, stderr } = spawnSync(program, args,
    { encoding: 'utf8', env: { ...process.env, ...env }, ...options });
  return { status, stdout, stderr };
}

export const runCode = (code, options) => run(process.execPath, ['-e', code], options);
