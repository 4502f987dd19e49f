import zelklogservice from './index.js';

export default zelklogservice;

// An ES module's exports cannot be made from an object's properties, so each function is named here.
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
