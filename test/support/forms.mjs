// Every function with every form of its arguments, for the tests that go through all of them.
const KEYS = ['a', 'b'];
// Two items; `last` is undefined so that the last thing read of an item is a value's type.
const COMMAND = {
  configKey: 'k',
  value: { yes: true, number: 1, text: 'x', yeses: [true], numbers: [1, 2], texts: ['a'], nested: {}, last: undefined },
};
const ITEMS = [COMMAND, { configKey: 'l', value: { number: 2 } }];

const status = (cb) => [[], [cb], [5], [cb, 1]];
const switching = (cb) => [[true], [true, ITEMS], [true, []], [true, undefined], [true, cb], [true, cb, ITEMS], [1, 5],
  [], [true, cb, ITEMS, 1]];
const listing = (list) => (cb) => [[list], [list, cb], [list, 5], [[]], [], ['a'], [{}], [list, cb, 1]];
const [query, change] = [listing(KEYS), listing(ITEMS)];

const FORMS = {
  getModemLogConfig: query, getModemLogDirectPackConfig: status, getModemLogLogMasks: status, getModemLogStatus: status,
  handleModemLogSwitch: switching, changeModemLogConfig: change,
  sendModemLogCommand: (cb) => [[COMMAND], [COMMAND, cb], [COMMAND, 5], [{}], [], ['a'], [COMMAND, cb, 1]],
  getTcpdumpStatus: status, getTcpdumpConfig: query, changeTcpdumpConfig: change, handleTcpdumpSwitch: switching,
  handleBluetoothCallPcmLogSwitch: switching, fetchRemoteDevicesLogs: () => [['r', 5], ['r']],
  queryRemoteDevicesLogs: () => [['r'], []], getRemoteDevicesList: () => [[], [1]],
  queryProtocolData: () => [['r'], ['r', 's']],
};

// The argument lists of a function, with `callback` where the form has one.
export const forms = (name, callback) => FORMS[name](callback);

// The service operation behind a function.
export const operation = (name) => name[0].toUpperCase() + name.slice(1);

const CONFIG_REPLY = [
  JSON.stringify({ configKey: 'a', value: '{"n":null,"i":1,"u":4000000000,"d":1.5,"s":"x","b":true,"l":[1]}' }),
  '{"configKey":"b","value":7}',
];

// A service that answers every operation of `names` with `code`, after `delay` milliseconds.
export function answering(names, { code = 0, delay = 0 } = {}) {
  const answer = (name) => /Remote|Protocol|DirectPack/.test(name) ? '{"text":1}'
    : /^get.*(Config|Masks)$/.test(name) ? CONFIG_REPLY : true;
  return Object.fromEntries(names.map((name) => [operation(name), { code, delay, answer: answer(name) }]));
}
