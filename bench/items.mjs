// Arguments that become items. All of this happens on the JavaScript thread, whose own time is measured.
import { addon, average, compare } from './lib/rounds.mjs';
import { threadTime } from './lib/thread_time.mjs';

const zelk = addon('zelklogservice');
const askedReader = addon('asked_reader');

const ROUNDS = 31;
const FEW = 1_000;
const SOME = 10_000;
const MANY = 100_000;

const turn = () => new Promise((resolve) => setImmediate(resolve));

const scalars = (i) => ({
  configKey: `key${i}`,
  value: { enable: i % 2 === 0, level: i, path: '/data/log/modem', size: 4096, name: 'modem', loop: false },
});
const lists = (i) => ({
  configKey: `key${i}`,
  value: {
    enable: i % 2 === 0, level: i, path: '/data/log/modem',
    masks: [1, 2, 3], flags: [true, false, true], names: ['ap', 'cp'],
  },
});
const itemsOf = (length, item) => Array.from({ length }, (_, i) => item(i));

// The items are complete when the call returns; the rest of the call is awaited but not counted.
const toItems = (items) => async () => {
  let answer;
  const time = threadTime(() => {
    answer = zelk.changeModemLogConfig(items);
  });
  await answer.catch(() => {}); // The service refuses more items than it keeps.
  await turn();
  return time / items.length;
};
const toItemsAsAsked = (items) => () => {
  const time = threadTime(() => askedReader.readItems(items));
  askedReader.dropItems();
  return time / items.length;
};

for (const [name, item] of [['items', scalars], ['items-lists', lists]]) {
  const items = itemsOf(SOME, item);
  await compare(name, ROUNDS, toItems(items), toItemsAsAsked(items));
}

const fewItems = itemsOf(FEW, scalars);
const manyItems = itemsOf(MANY, scalars);
await compare('items-growth', 5, toItems(manyItems), () => average(MANY / FEW, toItems(fewItems)));
