// Who may call which function. The caller's identity is checked on every call, before anything else.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { setCaller } from 'zelklogservice/testing';
import { E } from '../support/cases.mjs';
import { answering, forms, operation } from '../support/forms.mjs';
import { root, runCode } from '../support/system.mjs';
import { gatedNames, leaves, names, NOTHING_LEFT, run, service, zelk } from '../support/zelk.mjs';

// Alternately, because rights once had must not last.
const CALLERS = [
  [0n, false], [0x100000001n, true],
  [1n, false], [0x100000000n, true],
  [0xffffffffn, false], [0xffffffffffffffffn, true],
  [0x200000000n, false], [0xfffffffeffffffffn, false],
];

// A refused call reads no arguments, and logs one line.
function refusal(name) {
  const speaker = name === 'getTcpdumpStatus' ? 'GetModemLogStatus' : operation(name);
  return [
    ...(name === 'changeTcpdumpConfig' ? [E('[TCP dump] napi ChangeTcpdumpConfig: enter')] : []),
    E(`${speaker}: current app is not system app, so return`),
  ];
}

// A call once made needs no rights.
const callAs = (token, name, index) => leaves(() => run((callback) => {
  setCaller(token);
  try {
    return zelk[name](...forms(name, callback)[index]);
  } finally {
    setCaller(0n);
  }
}));

async function checkServed(token, name) {
  service(answering(names));
  const [, { requests }] = await callAs(token, name, 0);
  assert.deepEqual(requests.map(([asked]) => asked), [operation(name)]);
}

async function checkRefused(token, name, index) {
  service(answering(names));
  const seen = { callback: [], uncaught: [], returned: undefined, requests: [], lines: refusal(name) };
  assert.deepEqual(await callAs(token, name, index), [NOTHING_LEFT, seen]);
}

for (const name of names) {
  for (const [token, hasRights] of CALLERS) {
    if (hasRights || !gatedNames.includes(name)) {
      test(`${name} serves ${token}`, () => checkServed(token, name));
      continue;
    }
    for (const index of forms(name).keys()) {
      test(`${name}, form ${index}, refuses ${token}`, () => checkRefused(token, name, index));
    }
  }
}

test('a worker thread that loads the module has the identity of the environment', () => {
  const call = `console.log(require(${JSON.stringify(root)}).getModemLogStatus())`;
  const code = `new (require('node:worker_threads').Worker)(${JSON.stringify(call)}, { eval: true })`;
  assert.equal(runCode(code, { env: { OHOS_FULL_TOKEN_ID: '0' } }).stdout, 'undefined\n');
});
