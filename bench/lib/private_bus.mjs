// A private bus with a log service on it, for as long as `use` runs.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const CONFIGURATION = fileURLToPath(new URL('../../scripts/private_bus.conf', import.meta.url));

async function firstLine(child) {
  child.stdout.setEncoding('utf8');
  let text = '';
  for await (const chunk of child.stdout) {
    text += chunk;
    if (text.includes('\n')) {
      return text.slice(0, text.indexOf('\n'));
    }
  }
  throw new Error(`${child.spawnfile} ended silently`);
}

function start(program, args, stderr = 'inherit') {
  const child = spawn(program, args, { stdio: ['ignore', 'pipe', stderr] });
  child.on('error', (error) => console.error(`${program}: ${error.message}`));
  return child;
}

async function end(child) {
  const isRunning = child.pid !== undefined && child.exitCode === null && child.signalCode === null;
  if (isRunning) {
    child.kill();
    await once(child, 'exit');
  }
}

// `service(address)` is the service's program and arguments; `isReady(address)` settles when it can be
// called.
export async function withService(service, isReady, use) {
  const folder = mkdtempSync(path.join(tmpdir(), 'zelk-bench-'));
  // The daemon remarks on this machine's limits, which are no concern of a benchmark.
  const bus = start('dbus-daemon', [
    `--config-file=${CONFIGURATION}`, '--nofork', '--nopidfile', '--print-address',
    `--address=unix:path=${path.join(folder, 'bus')}`,
  ], 'ignore');
  let child;
  try {
    const address = await firstLine(bus);
    child = start(...service(address));
    await isReady(address);
    return await use(address);
  } finally {
    if (child) {
      await end(child);
    }
    await end(bus);
    rmSync(folder, { recursive: true });
  }
}
