import assert from 'node:assert/strict';
import { execFile, spawn } from 'node:child_process';
import { once } from 'node:events';
import { after, before, test } from 'node:test';
import { promisify } from 'node:util';
import { buildFolder, service, zelk } from '../support/zelk.mjs';

// The module against the log service as a process, on a bus of the test's own.
const started = [];

async function start(command, ...args) {
  const child = spawn(command, args, { stdio: ['ignore', 'pipe', 'inherit'] });
  started.push(child);
  return child;
}

before(async () => {
  const bus = await start('dbus-daemon', '--session', '--nofork', '--print-address');
  const [address] = await once(bus.stdout.setEncoding('utf8'), 'data');
  process.env.ZELK_LOG_SERVICE = address.trim();
  service('embedded');
  await start(`${buildFolder}zelk-log-service`, '--address', address.trim());
  // Until it owns its name the switch is rejected.
  while (!(await zelk.handleModemLogSwitch(true).catch(() => false))) {
    await new Promise((resolve) => setTimeout(resolve, 10));
  }
});

after(() => started.reverse().forEach((child) => child.kill()));

test('an item of 10,000 parameters and more than a mebibyte goes there and back', async () => {
  const value = {};
  for (let i = 0; i < 10_000; i++) {
    value[`parameter${i}`] = 'x'.repeat(100);
  }
  assert.equal(await zelk.changeModemLogConfig([{ configKey: 'large', value }]), true);
  assert.deepEqual(await zelk.getModemLogConfig(['large']), [{ configKey: 'large', value }]);
});

test('lists of 10,000 items go there and back in order', async () => {
  const keys = Array.from({ length: 10_000 }, (_, i) => `key${i}`);
  const items = keys.map((configKey, i) => ({ configKey, value: { i } }));
  assert.equal(await zelk.changeTcpdumpConfig(items), true);
  assert.deepEqual(await zelk.getTcpdumpConfig(keys), items);
});

test('several processes have one service', async () => {
  const script = `
    const zelk = require('${buildFolder}zelklogservice.node');
    const configKey = String(process.pid);
    (async () => {
      for (let i = 0; i < 50; i++) {
        await zelk.changeModemLogConfig([{ configKey, value: { i } }]);
        const [{ value }] = await zelk.getModemLogConfig([configKey]);
        if (value.i !== i) process.exit(1);
      }
      console.log(await zelk.getModemLogStatus(), await zelk.queryProtocolData('é"'));
    })();`;
  const clients = Array.from({ length: 4 }, () => promisify(execFile)(process.execPath, ['-e', script]));
  for (const { stdout } of await Promise.all(clients)) {
    assert.equal(stdout, 'true {"request":"é\\"","data":""}\n');
  }
});
