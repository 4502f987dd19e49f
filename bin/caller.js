'use strict';

// The other half of call.js: makes one call in a process of its own and sends what came of it.

// The two queries marked unsupported throw this code, and are carried out all the same for a callback.
const UNSUPPORTED = '6';

const send = (kind, value) => process.send({ kind, value });

// Nobody waits for the answer any more.
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
  // Listening must not keep this process alive: a call that will never be answered is recognised by its end.
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
