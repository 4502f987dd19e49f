import zelklogservice from './index.js';

export default zelklogservice;

// The functions are not enumerable, so each is named here.
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
