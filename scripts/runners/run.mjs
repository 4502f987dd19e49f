// Tries the package that is installed in the current folder: with test runners, compilers and bundlers.
import babel from '@babel/core';
import commonjs from '@rollup/plugin-commonjs';
import nodeResolve from '@rollup/plugin-node-resolve';
import swc from '@swc/core';
import { spawnSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { promisify } from 'node:util';
import esbuild from 'esbuild';
import { rollup } from 'rollup';
import webpack from 'webpack';

// What a process prints, and its status first where that is not 0.
function run(...args) {
  const options = { encoding: 'utf8', timeout: 120000, env: { ...process.env, NO_COLOR: '1' } };
  const { status, stdout, stderr } = spawnSync(process.execPath, args, options);
  return `${status === 0 ? '' : `status ${status}\n`}${stdout}${stderr}`;
}

function runCode(code) {
  writeFileSync('code.js', code);
  return run('code.js');
}

const jest = (file, transform) =>
  run('node_modules/jest/bin/jest.js', '--config', JSON.stringify({ transform }), '--runTestsByPath', file);
const vitest = (...args) => run('node_modules/vitest/vitest.mjs', 'run', ...args, 'vitest.test.mjs');
const tsc = (name, ...args) =>
  run(`node_modules/${name}/bin/tsc`, '--target', 'es2022', '--esModuleInterop', ...args);
const BABEL = {
  configFile: false,
  presets: ['@babel/preset-typescript'],
  plugins: ['@babel/plugin-transform-modules-commonjs'],
};
const TS_JEST = { tsconfig: { esModuleInterop: true } };

const imports = readFileSync('imports.mjs', 'utf8');
writeFileSync('imports.js', imports);
const emit = (name) => tsc(name, '--allowJs', '--noResolve', '--typeRoots', 'none', '--module', 'commonjs',
  '--outDir', name, 'imports.js') + run(`${name}/imports.js`);

// Jest's functions have types of their own where they are imported, and these need TypeScript 5.4.
const imported = `import { afterEach, expect, jest, test } from '@jest/globals';\n`;
writeFileSync('imported.test.ts', imported + readFileSync('jest_typescript.test.ts', 'utf8'));
const check = (name, module, resolution, file = 'jest_typescript.test.ts') =>
  tsc(name, '--noEmit', '--strict', '--skipLibCheck', '--types', 'node,jest', '--module', module,
    '--moduleResolution', resolution, file);

// Each writes a bundle of entry.mjs, with the package outside or inside.
const BUNDLERS = {
  esbuild: (outfile, isModule, isOutside) => esbuild.build({
    entryPoints: ['entry.mjs'],
    bundle: true,
    platform: 'node',
    format: isModule ? 'esm' : 'cjs',
    outfile,
    external: isOutside ? ['zelklogservice'] : [],
  }),
  webpack: (filename, isModule, isOutside) => promisify(webpack)({
    entry: './entry.mjs',
    mode: 'none',
    target: 'node',
    experiments: { outputModule: isModule },
    output: { path: process.cwd(), filename, module: isModule },
    externalsType: isModule ? 'module' : 'commonjs',
    externals: isOutside ? [/^zelklogservice/] : [],
  }),
  Rollup: async (file, isModule, isOutside) => {
    const external = isOutside ? [/^zelklogservice/] : [];
    const bundle = await rollup({ input: 'entry.mjs', plugins: [nodeResolve(), commonjs()], external });
    await bundle.write({ file, format: isModule ? 'es' : 'cjs' });
  },
};
const KIT = `import { logService } from 'zelklogservice/testing';
  logService({ GetModemLogStatus: () => true });`;
const MODULE = `import zelk from 'zelklogservice'; zelk.getModemLogStatus(console.log);`;

async function bundled(bundler, isModule, isOutside, code) {
  const file = `bundle.${isModule ? 'mjs' : 'cjs'}`;
  writeFileSync('entry.mjs', code);
  await BUNDLERS[bundler](file, isModule, isOutside);
  return run(file);
}

const PASSED = /^(?!status)[^]*Tests.* 6 passed/;
const ANSWERED = /^true\n$/;
const REFUSED = /^status 1\n[^]*zelklogservice: is bundled, .*ERR_ZELK_BUNDLED/s;

// Each: what is tried, how, and what it prints.
const CHECKS = [
  ['Jest, CommonJS without settings', () => jest('jest.test.js'), PASSED],
  ['Jest, TypeScript by Babel', () =>
    jest('jest_typescript.test.ts', { '\\.ts$': ['babel-jest', BABEL] }), PASSED],
  ['Jest, TypeScript by ts-jest', () =>
    jest('jest_typescript.test.ts', { '\\.ts$': ['ts-jest', TS_JEST] }), PASSED],
  ['Vitest, in processes', () => vitest(), PASSED],
  ['Vitest, in threads', () => vitest('--pool=threads'), PASSED],
  ['imports and spies, Node.js', () => run('imports.mjs'), ANSWERED],
  ['imports and spies, Babel', () =>
    runCode(babel.transformSync(imports, { ...BABEL, filename: 'imports.js' }).code), ANSWERED],
  ['imports and spies, swc', () =>
    runCode(swc.transformSync(imports, { module: { type: 'commonjs' } }).code), ANSWERED],
  ['imports and spies, esbuild', () =>
    runCode(esbuild.transformSync(imports, { format: 'cjs' }).code), ANSWERED],
  ['imports and spies, TypeScript 5.0', () => emit('typescript'), ANSWERED],
  ['imports and spies, newest TypeScript', () => emit('typescript-newest'), ANSWERED],
  ['types, TypeScript 5.0, node10', () => check('typescript', 'commonjs', 'node10'), /^$/],
  ['types, TypeScript 5.0, node16', () => check('typescript', 'node16', 'node16'), /^$/],
  ['types, TypeScript 5.0, bundler', () => check('typescript', 'esnext', 'bundler'), /^$/],
  ['types, newest TypeScript, nodenext', () => check('typescript-newest', 'nodenext', 'nodenext'), /^$/],
  ['types, newest TypeScript, bundler', () => check('typescript-newest', 'esnext', 'bundler'), /^$/],
  ['types, newest TypeScript, Jest imported', () =>
    check('typescript-newest', 'nodenext', 'nodenext', 'imported.test.ts'), /^$/],
  ...Object.keys(BUNDLERS).flatMap((name) => [[false, 'CommonJS'], [true, 'ES module']].flatMap(
    ([isModule, format]) => [
      [`${name}, ${format}, outside`, () => bundled(name, isModule, true, KIT + MODULE), ANSWERED],
      [`${name}, ${format}, inside`, () => bundled(name, isModule, false, MODULE), REFUSED],
      [`${name}, ${format}, inside, the testing kit`, () => bundled(name, isModule, false, KIT), REFUSED],
    ])),
];

let failures = 0;
for (const [what, print, expected] of CHECKS) {
  const printed = await print();
  const isAsExpected = expected.test(printed);
  console.log(`${isAsExpected ? 'ok' : 'FAILED'}: ${what}`);
  if (!isAsExpected) {
    ++failures;
    console.log(`it printed:\n${printed}\nand not: ${expected}`);
  }
}
console.log(`${CHECKS.length - failures} passed, ${failures} failed`);
process.exitCode = failures > 0 ? 1 : 0;
