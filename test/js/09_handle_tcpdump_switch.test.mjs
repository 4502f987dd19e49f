import { I, switchTests } from '../support/cases.mjs';

switchTests('handleTcpdumpSwitch', {
  configUndefined: 'HandleModemLogSwitch: config is undefined', // The modem log switch's.
  empty: [I('[TCP dump] NativeHandleTcpdumpSwitch asyncContext configs is empty')],
  failed: (code) => [I(`HandleTcpdumpSwitchCallback: errorcode ${code}`)],
});
