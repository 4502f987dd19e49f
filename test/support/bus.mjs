// Processes of a test's own: a bus, and the log service on it. They end with the test.
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { buildFolder, root } from './system.mjs';

export const running = new Set();
process.on('exit', () => running.forEach((child) => child.kill('SIGKILL')));

export function start(command, ...args) {
  const child = spawn(command, args, { stdio: ['ignore', 'pipe', 'ignore'] });
  running.add(child);
  return child.on('exit', () => running.delete(child));
}

// Waits until the process has ended, and gives its exit status.
export const end = async (child) => (running.has(child) ? (await once(child, 'exit'))[0] : child.exitCode);

export function stop(child, signal = 'SIGKILL') {
  child.kill(signal);
  return end(child);
}

export async function startBus(address) {
  const bus = start('dbus-daemon', `--config-file=${root}scripts/private_bus.conf`, '--nofork', '--nopidfile',
    `--address=${address}`, '--print-address');
  await once(bus.stdout, 'data');
  return bus;
}

// Does not wait until the service is ready.
export const launchService = (address) => start(`${buildFolder}zelk-log-service`, '--address', address);
