// An application in the style of ArkTS: types in full, no inference from object shapes.
import zelklogservice from '@ohos.zelklogservice';

class Ring implements zelklogservice.ConfigItem {
  configKey: string = 'ring';
  value: zelklogservice.ConfigParameters = { size: 64, enable: true, masks: [1, 2, 3] };
}

export const switched: Promise<boolean> | undefined = zelklogservice.handleModemLogSwitch(true, [new Ring()]);
// @ts-expect-error: a callback gets one value.
zelklogservice.getTcpdumpStatus((error: Error, state: boolean): void => console.log(error, state));
