// index.d.ts against its users (test/types) and against the module itself.
import assert from 'node:assert/strict';
import { copyFileSync, mkdirSync, readFileSync, symlinkSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { test } from 'node:test';
import ts from 'typescript';
import { TARGET, sdkDeclaration } from '../../scripts/sdk_declaration.mjs';
import { root, run, temporaryFolder } from '../support/system.mjs';

const tsc = createRequire(import.meta.url).resolve('typescript/bin/tsc');

function compiles(...args) {
  const { status, stdout } = run(process.execPath, [tsc, ...args]);
  assert.equal(status, 0, stdout);
}

for (const [users, project] of [['Node.js', 'test/types'], ['a device', 'test/types/sdk']]) {
  test(`good uses on ${users} compile, and each bad use is refused`, () => compiles('-p', root + project));
}

const application = temporaryFolder();
mkdirSync(join(application, 'node_modules'));
symlinkSync(root, join(application, 'node_modules/zelklogservice'));

for (const [resolution, module, file] of [
  ['node10', 'commonjs', 'imports.ts'], ['node16', 'node16', 'imports.mts'],
  ['bundler', 'esnext', 'imports.ts'],
]) {
  test(`both entries have their types with the module resolution ${resolution}`, () => {
    copyFileSync(`${root}test/types/imports.ts`, join(application, file));
    compiles('--noEmit', '--strict', '--esModuleInterop', '--target', 'es2022',
      '--module', module, '--moduleResolution', resolution, join(application, file));
  });
}

test('the declaration for devices is made from that for Node.js', () => {
  assert.equal(readFileSync(TARGET, 'utf8'), sdkDeclaration());
});

// What a form's own manual must say, by what the manual of the functions says of a failed request.
const ON_FAILURE = {
  never: {
    promise: /Never settles \(.* set a time limit\): the request failed/,
    callback: /Never calls back: the request failed/,
  },
  boolean: { promise: /Failed: rejected with a boolean/, callback: /Failed: .* cannot distinguish/ },
  'rejected with a string': { promise: /Failed: rejected with a string/ },
};
const failures = Object.fromEntries(
  [...readFileSync(`${root}docs/functions.md`, 'utf8').matchAll(/^\| `(\w+)` \|.*\| ([\w ]+) \|$/gm)]
    .map(([, name, failure]) => [name, failure]));

test('the declared functions are those that the module exports, every form with its own manual', async () => {
  const module = (await import('zelklogservice')).default;
  const program = ts.createProgram([`${root}js/index.d.ts`], {});
  const checker = program.getTypeChecker();
  const file = checker.getSymbolAtLocation(program.getSourceFile(`${root}js/index.d.ts`));
  const functions = checker.getExportsOfModule(file)
    .filter((symbol) => symbol.flags & ts.SymbolFlags.Function);

  assert.deepEqual(functions.map(({ name }) => name), Object.keys(module));
  for (const { name, form } of functions.flatMap((symbol) =>
    checker.getTypeOfSymbol(symbol).getCallSignatures().map((form) => ({ name: symbol.name, form })))) {
    const signature = `${name}${checker.signatureToString(form)}`;
    const manual = ts.displayPartsToString(form.getDocumentationComment(checker)).replaceAll(/\s+/g, ' ');
    const isPromise = signature.includes('Promise<');
    const forAll = name.includes('Remote') || name.includes('Protocol');
    const hasCallback = signature.includes('callback: ');
    const says = (text) => assert.match(manual, text, signature);
    says(forAll ? /Rights: none\./ : /Rights: system application\./);
    if (name !== 'getRemoteDevicesList') {
      says(hasCallback ? /Refused \(.*callback is never called\): / : /Refused \(returns `undefined`.*\): /);
    }
    if (isPromise || hasCallback) {
      says(ON_FAILURE[failures[name]][isPromise ? 'promise' : 'callback']);
    } else {
      assert.ok(form.getJsDocTags().some((tag) => tag.name === 'throws'), signature);
    }
  }
});
