import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
  E, FORGOTTEN, gateTest, itemLines, items, itemText, MISMATCH, NO_PROXY, PENDING, RUNTIME, sees, textLine,
  UNCALLABLE,
} from '../support/cases.mjs';
import { run, service, zelk } from '../support/zelk.mjs';

const name = 'sendModemLogCommand';
const [command] = items;
const sent = { requests: [['SendModemLogCommand', itemText]], lines: [...itemLines, textLine] };

gateTest(name, [E('SendModemLogCommand: current app is not system app, so return')]);

test(`${name} takes a command and, of two arguments, anything as the callback`, async () => {
  for (const answer of [true, false]) {
    service({ SendModemLogCommand: { answer } });
    await sees(name, () => [command], { resolved: answer, ...sent });
    await sees(name, (callback) => [command, callback], { callback: [[answer]], ...sent });
    await sees(name, (callback) => [command, callback, 1], { resolved: answer, ...sent });
  }
  for (const second of [42, 'x', undefined, null, {}]) {
    await sees(name, () => [command, second], { ...UNCALLABLE, ...sent });
  }
});

test(`${name} sends the command with what it can read of it`, async () => {
  const noKey = E('GetString: get len error');
  const noValue = E('failed to get property names.');
  for (const [value, text, ...lines] of [
    [{}, '{"configKey":"","value":}}', noKey, noValue],
    [[1], '{"configKey":"","value":}}', noKey, noValue],
    [{ configKey: 'k' }, '{"configKey":"k","value":}}', noValue],
    [{ configKey: '', value: {} }, '{"configKey":"","value":}}', E('GetString: len error')],
    [{ configKey: 5, value: 'x' }, '{"configKey":"","value":}}', noKey, noValue],
    [Object.assign([], command), itemText, ...itemLines],
  ]) {
    await sees(name, () => [value], {
      resolved: false,
      requests: [['SendModemLogCommand', text]],
      lines: [...lines, E(`GetJsonParams ostringstream ${text}`)],
    });
  }
});

test(`${name} refuses what is no object`, async () => {
  const mismatch = [MISMATCH, MISMATCH, E('SendModemLogCommand: Illegal params')];
  await sees(name, () => [], { thrown: RUNTIME, lines: mismatch });
  for (const value of ['a', 1, null, undefined, () => 1]) {
    await sees(name, (callback) => [value, callback], { lines: mismatch });
  }
});

test(`${name} never answers a command that fails, and does not even log it`, async () => {
  service({ SendModemLogCommand: { code: 9, answer: true } });
  await sees(name, () => [command], { ...PENDING, ...sent });
  await sees(name, (callback) => [command, callback], { ...FORGOTTEN, ...sent });
  service(null);
  await sees(name, () => [command], { ...PENDING, lines: [...itemLines, NO_PROXY('SendModemLogCommand')] });
});

test(`${name} keeps any callback while an exception of the caller's own getter is pending`, async () => {
  const own = new Error("the caller's own");
  const seen = await run(() => zelk[name]({ get configKey() { throw own; } }, 5));
  assert.equal(seen.thrown, own);
  assert.deepEqual(seen.requests, [['SendModemLogCommand', '{"configKey":"","value":}}']]);
});
