// Who may call what. The caller's identity is asked for on every call and decides before anything else is looked at.
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { answering, forms, operation } from '../support/forms.mjs';
import { identity, keeps, names, remoteNames, run, service, SYSTEM_APP, zelk } from '../support/zelk.mjs';

const RIGHTS = [SYSTEM_APP, '4294967296', '0x100000000', '18446744073709551615', '0xFFFFFFFFFFFFFFFF', ''];
const NO_RIGHTS = ['0', '1', '0x1', '4294967295', '0xffffffff', '8589934592', '0xfffffffeffffffff'];
const MALFORMED = ['x', '0x', ' 0x100000001', '0x100000001 ', '+4294967297', '-1', '4294967297.0', '4294967297e0', '0b1',
  '100000000g', '0x10000000g', '18446744073709551616', '0x1ffffffffffffffff', '0x-100000001', '4294967297\n', '１'];
const gated = names.filter((name) => !remoteNames.includes(name));

afterEach(() => {
  identity(SYSTEM_APP);
  service({});
});

// Whether the service was asked by the plainest form of a call.
async function isServed(name) {
  const { requests } = await run((callback) => zelk[name](...forms(name, callback)[0]));
  return requests.length === 1 && requests[0][0] === operation(name);
}

test('rights are read from the token on every call', async () => {
  assert.equal(gated.length, 12);
  service(answering(names));
  for (const name of names) {
    for (const token of NO_RIGHTS.concat(MALFORMED).flatMap((refused, i) => [refused, RIGHTS[i % RIGHTS.length]])) {
      identity(token);
      const expected = RIGHTS.includes(token) || remoteNames.includes(name);
      assert.equal(await isServed(name), expected, `${name} with ${JSON.stringify(token)}`);
    }
  }
});

test('the twelve refuse every form with one line and nothing else', async () => {
  service(answering(names));
  for (const token of [NO_RIGHTS[0], MALFORMED[0]]) {
    identity(token);
    for (const name of gated) {
      const speaker = name === 'getTcpdumpStatus' ? 'GetModemLogStatus' : operation(name);
      const lines = [`E ZELK_SERVICE: ${speaker}: current app is not system app, so return`];
      if (name === 'changeTcpdumpConfig') {
        lines.unshift('E ZELK_SERVICE: [TCP dump] napi ChangeTcpdumpConfig: enter');
      }
      for (let index = 0; index < forms(name).length; ++index) {
        const seen = await keeps({}, () => run((callback) => zelk[name](...forms(name, callback)[index])));
        assert.deepEqual(seen, { callback: [], uncaught: [], returned: undefined, requests: [], lines }, `${name} ${index}`);
      }
    }
  }
});

test('a call once made is answered although the rights are gone', async () => {
  service(answering(names, { delay: 5 }));
  for (const name of gated) {
    const seen = await run((callback) => {
      try {
        zelk[name](...forms(name, callback).find((args) => args.at(-1) === callback || args[1] === callback));
      } catch (error) {
        assert.equal(error.code, '6');
      }
      identity('0');
    });
    assert.equal(seen.callback.length, 1, name);
    identity(SYSTEM_APP);
  }
});
