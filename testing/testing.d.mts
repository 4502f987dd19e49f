import type testing = require('./testing.js');

export * from './testing.js';

declare const all: typeof testing;
export default all;
