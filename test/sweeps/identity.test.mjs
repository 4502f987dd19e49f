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

const callAs = (token, name, index) => leaves(() => run((callback) => {
  setCaller(token);
  try {
    return zelk[name](...forms(name, callback)[index]);
  } finally {
    setCaller(0n); // A call once made needs no rights.
  }
}));

for (const name of names) {
  for (const [token, hasRights] of CALLERS) {
    const isServed = hasRights || !gatedNames.includes(name);
    for (const index of isServed ? [0] : forms(name).keys()) {
      test(`${name}, form ${index}, ${isServed ? 'serves' : 'refuses'} ${token}`, async () => {
        service(answering(names));
        const [left, seen] = await callAs(token, name, index);
        if (isServed) {
          assert.deepEqual(seen.requests.map(([asked]) => asked), [operation(name)]);
        } else {
          const nothing = { callback: [], uncaught: [], returned: undefined, requests: [] };
          assert.deepEqual([left, seen], [NOTHING_LEFT, { ...nothing, lines: refusal(name) }]);
        }
      });
    }
  }
}

test('a worker thread that loads the module has the identity of the environment', () => {
  const call = `console.log(require(${JSON.stringify(root)}).getModemLogStatus())`;
  const code = `new (require('node:worker_threads').Worker)(${JSON.stringify(call)}, { eval: true })`;
  assert.equal(runCode(code, { env: { OHOS_FULL_TOKEN_ID: '0' } }).stdout, 'undefined\n');
});
