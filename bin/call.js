'use strict';

const { fork } = require('node:child_process');
const path = require('node:path');
const { complain } = require('./output.js');

// From the lowest level to X, which writes nothing.
const LEVELS = [...'DIWEFX'];
const LOG_LINE = /^\d\d-\d\d [\d:.]{12} +\d+ +\d+ ([DIWEF]) C/;
// What the module logs, at level W, when it finds no log service.
const NO_SERVICE_LINE = /^\S+ \S+ +\d+ +\d+ W C02d19\/FRAMEWORK: \[\w+\]"get proxy fail\."$/;

function readLines(stream, use) {
  let rest = '';
  stream.setEncoding('utf8');
  stream.on('data', (text) => {
    rest += text;
    if (text.includes('\n')) {
      const lines = rest.split('\n');
      rest = lines.pop();
      lines.forEach(use);
    }
  });
  stream.on('end', () => {
    if (rest) {
      use(rest);
    }
  });
}

// The settings of the log in the child process. Its lines, at least those from level W up, are read here,
// unless they go to a file of the user's.
function logSettings(verbose) {
  const wanted = process.env.HILOG_LEVEL || (verbose ? 'I' : 'X');
  const file = wanted === 'X' ? '' : process.env.HILOG_FILE ?? '';
  const level = !file && LEVELS.indexOf(wanted) > LEVELS.indexOf('W') ? 'W' : wanted;
  return { wanted, env: { HILOG_LEVEL: level, HILOG_FILE: file } };
}

// Makes one call of the module and promises its outcome, as { kind, value, reached }:
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
// `reached` says whether there was a log service; it is undefined if that cannot be known.
//
// The call is made in a child process: Node.js does not exit while a worker thread waits for the log service,
// so this process could not keep a time limit.
function call({ name, args, unsupported }, { seconds, verbose }) {
  const { wanted, env } = logSettings(verbose);
  return new Promise((resolve) => {
    const child = fork(path.join(__dirname, 'caller.js'), [], {
      env: { ...process.env, ...env },
      stdio: ['ignore', 'inherit', 'pipe', 'ipc'],
    });
    let outcome;
    let reached = env.HILOG_FILE || !LEVELS.includes(env.HILOG_LEVEL) ? undefined : true;
    readLines(child.stderr, (line) => {
      if (NO_SERVICE_LINE.test(line)) {
        reached = false;
      }
      const [, own] = LOG_LINE.exec(line) ?? [];
      if (!own || LEVELS.indexOf(own) >= LEVELS.indexOf(wanted)) {
        complain(line);
      }
    });
    child.send({ name, args, unsupported });
    const timer = setTimeout(() => {
      outcome ??= { kind: 'late' };
      child.kill('SIGKILL');
    }, seconds * 1000);
    child.once('message', (message) => {
      outcome = message;
    });
    child.once('error', (error) => resolve({ kind: 'died', value: error.code }));
    child.once('close', (status, signal) => {
      clearTimeout(timer);
      outcome ??= status === 0 ? { kind: 'silent' } : { kind: 'died', value: signal ?? status };
      resolve({ ...outcome, reached });
    });
  });
}

module.exports = { call };
