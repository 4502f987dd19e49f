// An application in the style of ArkTS: types in full, no inference from object shapes.
import zelklogservice from '@ohos.zelklogservice';
import { Callback } from '@ohos.base';

class Ring implements zelklogservice.ConfigItem {
  configKey: string = 'ring';
  value: zelklogservice.ConfigParameters = { size: 64, enable: true, masks: [1, 2, 3] };
}

const keys: string[] = ['ring'];
const items: zelklogservice.ConfigItem[] = [new Ring()];
const onState: Callback<boolean> = (on: boolean): void => console.log(on);
const onEntries: Callback<zelklogservice.ConfigEntry[]> =
  (entries: zelklogservice.ConfigEntry[]): void => console.log(entries[0].configKey, entries[0].value['size']);
const onMasks: Callback<zelklogservice.LogMask[]> =
  (masks: zelklogservice.LogMask[]): void => console.log(masks.length);

export function start(): void {
  zelklogservice.handleModemLogSwitch(true, onState, items);
  zelklogservice.getModemLogConfig(keys, onEntries);
  zelklogservice.sendModemLogCommand(new Ring(), onState);
  try {
    zelklogservice.getModemLogLogMasks(onMasks);
  } catch (error) {
    const notSupported: zelklogservice.NotSupportedError = error as zelklogservice.NotSupportedError;
    console.log(notSupported.code);
  }
}

export async function isCapturing(): Promise<boolean> {
  const on: boolean | undefined = await zelklogservice.getTcpdumpStatus();
  const devices: string = await zelklogservice.getRemoteDevicesList();
  await zelklogservice.fetchRemoteDevicesLogs(devices, 1);
  // @ts-expect-error: a callback gets one value.
  zelklogservice.getTcpdumpStatus((error: Error, state: boolean): void => console.log(error, state));
  return on === true;
}
