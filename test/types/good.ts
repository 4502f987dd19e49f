// Uses that the types allow, from a CommonJS file, and the types of their answers.
import zelk = require('zelklogservice');
import type { ConfigEntry, ConfigItem, LogMask, ModemLogCommand, NotSupportedError } from 'zelklogservice';

type Same<A, B> = (<T>() => T extends A ? 1 : 2) extends <T>() => T extends B ? 1 : 2 ? true : false;
function same<A, B>(_yes: Same<A, B>): void {}
type Promised<T> = Promise<T> | undefined;

const items: readonly ConfigItem[] = [
  { configKey: 'capture', value: { enable: true, level: 3, path: '/data/log' } },
  { configKey: 'lists', value: { flags: [true, false], masks: [1, 2, 3], names: ['a', 'b'], frozen: [1] as const } },
  { configKey: 'plain', value: {} },
];
const command: ModemLogCommand = { configKey: 'dump', value: { size: 4096 } };
const keys = ['capture', 'lists'] as const;
const onState = (state: boolean): void => void state;

type Entries = Promised<ConfigEntry[]>;
type State = Promised<boolean>;
type Text = Promise<string>;
const answers = [
  zelk.getModemLogConfig(keys), zelk.getTcpdumpConfig(keys),
  zelk.getModemLogStatus(), zelk.getTcpdumpStatus(), zelk.sendModemLogCommand(command),
  zelk.changeModemLogConfig(items), zelk.changeTcpdumpConfig([...items]),
  zelk.handleModemLogSwitch(true), zelk.handleTcpdumpSwitch(true),
  zelk.handleBluetoothCallPcmLogSwitch(true, items),
  zelk.fetchRemoteDevicesLogs('{"device":"a"}', 7), zelk.queryRemoteDevicesLogs('{}'),
  zelk.getRemoteDevicesList(), zelk.queryProtocolData(''),
] as const;
same<typeof answers, readonly [
  Entries, Entries, State, State, State, State, State, State, State, Promised<false>, Text, Text, Text, Text,
]>(true);
same<NotSupportedError['code'], '6'>(true);
same<ConfigEntry['configKey'], string | undefined>(true);
same<ConfigEntry['value'][string], boolean | number | string | null>(true);

// A spy of a test runner is typed by the last form of a function: a promise, where there is one.
type Last = { [Name in keyof typeof zelk]: ReturnType<(typeof zelk)[Name]> };
type Lacking = { [Name in keyof Last]: [Last[Name]] extends [undefined] ? Name : never }[keyof Last];
same<Lacking, 'getModemLogDirectPackConfig' | 'getModemLogLogMasks'>(true);

const noPromise: undefined[] = [
  zelk.getModemLogConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.getTcpdumpConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.getModemLogDirectPackConfig(), zelk.getModemLogLogMasks(),
  zelk.getModemLogDirectPackConfig((answer) => same<typeof answer, string>(true)),
  zelk.getModemLogLogMasks((answer) => same<typeof answer, LogMask[]>(true)),
  zelk.getModemLogStatus(onState), zelk.getTcpdumpStatus(onState), zelk.sendModemLogCommand(command, onState),
  zelk.changeModemLogConfig(items, onState), zelk.changeTcpdumpConfig(items, onState),
];
declare const maybe: ConfigItem[] | undefined;
for (const turn of [zelk.handleModemLogSwitch, zelk.handleTcpdumpSwitch, zelk.handleBluetoothCallPcmLogSwitch]) {
  const promised: State[] = [
    turn(true), turn(false, undefined), turn(true, items), turn(true, []), turn(true, maybe),
  ];
  noPromise.push(turn(true, onState), turn(true, onState, items), turn(true, onState, undefined),
    turn(true, onState, maybe), void promised);
}
