// Every kind of import of both entries, and the ways to replace a function that are not in an example.
import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { mock } from 'node:test';
import sinon from 'sinon';
import zelk, { getModemLogStatus } from 'zelklogservice';
import * as everything from 'zelklogservice';
import testing, { logService } from 'zelklogservice/testing';

const required = createRequire(`${process.cwd()}/`)('zelklogservice');
assert.equal(zelk, required);
assert.equal(everything.default, required);
assert.equal(Object.keys(required).length, 16);
assert.deepEqual({ ...required, ...everything, default: zelk }, { ...required, default: zelk });
assert.equal(getModemLogStatus, required.getModemLogStatus);
assert.equal(testing.logService, logService);

const answer = () => 'replaced';
for (const object of [zelk, required]) {
  mock.method(object, 'getModemLogStatus', answer);
  assert.deepEqual([zelk.getModemLogStatus(), required.getModemLogStatus()], ['replaced', 'replaced']);
  mock.restoreAll();
  sinon.stub(object, 'getModemLogStatus').callsFake(answer);
  assert.deepEqual([zelk.getModemLogStatus(), required.getModemLogStatus()], ['replaced', 'replaced']);
  sinon.restore();
}
logService({ GetModemLogStatus: () => true });
getModemLogStatus().then((on) => console.log(on));
