// Who may call which function. The caller's identity is checked on every call, before anything else.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { setCaller } from 'zelklogservice/testing';
import { E } from '../support/cases.mjs';
import { answering, forms, operation } from '../support/forms.mjs';
import { root, runCode } from '../support/system.mjs';
import { gatedNames, keeps, names, service, zelk } from '../support/zelk.mjs';

// Alternately, because rights once had must not last.
const CALLERS = [
  [0n, false], [0x100000001n, true],
  [1n, false], [0x100000000n, true],
  [0xffffffffn, false], [0xffffffffffffffffn, true],
  [0x200000000n, false], [0xfffffffeffffffffn, false],
];

for (const name of names) {
  test(`${name} serves ${gatedNames.includes(name) ? 'system applications only' : 'everyone'}`, async () => {
    service(answering(names));
    for (const [token, hasRights] of CALLERS) {
      const isServed = hasRights || !gatedNames.includes(name);
      const count = isServed ? 1 : forms(name).length; // A refused call reads no arguments and logs one line.
      for (let index = 0; index < count; ++index) {
        const seen = await keeps({}, (callback) => {
          setCaller(token);
          try {
            return zelk[name](...forms(name, callback)[index]);
          } finally {
            setCaller(0n); // A call once made needs no rights.
          }
        });
        const what = `${name} form ${index} with ${token}`;
        if (isServed) {
          assert.deepEqual(seen.requests.map(([asked]) => asked), [operation(name)], what);
        } else {
          const speaker = name === 'getTcpdumpStatus' ? 'GetModemLogStatus' : operation(name);
          assert.deepEqual(seen, { callback: [], uncaught: [], returned: undefined, requests: [], lines: [
            ...(name === 'changeTcpdumpConfig' ? [E('[TCP dump] napi ChangeTcpdumpConfig: enter')] : []),
            E(`${speaker}: current app is not system app, so return`),
          ] }, what);
        }
      }
    }
  });
}

test('a worker thread that loads the module has the identity of the environment', () => {
  const call = `console.log(require(${JSON.stringify(root)}).getModemLogStatus())`;
  const code = `new (require('node:worker_threads').Worker)(${JSON.stringify(call)}, { eval: true })`;
  assert.equal(runCode(code, { env: { OHOS_FULL_TOKEN_ID: '0' } }).stdout, 'undefined\n');
});
