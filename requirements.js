'use strict';

// What this package needs, checked before anything else is read. The oldest Node.js must be able to parse
// this file and index.js, or it could not say what it lacks.

var OLDEST_NODE = 18;

// An error that prints as its message alone: where it was thrown helps nobody who has to install something.
function plainError(code, message) {
  var error = new Error('zelklogservice: ' + message);
  error.code = code;
  error.stack = error.message;
  return error;
}

function check() {
  if (process.platform !== 'linux') {
    throw plainError('ERR_ZELK_PLATFORM', 'runs on Linux only, and this is ' + process.platform +
      ': use a Linux machine, for example Debian 12');
  }
  if (parseInt(process.versions.node, 10) < OLDEST_NODE) {
    throw plainError('ERR_ZELK_NODE_VERSION', 'needs Node.js ' + OLDEST_NODE + ' or newer, and this is ' +
      process.versions.node + ': install a newer Node.js');
  }
}

module.exports = { check: check, plainError: plainError };
