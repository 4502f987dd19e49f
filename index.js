'use strict';

// An ordinary object, which can be spread, spied on and imported by name through any compiler: the properties
// of the native one are fixed and not enumerable.
const native = require('./library.js').load('zelklogservice.node');

Object.getOwnPropertyNames(native).forEach((name) => {
  exports[name] = native[name];
});
