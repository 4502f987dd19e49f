// The declarations for an ES module: those of index.d.ts, and the whole as the default.
import type zelklogservice = require('./index.js');

export * from './index.js';

declare const all: typeof zelklogservice;
export default all;
