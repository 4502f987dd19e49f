import zelklogservice from '@ohos.zelklogservice';

function readBack(): void {
  zelklogservice.getModemLogConfig(['ring'], (entries: zelklogservice.ConfigEntry[]): void => {
    console.info(`3 ring: ${JSON.stringify(entries[0].value)}`);
  });
}

function switchOn(): void {
  const ring: zelklogservice.ConfigItem = { configKey: 'ring', value: { 'megabytes': 64 } };
  zelklogservice.handleModemLogSwitch(true, (done: boolean): void => {
    console.info(`2 switched: ${done}`);
    readBack();
  }, [ring]);
}

// Call it when the application starts, or when a button is pressed.
export function tryModemLog(): void {
  zelklogservice.getModemLogStatus((on: boolean): void => {
    console.info(`1 modem log: ${on}`);
    switchOn();
  });
}
