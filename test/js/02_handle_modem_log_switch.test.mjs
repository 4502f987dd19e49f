import { E, I, switchTests } from '../support/cases.mjs';

switchTests('handleModemLogSwitch', {
  configUndefined: 'HandleModemLogSwitch: config is undefined',
  state: 'HandleModemLogSwitch: switchStatus',
  empty: [I('NativeHandleModemLogSwitch asyncContext configs is empty')],
  failed: () => [E('[HandleModemLogSwitchCallback] !asyncContext->resolved')],
  delivers: true,
});
