'use strict';

// An ordinary object, which can be spread, spied on and imported by name through any compiler: the properties
// of the native one are fixed and not enumerable.
const native = require('./load_library.js').load('zelklogservice.node');

for (const name of Object.getOwnPropertyNames(native)) {
  if (typeof native[name] === 'function') { // Bun adds a property of its own.
    exports[name] = native[name];
  }
}
