'use strict';

const { fork } = require('node:child_process');
const path = require('node:path');

// Makes one call of the module and promises what came of it, as { kind, value }:
//
//   answered   value is the answer
//   rejected   value is what the promise was rejected with
//   refused    the module returned undefined
//   threw      value is the error's message
//   unloadable the module cannot be loaded; value says why and what to do
//   silent     the module ended the call without an answer
//   late       no answer within the time
//   died       value is the signal or exit status that ended the process
//
// The call is made in a child process: Node.js does not exit before a worker thread that waits for the log
// service comes back, so that no time limit could be kept in this one.
function call({ name, args, unsupported }, { seconds, verbose }) {
  const env = { ...process.env };
  if (verbose && !env.HILOG_LEVEL) {
    env.HILOG_LEVEL = 'I';
  }
  return new Promise((resolve) => {
    const child = fork(path.join(__dirname, 'caller.js'), [], { env });
    child.send({ name, args, unsupported });
    const timer = setTimeout(() => {
      resolve({ kind: 'late' });
      child.kill('SIGKILL');
    }, seconds * 1000);
    child.once('message', resolve);
    child.once('error', (error) => resolve({ kind: 'died', value: error.code }));
    child.once('close', (status, signal) => {
      clearTimeout(timer);
      resolve(status === 0 ? { kind: 'silent' } : { kind: 'died', value: signal ?? status });
    });
  });
}

module.exports = { call };
