'use strict';

// The other half of call.js: makes one call in its own process and sends the outcome.

// The code that the two queries marked unsupported throw, although they still answer a callback.
const UNSUPPORTED = '6';

const send = (kind, value) => process.send({ kind, value });

// The answer is no longer wanted.
process.on('disconnect', () => process.kill(process.pid, 'SIGKILL'));

function callForPromise(method, args) {
  const promise = method(...args);
  if (promise === undefined) {
    send('refused');
    return;
  }
  promise.then((value) => send('answered', value), (value) => send('rejected', value));
}

function callUnsupported(method, args) {
  try {
    method(...args, (value) => send('answered', value));
  } catch (error) {
    if (error.code === UNSUPPORTED) {
      return;
    }
    throw error;
  }
  send('refused');
}

function makeCall(library, { name, args, unsupported }) {
  (unsupported ? callUnsupported : callForPromise)(library[name], args);
}

function load() {
  try {
    return require('../index.js');
  } catch (error) {
    send('unloadable', error.message);
    return undefined;
  }
}

process.once('message', (request) => {
  // Listening must not keep this process alive: its end shows that a call will never be answered.
  process.channel.unref();
  const library = load();
  if (library) {
    try {
      makeCall(library, request);
    } catch (error) {
      send('threw', error.message);
    }
  }
});
