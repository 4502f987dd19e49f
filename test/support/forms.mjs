// Every function with every form of its arguments, for the tests that go through all of them.
const KEYS = ['a', 'b'];
// Two items; `last` is undefined so that the last thing read of an item is a value's type.
const COMMAND = {
  configKey: 'k',
  value: {
    yes: true, number: 1, text: 'x', yeses: [true], numbers: [1, 2], texts: ['a'], nested: {},
    last: undefined,
  },
};
const ITEMS = [COMMAND, { configKey: 'l', value: { number: 2 } }];

const status = (cb) => [[], [cb], [5], [cb, 1]];
const switching = (cb) => [
  [true], [true, ITEMS], [true, []], [true, cb], [true, cb, ITEMS], [1, 5], [], [true, cb, ITEMS, 1],
];
const query = (cb) => [[KEYS], [KEYS, cb], [KEYS, 5], [[]], [], ['a'], [{}], [KEYS, cb, 1]];
const change = (cb) => [[ITEMS], [ITEMS, cb], [ITEMS, 5], [[]], [], ['a'], [{}], [ITEMS, cb, 1]];
const command = (cb) => [[COMMAND], [COMMAND, cb], [COMMAND, 5], [{}], [], ['a'], [COMMAND, cb, 1]];

const FORMS = {
  getModemLogConfig: query,
  getModemLogDirectPackConfig: status,
  getModemLogLogMasks: status,
  getModemLogStatus: status,
  handleModemLogSwitch: switching,
  changeModemLogConfig: change,
  sendModemLogCommand: command,
  getTcpdumpStatus: status,
  getTcpdumpConfig: query,
  changeTcpdumpConfig: change,
  handleTcpdumpSwitch: switching,
  handleBluetoothCallPcmLogSwitch: switching,
  fetchRemoteDevicesLogs: () => [['r', 5], ['r']],
  queryRemoteDevicesLogs: () => [['r'], []],
  getRemoteDevicesList: () => [[], [1]],
  queryProtocolData: () => [['r'], ['r', 's']],
};

// The argument lists of a function, with `callback` where the form has one.
export const forms = (name, callback) => FORMS[name](callback);

// The service operation that a function calls.
export const operation = (name) => name[0].toUpperCase() + name.slice(1);

const CONFIG_REPLY = [
  JSON.stringify({
    configKey: 'a', value: '{"n":null,"i":1,"u":4000000000,"d":1.5,"s":"x","b":true}',
  }),
  '{"configKey":"b","value":7}',
];

function answerOf(name) {
  if (name === 'handleBluetoothCallPcmLogSwitch') {
    return undefined;
  }
  if (/Remote|Protocol|DirectPack/.test(name)) {
    return '{"text":1}';
  }
  return /^get.*(Config|Masks)$/.test(name) ? CONFIG_REPLY : true;
}

// A service that answers every operation of `names` with `code`.
export const answering = (names, code = 0) =>
  Object.fromEntries(names.map((name) => [operation(name), { code, answer: answerOf(name) }]));
