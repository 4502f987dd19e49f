// Who may call what. The caller's identity is asked for on every call and decides before anything else is
// looked at.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { E } from '../support/cases.mjs';
import { answering, forms, operation } from '../support/forms.mjs';
import { gatedNames, identity, keeps, names, run, service, SYSTEM_APP, zelk } from '../support/zelk.mjs';

const RIGHTS = [SYSTEM_APP, '4294967296', '0x100000000', '18446744073709551615', '0xFFFFFFFFFFFFFFFF', ''];
const NO_RIGHTS = ['0', '1', '0x1', '4294967295', '0xffffffff', '8589934592', '0xfffffffeffffffff'];
const MALFORMED = [
  'x', '0x', ' 0x100000001', '0x100000001 ', '+4294967297', '-1', '4294967297.0', '4294967297e0',
  '0x10000000g', '18446744073709551616', '0x1ffffffffffffffff', '0x-100000001', '4294967297\n', '１',
];
// Alternately, because rights once had must not last.
const TOKENS = [...NO_RIGHTS, ...MALFORMED].flatMap((token, i) =>
  [[token, false], [RIGHTS[i % RIGHTS.length], true]]);

for (const name of names) {
  test(`${name} serves ${gatedNames.includes(name) ? 'system applications only' : 'everybody'}`, async () => {
    service(answering(names));
    for (const [token, hasRights] of TOKENS) {
      identity(token);
      const isServed = hasRights || !gatedNames.includes(name);
      const count = isServed ? 1 : forms(name).length; // A refusal looks at no argument, and leaves one line.
      for (let index = 0; index < count; ++index) {
        const seen = await keeps({}, (callback) => zelk[name](...forms(name, callback)[index]));
        const what = `${name} form ${index} with ${JSON.stringify(token)}`;
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

test('a call once made is answered although the rights are gone', async () => {
  service(answering(names, { delay: 5 }));
  for (const name of gatedNames) {
    identity(SYSTEM_APP);
    const { thrown, callback: answers } = await run((callback) => {
      try {
        zelk[name](...forms(name, callback).find((args) => args.at(-1) === callback));
      } finally {
        identity('0');
      }
    });
    assert.deepEqual([thrown ? thrown.code : '6', answers.length], ['6', 1], name);
  }
});
