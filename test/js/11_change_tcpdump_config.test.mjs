import assert from 'node:assert/strict';
import { test } from 'node:test';
import { changeTests, E, FORGOTTEN, items, itemLines, NO_PROXY, PENDING, sees, textLine } from '../support/cases.mjs';
import { proxyCount, service } from '../support/zelk.mjs';

const name = 'changeTcpdumpConfig';
// At ERROR level on every call, although nothing is wrong; the first one even before the gate.
const enter = [E('[TCP dump] napi ChangeTcpdumpConfig: enter')];
const end = [E('[TCP dump] napi ChangeTcpdumpConfig: end')];

const sent = changeTests(name, { prefix: '[TCP dump] napi ChangeTcpdumpConfig', enter, end });

test(`${name} never answers a change that fails, and does not even log it`, async () => {
  service({ ChangeTcpdumpConfig: { code: 9, answer: true } });
  await sees(name, () => [items], { ...PENDING, ...sent });
  await sees(name, (callback) => [items, callback], { ...FORGOTTEN, ...sent });
  service(null);
  await sees(name, () => [items],
    { ...PENDING, lines: [...enter, ...itemLines, ...end, NO_PROXY('ChangeTcpdumpConfig')] });
});

test(`${name} never answers for an empty list, which is not sent, without a line about it`, async () => {
  service({ ChangeTcpdumpConfig: { answer: true } });
  await sees(name, () => [[]], { ...PENDING, lines: [...enter, ...end] });
  await sees(name, (callback) => [[], callback], { ...FORGOTTEN, lines: [...enter, ...end] });
  assert.equal(proxyCount(), 0);
});

test(`${name} writes "end" before the work is queued, and makes the texts after`, async () => {
  const { lines } = await sees(name, () => [items], { resolved: false, ...sent });
  const queued = lines.indexOf('I ZELK_SERVICE: HandleAsyncWork: workName = [ChangeTcpdumpConfig]');
  assert.equal(lines.indexOf(end[0]), queued - 1);
  assert.ok(lines.indexOf(textLine) > queued);
});
