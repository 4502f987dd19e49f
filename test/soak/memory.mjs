// Shared by the soak programs: the module as built for users, its calls, and the memory that they use.
import { createRequire } from 'node:module';
import { forms } from '../support/forms.mjs';

export const zelk = createRequire(import.meta.url)('../../js/index.js');
export const names = Object.getOwnPropertyNames(zelk);

// Whether the function takes no callback.
export const isRemote = (name) => /Remote|Protocol/.test(name);

// Whether it answers a call that fails.
export const answersFailures = (name) =>
  isRemote(name) || /^(getModemLogStatus|handleModemLogSwitch|changeModemLogConfig)$/.test(name);

// One call, in callback mode where asked for and possible. `done` is called with the way in which it ends.
export function call(name, byCallback, done) {
  const marker = () => done('called');
  const args = byCallback ? forms(name, marker).find((list) => list.at(-1) === marker) : forms(name)[0];
  try {
    const promise = zelk[name](...args);
    if (!byCallback) {
      promise.then(() => done('resolved'), () => done('rejected'));
    }
  } catch (error) {
    if (error.code !== '6') {
      throw error;
    }
    if (!byCallback) {
      done('thrown'); // The caller did not get the promise that is answered.
    }
  }
}

export const turn = () => new Promise((resolve) => setImmediate(resolve));

// {rss, heap} in bytes, after garbage has been collected.
export async function memory() {
  for (let i = 0; i < 5; ++i) {
    globalThis.gc();
    await turn();
  }
  const { rss, heapUsed } = process.memoryUsage();
  return { rss, heap: heapUsed };
}

export const mebibytes = (bytes) => `${(bytes / 2 ** 20).toFixed(1)} MiB`;
