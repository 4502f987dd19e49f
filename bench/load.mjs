// Loads the module that the argument names, and prints the milliseconds that it took.
import { createRequire } from 'node:module';

const require = createRequire(import.meta.url);
const start = process.hrtime.bigint();
require(process.argv[2]);
console.log(Number(process.hrtime.bigint() - start) / 1e6);
