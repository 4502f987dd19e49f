// Uses that the types refuse. Each mark is for the next statement; one that meets no error is an error itself.
import zelk = require('zelklogservice');

const item = { configKey: 'k', value: { enable: true } };
const callback = (answer: boolean): void => void answer; // @ts-expect-error

// Counts that the functions refuse, or arguments that they ignore. Remote functions answer by promise only.
zelk.getModemLogStatus(callback, 1); // @ts-expect-error
zelk.getTcpdumpStatus(42); // @ts-expect-error
zelk.getModemLogConfig(); // @ts-expect-error
zelk.getTcpdumpConfig(['capture'], callback, 1); // @ts-expect-error
zelk.changeModemLogConfig([item], callback, 1); // @ts-expect-error
zelk.handleModemLogSwitch(); // @ts-expect-error
zelk.handleTcpdumpSwitch(true, callback, [item], 1); // @ts-expect-error
zelk.fetchRemoteDevicesLogs('request'); // @ts-expect-error
zelk.queryRemoteDevicesLogs('request', 'more'); // @ts-expect-error
zelk.queryProtocolData(); // @ts-expect-error
zelk.getRemoteDevicesList(callback); // @ts-expect-error
// A state that is not a boolean means off. The callback comes before the items, and must be a function.
zelk.handleModemLogSwitch('on'); // @ts-expect-error
zelk.handleBluetoothCallPcmLogSwitch(1); // @ts-expect-error
zelk.handleModemLogSwitch(true, [item], callback); // @ts-expect-error
zelk.handleTcpdumpSwitch(true, 5); // @ts-expect-error
zelk.sendModemLogCommand(item, 42); // @ts-expect-error
zelk.getModemLogStatus((error: Error, answer: boolean) => void answer); // @ts-expect-error
// Lists where lists belong, one command at a time, and no values that would not arrive.
zelk.getModemLogConfig('capture'); // @ts-expect-error
zelk.changeTcpdumpConfig(item); // @ts-expect-error
zelk.sendModemLogCommand([item]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k' }]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 7, value: {} }]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { nested: { a: 1 } } }]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { mixed: [1, 'x'] } }]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { none: null } }]); // @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { big: 1n } }]); // @ts-expect-error
zelk.handleModemLogSwitch(true, callback, null);
