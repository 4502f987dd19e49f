import { addon } from './rounds.mjs';

// A clock in nanoseconds, which runs only while this thread does.
export const { threadNanoseconds } = addon('product_parts');

export function threadTime(run) {
  const start = threadNanoseconds();
  run();
  return threadNanoseconds() - start;
}
