import zelklogservice from './index.js';

export default zelklogservice;

// The functions are properties that cannot be enumerated, so each is named here.
export const {
  getModemLogConfig,
  getModemLogDirectPackConfig,
  getModemLogLogMasks,
  getModemLogStatus,
  handleModemLogSwitch,
  changeModemLogConfig,
  sendModemLogCommand,
  getTcpdumpStatus,
  getTcpdumpConfig,
  changeTcpdumpConfig,
  handleTcpdumpSwitch,
  handleBluetoothCallPcmLogSwitch,
  fetchRemoteDevicesLogs,
  queryRemoteDevicesLogs,
  getRemoteDevicesList,
  queryProtocolData,
} = zelklogservice;
