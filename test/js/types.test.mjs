// index.d.ts against its users (test/types) and against the module itself.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { test } from 'node:test';
import ts from 'typescript';
import { TARGET, sdkDeclaration } from '../../scripts/sdk_declaration.mjs';
import { root, run } from '../support/system.mjs';

const tsc = createRequire(import.meta.url).resolve('typescript/bin/tsc');

for (const [users, project] of [['Node.js', 'test/types'], ['a device', 'test/types/sdk']]) {
  test(`good uses on ${users} compile, and each bad use is refused`, () => {
    const { status, stdout } = run(process.execPath, [tsc, '-p', `${root}${project}`]);
    assert.equal(status, 0, stdout);
  });
}

test('the declaration for devices is made from that for Node.js', () => {
  assert.equal(readFileSync(TARGET, 'utf8'), sdkDeclaration());
});

test('the declared functions are those that the module exports, every form with its manual', async () => {
  const module = (await import('zelklogservice')).default;
  const program = ts.createProgram([`${root}index.d.ts`], {});
  const checker = program.getTypeChecker();
  const file = checker.getSymbolAtLocation(program.getSourceFile(`${root}index.d.ts`));
  const functions = checker.getExportsOfModule(file)
    .filter((symbol) => symbol.flags & ts.SymbolFlags.Function);

  assert.deepEqual(functions.map(({ name }) => name), Object.getOwnPropertyNames(module));
  for (const symbol of functions) {
    for (const form of checker.getTypeOfSymbol(symbol).getCallSignatures()) {
      const manual = ts.displayPartsToString(form.getDocumentationComment(checker));
      assert.match(manual, /see above|Rights: (system application|none)\./, checker.signatureToString(form));
    }
  }
});
