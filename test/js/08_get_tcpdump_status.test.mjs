import { test } from 'node:test';
import { E, FORGOTTEN, gateTest, NO_PROXY, PENDING, sees } from '../support/cases.mjs';
import { fail, service } from '../support/zelk.mjs';

// Several texts are the modem log status's.
const name = 'getTcpdumpStatus';
const requests = [['GetTcpdumpStatus']];
const unresolved = E("GetModemLogStatusCallback: asyncContext's resolved is false");

gateTest(name, [E('GetModemLogStatus: current app is not system app, so return')]);

test(`${name} answers, and takes one callback`, async () => {
  for (const answer of [true, false]) {
    service({ GetTcpdumpStatus: { answer } });
    await sees(name, () => [], { resolved: answer, requests, lines: [] });
    await sees(name, (callback) => [callback], { callback: [[answer]], requests, lines: [] });
    for (const value of [42, undefined, null, 'x', {}]) {
      await sees(name, () => [value], { resolved: answer, requests, lines: [] });
    }
  }
  await sees(name, (callback) => [callback, 1], { lines: [E('GetModemLogStatus: Illegal params number')] });
});

test(`${name} never answers a query that fails`, async () => {
  service({ GetTcpdumpStatus: { code: 9, answer: true } });
  await sees(name, () => [], { ...PENDING, requests, lines: [unresolved] });
  await sees(name, (callback) => [callback], { ...FORGOTTEN, requests, lines: [unresolved] });
  service(null);
  await sees(name, () => [], { ...PENDING, lines: [NO_PROXY('GetTcpdumpStatus'), unresolved] });
});

test(`${name} keeps the record when the answer cannot be made`, async () => {
  fail({ name: 'napi_get_boolean', nth: 1 });
  await sees(name, () => [], { ...PENDING, requests, lines: [E('GetModemLogStatusCallback: fill bool failed')] });
});
