import assert from 'node:assert/strict';
import { test } from 'node:test';
import { changeTests, E, I, items, sees, textLine } from '../support/cases.mjs';

// At ERROR level on every call, although nothing is wrong; the first one even before the gate.
const enter = [E('[TCP dump] napi ChangeTcpdumpConfig: enter')];
const end = [E('[TCP dump] napi ChangeTcpdumpConfig: end')];

// A failure is not even logged, nor an empty list.
const sent = changeTests('changeTcpdumpConfig', { prefix: '[TCP dump] napi ChangeTcpdumpConfig', enter, end });

test('changeTcpdumpConfig writes "end" before the work is queued, and makes the texts after', async () => {
  const { lines } = await sees('changeTcpdumpConfig', () => [items], { resolved: false, ...sent });
  const queued = lines.indexOf(I('HandleAsyncWork: workName = [ChangeTcpdumpConfig]'));
  assert.equal(lines.indexOf(end[0]), queued - 1);
  assert.ok(lines.indexOf(textLine) > queued);
});
