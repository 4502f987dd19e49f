// A bus of the soak programs' own, and the log service on it.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { fileURLToPath } from 'node:url';

const path = (relative) => fileURLToPath(new URL(`../../${relative}`, import.meta.url));

// Its standard output's first line, and the process.
export async function start(program, ...args) {
  const child = spawn(program, args, { stdio: ['ignore', 'pipe', 'ignore'] });
  const [line] = await Promise.race([once(child.stdout, 'data'), once(child, 'exit').then(() => [])]);
  assert.ok(line, `${program} has ended`);
  return [line.toString().trim(), child];
}

export async function startBus() {
  const [address, daemon] = await start('dbus-daemon',
    `--config-file=${path('scripts/private_bus.conf')}`, '--nofork',
    '--nopidfile', '--print-address');
  return { address, daemon };
}

// Does not wait until it serves.
export const startService = (address) =>
  spawn(path('build/release/zelk-log-service'), ['--address', address], { stdio: 'ignore' });

export async function stop(child) {
  if (child.exitCode === null && child.signalCode === null) {
    child.kill('SIGKILL');
    await once(child, 'exit');
  }
}
