import { I, switchTests } from '../support/cases.mjs';

// The items are made and not sent, and success answers false.
switchTests('handleBluetoothCallPcmLogSwitch', {
  configUndefined: 'HandleBluetoothCallPcmLogSwitch: config is undefined',
  empty: [],
  failed: (code) => [I(`HandleBluetoothCallPcmLogSwitchCallback: errorcode ${code}`)],
  sendsItems: false,
  answer: false,
});
