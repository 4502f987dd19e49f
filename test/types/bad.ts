// Uses that the types refuse. An expectation that meets no error is an error itself.
import zelk = require('zelklogservice');

const item = { configKey: 'capture', value: { enable: true } };
const items = [item];
const callback = (answer: boolean): void => void answer;

// Counts that the functions refuse, or arguments that they ignore.
// @ts-expect-error
zelk.getModemLogStatus(callback, 1);
// @ts-expect-error
zelk.getTcpdumpStatus(42);
// @ts-expect-error
zelk.getModemLogConfig();
// @ts-expect-error
zelk.getTcpdumpConfig(['capture'], callback, 1);
// @ts-expect-error
zelk.changeModemLogConfig(items, callback, 1);
// @ts-expect-error
zelk.handleModemLogSwitch();
// @ts-expect-error
zelk.handleTcpdumpSwitch(true, callback, items, 1);
// @ts-expect-error
zelk.fetchRemoteDevicesLogs('request');
// @ts-expect-error
zelk.queryRemoteDevicesLogs('request', 'more');
// @ts-expect-error
zelk.queryProtocolData();

// A state that is no boolean means off.
// @ts-expect-error
zelk.handleModemLogSwitch('on');
// @ts-expect-error
zelk.handleBluetoothCallPcmLogSwitch(1);

// The callback stands before the items, and must be one.
// @ts-expect-error
zelk.handleModemLogSwitch(true, items, callback);
// @ts-expect-error
zelk.handleTcpdumpSwitch(true, 5);
// @ts-expect-error
zelk.sendModemLogCommand(item, 42);
// @ts-expect-error
zelk.getModemLogStatus((error: Error, answer: boolean) => void answer);
// @ts-expect-error: these answer by promise only
zelk.getRemoteDevicesList(callback);

// Lists where lists belong, and one command at a time.
// @ts-expect-error
zelk.getModemLogConfig('capture');
// @ts-expect-error
zelk.changeTcpdumpConfig(item);
// @ts-expect-error
zelk.sendModemLogCommand(items);
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'capture' }]);
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 7, value: {} }]);

// Values that would not arrive.
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { nested: { a: 1 } } }]);
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { mixed: [1, 'x'] } }]);
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { none: null } }]);
// @ts-expect-error
zelk.changeModemLogConfig([{ configKey: 'k', value: { big: 1n } }]);

// A caller without rights gets undefined; the unsupported queries never give a promise.
// @ts-expect-error
zelk.getModemLogStatus().then(callback);
// @ts-expect-error
zelk.getModemLogDirectPackConfig().then(callback);
