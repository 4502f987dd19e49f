// Uses that the types allow, from a CommonJS file, and what they say about the answers.
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

// Queries.
const entries = zelk.getModemLogConfig(keys);
same<typeof entries, Promised<ConfigEntry[]>>(true);
same<ReturnType<typeof zelk.getModemLogDirectPackConfig>, undefined>(true);
const state = zelk.getModemLogStatus();
same<typeof state, Promised<boolean>>(true);
const capture = zelk.getTcpdumpStatus();
same<typeof capture, Promised<boolean>>(true);
const captureEntries = zelk.getTcpdumpConfig(keys);
same<typeof captureEntries, Promised<ConfigEntry[]>>(true);

const noPromise: undefined[] = [
  zelk.getModemLogConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.getModemLogDirectPackConfig(),
  zelk.getModemLogDirectPackConfig((answer) => same<typeof answer, string>(true)),
  zelk.getModemLogLogMasks(),
  zelk.getModemLogLogMasks((answer) => same<typeof answer, LogMask[]>(true)),
  zelk.getModemLogStatus(onState),
  zelk.getTcpdumpStatus(onState),
  zelk.getTcpdumpConfig(keys, (answer) => same<typeof answer, ConfigEntry[]>(true)),
  zelk.changeModemLogConfig(items, onState),
  zelk.changeTcpdumpConfig(items, onState),
  zelk.sendModemLogCommand(command, onState),
];

// Switches.
const switches = [zelk.handleModemLogSwitch, zelk.handleTcpdumpSwitch] as const;
for (const turn of switches) {
  const answers: Promised<boolean>[] = [turn(true), turn(false, undefined), turn(true, items), turn(true, [])];
  noPromise.push(turn(true, onState), turn(true, onState, items));
  void answers;
}
const bluetooth = zelk.handleBluetoothCallPcmLogSwitch(true, items);
same<typeof bluetooth, Promised<false>>(true);
noPromise.push(zelk.handleBluetoothCallPcmLogSwitch(false, onState, items));

async function answers(): Promise<void> {
  for (const { configKey, value } of (await zelk.getModemLogConfig(keys)) ?? []) {
    same<typeof configKey, string | undefined>(true);
    const level = value['level'];
    same<typeof level, boolean | number | string | null | undefined>(true);
  }
  const changed = [await zelk.changeModemLogConfig(items), await zelk.changeTcpdumpConfig([...items])];
  same<typeof changed, (boolean | undefined)[]>(true);
  const sent = await zelk.sendModemLogCommand(command);
  same<typeof sent, boolean | undefined>(true);
  const texts: string[] = [
    await zelk.fetchRemoteDevicesLogs('{"device":"a"}', 7),
    await zelk.queryRemoteDevicesLogs('{}'),
    await zelk.getRemoteDevicesList(),
    await zelk.queryProtocolData(''),
  ];
  try {
    zelk.getModemLogLogMasks();
  } catch (error) {
    const code: '6' = (error as NotSupportedError).code;
    void code;
  }
  void texts;
}
void answers;
