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
const states = [zelk.getModemLogStatus(), zelk.getTcpdumpStatus()] as const;
same<typeof states, readonly [Promised<boolean>, Promised<boolean>]>(true);
const bluetooth = zelk.handleBluetoothCallPcmLogSwitch(true, items);
same<typeof bluetooth, Promised<false>>(true);
same<ReturnType<typeof zelk.getModemLogDirectPackConfig>, undefined>(true);

const noPromise: undefined[] = [
  zelk.getModemLogConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.getTcpdumpConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.getModemLogDirectPackConfig(), zelk.getModemLogLogMasks(),
  zelk.getModemLogDirectPackConfig((answer) => same<typeof answer, string>(true)),
  zelk.getModemLogLogMasks((answer) => same<typeof answer, LogMask[]>(true)),
  zelk.getModemLogStatus(onState), zelk.getTcpdumpStatus(onState), zelk.sendModemLogCommand(command, onState),
  zelk.changeModemLogConfig(items, onState), zelk.changeTcpdumpConfig(items, onState),
  zelk.handleBluetoothCallPcmLogSwitch(false, onState, items),
];
for (const turn of [zelk.handleModemLogSwitch, zelk.handleTcpdumpSwitch] as const) {
  const answers: Promised<boolean>[] = [turn(true), turn(false, undefined), turn(true, items), turn(true, [])];
  noPromise.push(turn(true, onState), turn(true, onState, items), void answers);
}

export async function answers(): Promise<string[]> {
  for (const { configKey, value } of (await zelk.getModemLogConfig(keys)) ?? []) {
    same<typeof configKey, string | undefined>(true);
    const level = value['level'];
    same<typeof level, boolean | number | string | null | undefined>(true);
  }
  const results = [await zelk.changeModemLogConfig(items), await zelk.changeTcpdumpConfig([...items]),
    await zelk.sendModemLogCommand(command)] as const;
  same<typeof results, readonly [boolean | undefined, boolean | undefined, boolean | undefined]>(true);
  try {
    zelk.getModemLogLogMasks();
  } catch (error) {
    (error as NotSupportedError).code satisfies '6';
  }
  return [await zelk.fetchRemoteDevicesLogs('{"device":"a"}', 7), await zelk.queryRemoteDevicesLogs('{}'),
    await zelk.getRemoteDevicesList(), await zelk.queryProtocolData('')];
}
