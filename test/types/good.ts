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

const entries = [zelk.getModemLogConfig(keys), zelk.getTcpdumpConfig(keys)] as const;
same<typeof entries, readonly [Promised<ConfigEntry[]>, Promised<ConfigEntry[]>]>(true);
const states = [
  zelk.getModemLogStatus(), zelk.getTcpdumpStatus(), zelk.changeModemLogConfig(items),
  zelk.changeTcpdumpConfig([...items]), zelk.sendModemLogCommand(command),
] as const;
type State = Promised<boolean>;
same<typeof states, readonly [State, State, State, State, State]>(true);
const bluetooth = zelk.handleBluetoothCallPcmLogSwitch(true, items);
same<typeof bluetooth, Promised<false>>(true);
const texts = [zelk.fetchRemoteDevicesLogs('{"device":"a"}', 7), zelk.queryRemoteDevicesLogs('{}'),
  zelk.getRemoteDevicesList(), zelk.queryProtocolData('')] as const;
type Text = Promise<string>;
same<typeof texts, readonly [Text, Text, Text, Text]>(true);
same<ReturnType<typeof zelk.getModemLogDirectPackConfig>, undefined>(true);
same<NotSupportedError['code'], '6'>(true);
same<ConfigEntry['configKey'], string | undefined>(true);
same<ConfigEntry['value'][string], boolean | number | string | null>(true);

// A spy of a test runner is typed by the last form of a function.
type Last<Names extends keyof typeof zelk> = { [Name in Names]: ReturnType<(typeof zelk)[Name]> };
type Queries = 'getModemLogConfig' | 'getTcpdumpConfig';
same<Last<Queries>, Record<Queries, Promised<ConfigEntry[]>>>(true);
type Changes = 'getModemLogStatus' | 'handleModemLogSwitch' | 'changeModemLogConfig' | 'sendModemLogCommand' |
  'getTcpdumpStatus' | 'changeTcpdumpConfig' | 'handleTcpdumpSwitch';
same<Last<Changes>, Record<Changes, State>>(true);
same<Last<'handleBluetoothCallPcmLogSwitch'>['handleBluetoothCallPcmLogSwitch'], Promised<false>>(true);
type Resolved<T> = T extends PromiseLike<infer U> ? T | U : never;
declare function spyOn<T, Name extends keyof T>(object: T, name: Name): {
  mockResolvedValue(value: T[Name] extends (...args: any) => any ? Resolved<ReturnType<T[Name]>> : never): void;
};
spyOn(zelk, 'getModemLogStatus').mockResolvedValue(true);

// A value of an interface's type lacks the index signature; a copy, or a `type`, has it.
interface Modem { megabytes: number; path: string }
type Capture = { snaplen: number };
const modem: Modem = { megabytes: 64, path: '/data/log' };
const capture: Capture = { snaplen: 96 };
const copies: readonly ConfigItem[] = [
  { configKey: 'ring', value: { ...modem } }, { configKey: 'capture', value: capture },
];

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
  const answers: Promised<boolean>[] = [
    turn(true), turn(false, undefined), turn(true, items), turn(true, []), turn(true, copies), turn(true, maybe),
  ];
  noPromise.push(turn(true, onState), turn(true, onState, items), turn(true, onState, undefined),
    turn(true, onState, maybe), void answers);
}
