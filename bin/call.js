'use strict';

const fs = require('node:fs');
const { load } = require('../js/load_library.js');
const { inWords } = require('./break_off.js');
const { complain } = require('./output.js');

const KIT = 'zelk_testing.node';

// From the lowest level to X, which writes nothing. A captured line has the number of its level.
const LEVELS = [...'DIWEFX'];
const levelNumber = (name) => 3 + LEVELS.indexOf(name);
// The end of what the module logs when it finds no log service.
const NO_SERVICE = { level: levelNumber('W'), tag: 'FRAMEWORK', end: '"get proxy fail."' };
// The tag under which it logs what broke a call off.
const BREAK_OFF = 'DBUS';

const LINES_EVERY_MS = 100;
const LAST_WAIT_MS = 1000;

// Opened as the log opens it, and not closed: the reader of a pipe would take that for the end of the log.
function canBeOpened(file) {
  const { O_WRONLY, O_APPEND, O_CREAT, O_NOCTTY, O_NONBLOCK } = fs.constants;
  try {
    fs.openSync(file, O_WRONLY | O_APPEND | O_CREAT | O_NOCTTY | O_NONBLOCK, 0o644);
    return true;
  } catch {
    return false;
  }
}

// Sets the log up, before it is loaded, and gives the lowest level of the lines that are shown here. The log
// itself writes to a file only: a terminal would obey the control characters in a line.
function setLogUp(verbose) {
  const wanted = process.env.HILOG_LEVEL || (verbose ? 'I' : 'X');
  if (!LEVELS.includes(wanted)) {
    return levelNumber('X'); // The log reports it.
  }
  const hasFile = wanted !== 'X' && process.env.HILOG_FILE && canBeOpened(process.env.HILOG_FILE);
  process.env.HILOG_LEVEL = hasFile ? wanted : 'X';
  return levelNumber(hasFile ? 'X' : wanted);
}

// Watches the log lines from now on: shows those from the level `shownFrom` up, and knows whether the module
// reached a log service, and what broke its call off, if anything did.
function watchLog(shownFrom) {
  const kit = load(KIT);
  const capture = kit.startCapture();
  const seen = { reached: true, why: undefined };
  function take() {
    kit.takeLines(capture, (level, domain, tag, message, header) => {
      if (level === NO_SERVICE.level && tag === NO_SERVICE.tag && message.endsWith(NO_SERVICE.end)) {
        seen.reached = false;
      }
      if (tag === BREAK_OFF) {
        seen.why = inWords(message);
      }
      if (level >= shownFrom) {
        complain(`${header}${message}`.replaceAll('\n', '\\n'));
      }
    });
    return seen;
  }
  // For a call that takes its time. Does not keep the process alive.
  setInterval(take, LINES_EVERY_MS).unref();
  return take;
}

// The code that the two queries marked unsupported throw, although they still answer a callback.
const UNSUPPORTED = '6';

function callForPromise(method, args, end) {
  const promise = method(...args);
  if (promise === undefined) {
    end('refused');
    return;
  }
  promise.then((value) => end('answered', value), (value) => end('rejected', value));
}

function callUnsupported(method, args, end) {
  try {
    method(...args, (value) => end('answered', value));
  } catch (error) {
    if (error.code === UNSUPPORTED) {
      return;
    }
    throw error;
  }
  end('refused');
}

function outcomeOf(method, { args, unsupported }, seconds) {
  return new Promise((resolve) => {
    const end = (kind, value) => resolve({ kind, value });
    // Neither keeps the process alive. It ends by itself when nothing is under way.
    process.once('beforeExit', () => end('silent'));
    setTimeout(() => end('late'), seconds * 1000).unref();
    try {
      (unsupported ? callUnsupported : callForPromise)(method, args, end);
    } catch (error) {
      end('threw', error.message);
    }
  });
}

// Prepares for calls that are made in this process, and gives the function that takes the log's lines.
const prepare = ({ verbose }) => watchLog(setLogUp(verbose));

// Makes one call of the module and promises its outcome, as { kind, value, reached, why }:
//
//   answered   value is the answer
//   rejected   value is what the promise was rejected with
//   refused    the module returned undefined
//   threw      value is the error's message
//   unloadable the module cannot be loaded; value says why and what to do
//   silent     the module ended the call without an answer
//   late       no answer within the time; the call is still under way: see leave()
//
// `reached` says whether there was a log service, `why` what broke the call off on D-Bus.
async function call(request, { seconds, verbose }) {
  let library;
  let takeLines;
  try {
    takeLines = prepare({ verbose });
    library = require('../js/index.js');
  } catch (error) {
    return { kind: 'unloadable', value: error.message };
  }
  const outcome = await outcomeOf(library[request.name], request, seconds);
  return { ...outcome, ...takeLines() };
}

// Ends the process while a call is under way: Node.js itself would wait for the worker thread, which waits
// for the log service. A reader of standard error has a second for what was written.
function leave(status) {
  const exit = () => load(KIT).exit(status);
  setTimeout(exit, LAST_WAIT_MS);
  process.stderr.write('', exit);
}

module.exports = { KIT, call, leave, prepare };
