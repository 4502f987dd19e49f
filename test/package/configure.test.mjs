// What CMake makes of the settings that it is given.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync, symlinkSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { root, run, temporaryFolder } from '../support/system.mjs';

test('a checkout without npm packages configures, with the flags that the user set', {
  skip: process.env.ZELKLOGSERVICE_BUILD && 'the same for each build',
}, () => {
  const checkout = temporaryFolder();
  const files = readdirSync(root).filter((name) => !['build', 'node_modules'].includes(name));
  files.forEach((name) => symlinkSync(join(root, name), join(checkout, name)));
  const headers = join(root, 'node_modules/node-api-headers/include');
  const { status, stderr } = run('cmake', ['-G', 'Ninja', '-S', checkout, '-B', join(checkout, 'build'),
    `-DNODE_API_INCLUDE_DIR=${headers}`, '-DCMAKE_EXPORT_COMPILE_COMMANDS=ON', '-DZELK_BUILD_TESTS=OFF',
    '-DCMAKE_CXX_FLAGS=', '-DCMAKE_CXX_FLAGS_RELEASE=-O1']);
  assert.equal(status, 0, stderr);
  const commands = JSON.parse(readFileSync(join(checkout, 'build/compile_commands.json')));
  const flags = commands.map(({ command }) => command.match(/ (-O\w*|-Werror|-D_FORTIFY_SOURCE=\d)(?= )/g));
  assert.deepEqual([...new Set(flags.flat())], [' -O1']);
});
