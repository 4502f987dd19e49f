// The command line, and what it finds where it runs.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { join } from 'node:path';
import { text } from 'node:stream/consumers';
import { root, run, temporaryFolder } from './system.mjs';

export const program = `${root}bin/zelklog`;
export const folder = temporaryFolder();
const PLAIN = { ZELK_LOG_SERVICE: '', OHOS_FULL_TOKEN_ID: '', HILOG_LEVEL: '', HILOG_FILE: '' };

// Ends before a call that is never answered does.
export const start = (words, env) => spawn(process.execPath, [program, ...words.split(' ')],
  { env: { ...process.env, ...PLAIN, ...env }, timeout: 22_000 });

export async function zelklog(words, env) {
  const child = start(words, env);
  const closed = once(child, 'close');
  const [stdout, stderr] = await Promise.all([text(child.stdout), text(child.stderr)]);
  const [status, signal] = await closed;
  return { pid: child.pid, status: status ?? signal, stdout, stderr };
}

export const hasTerminals = run('script', ['-qec', 'true', '/dev/null']).status === 0;

// What a terminal shows.
export function onTerminal(words, env) {
  const command = `"$NODE" "$PROGRAM" ${words}`;
  const settings = { NODE: process.execPath, PROGRAM: program, ...env };
  return run('script', ['-qec', command, '/dev/null'], { env: settings }).stdout;
}

// The settings under which the command runs this code first.
export function preloading(code) {
  const file = join(mkdtempSync(`${folder}/`), 'first.cjs');
  writeFileSync(file, code);
  return { NODE_OPTIONS: `${process.env.NODE_OPTIONS ?? ''} --require=${file}` };
}

// Those under which it finds a log service with these handlers, the members of an object.
export const serving = (handlers) => preloading(`
  const { logService, ServiceError } = require(${JSON.stringify(`${root}testing/testing.js`)});
  const service = logService({ ${handlers} });`);

// The address of a bus that accepts connections and sends nothing.
export async function startMuteBus(t) {
  const server = createServer().listen(`${folder}/mute`);
  t.after(() => server.close());
  await once(server, 'listening');
  return `unix:path=${folder}/mute`;
}
