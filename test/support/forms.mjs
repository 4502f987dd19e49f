// Every function with every form of its arguments, for the tests that go through all of them.
const KEYS = ['a', 'b'];
// Two items; `last` is undefined so that the last thing read of an item is a value's type.
const COMMAND = {
  configKey: 'k',
  value: { yes: true, number: 1, text: 'x', yeses: [true], numbers: [1, 2], texts: ['a'], nested: {}, last: undefined },
};
const ITEMS = [COMMAND, { configKey: 'l', value: { number: 2 } }];

const STATUS = (cb) => [[], [cb], [5], [cb, 1]];
const SWITCH = (cb) => [
  [true], [true, ITEMS], [true, []], [true, undefined], [true, cb], [true, cb, ITEMS], [1, 5], [], [true, cb, ITEMS, 1]];
const QUERY = (cb) => [[KEYS], [KEYS, cb], [KEYS, 5], [[]], [], ['a'], [{}], [KEYS, cb, 1]];
const CHANGE = (cb) => [[ITEMS], [ITEMS, cb], [ITEMS, 5], [[]], [], ['a'], [{}], [ITEMS, cb, 1]];

const FORMS = {
  getModemLogConfig: QUERY,
  getModemLogDirectPackConfig: STATUS,
  getModemLogLogMasks: STATUS,
  getModemLogStatus: STATUS,
  handleModemLogSwitch: SWITCH,
  changeModemLogConfig: CHANGE,
  sendModemLogCommand: (cb) => [[COMMAND], [COMMAND, cb], [COMMAND, 5], [{}], [], ['a'], [COMMAND, cb, 1]],
  getTcpdumpStatus: STATUS,
  getTcpdumpConfig: QUERY,
  changeTcpdumpConfig: CHANGE,
  handleTcpdumpSwitch: SWITCH,
  handleBluetoothCallPcmLogSwitch: SWITCH,
  fetchRemoteDevicesLogs: () => [['r', 5], ['r']],
  queryRemoteDevicesLogs: () => [['r'], []],
  getRemoteDevicesList: () => [[], [1]],
  queryProtocolData: () => [['r'], ['r', 's']],
};

// The argument lists of a function, with `callback` where the form has one.
export const forms = (name, callback) => FORMS[name](callback);

// The service operation behind a function.
export const operation = (name) => name[0].toUpperCase() + name.slice(1);

const CONFIG_REPLY = [
  '{"configKey":"a","value":"{\\"n\\":null,\\"i\\":1,\\"u\\":4000000000,\\"d\\":1.5,\\"s\\":\\"x\\",\\"b\\":true,\\"l\\":[1]}"}',
  '{"configKey":"b","value":7}',
];

// A service that answers every operation of `names` with `code`, after `delay` milliseconds.
export function answering(names, { code = 0, delay = 0 } = {}) {
  const reply = (name) => {
    if (/Config$|Masks$/.test(name) && name.startsWith('get') && !name.includes('DirectPack')) {
      return CONFIG_REPLY;
    }
    return /Remote|Protocol|DirectPack/.test(name) ? '{"text":1}' : true;
  };
  return Object.fromEntries(names.map((name) => [operation(name), { code, delay, answer: reply(name) }]));
}
