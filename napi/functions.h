// The sixteen functions of the module, in the order of the table in module.cpp.
//
// Each of the first twelve has three steps. The function itself reads its arguments on the JavaScript thread and
// returns a promise or, with a callback, `undefined`; it returns null, which is `undefined` in JavaScript, when it
// refuses the call or a Node-API call fails. Its Native step makes the request, on a worker. Its Callback step answers,
// on the JavaScript thread. The `data` of these two is the call's context; null is logged and otherwise ignored, except
// by the Native steps of the two configuration queries, which also throw. `status` is not read.
//
// The first twelve serve system applications only: any other caller gets a log line and `undefined`. The last four
// serve every caller, take no callback, and leave their other steps to NapiExecutor.
#ifndef ZELKLOGSERVICE_NAPI_FUNCTIONS_H
#define ZELKLOGSERVICE_NAPI_FUNCTIONS_H

#include "napi/native_api.h"

namespace OHOS::HiviewDFX {

// getModemLogConfig(keys[, callback]): the modem log's configuration items for a list of keys. A query that fails or
// finds nothing is never answered.
napi_value GetModemLogConfig(napi_env env, napi_callback_info info);
void NativeGetModemLogConfig(napi_env env, void* data);
void GetModemLogConfigCallback(napi_env env, napi_status status, void* data);

// getModemLogDirectPackConfig([callback]): the direct-pack configuration, a string. Not supported at present: throws an
// Error with code 6, and makes the request all the same. A query that fails is never answered.
napi_value GetModemLogDirectPackConfig(napi_env env, napi_callback_info info);
void NativeGetModemLogDirectPackConfig(napi_env env, void* data);
void GetModemLogDirectPackConfigCallback(napi_env env, napi_status status, void* data);

// getModemLogLogMasks([callback]): the modem log's masks. Not supported at present, like the function above. A query
// that fails or finds nothing is never answered.
napi_value GetModemLogLogMasks(napi_env env, napi_callback_info info);
void NativeGetModemLogLogMasks(napi_env env, void* data);
void GetModemLogLogMasksCallback(napi_env env, napi_status status, void* data);

// getModemLogStatus([callback]): whether the modem log is on.
napi_value GetModemLogStatus(napi_env env, napi_callback_info info);
void NativeGetModemLogStatus(napi_env env, void* data);
void GetModemLogStatusCallback(napi_env env, napi_status status, void* data);

// handleModemLogSwitch(state[, callback][, configs]): turns the modem log on or off.
napi_value HandleModemLogSwitch(napi_env env, napi_callback_info info);
void NativeHandleModemLogSwitch(napi_env env, void* data);
void HandleModemLogSwitchCallback(napi_env env, napi_status status, void* data);

// changeModemLogConfig(configs[, callback]): applies configuration items to the modem log.
napi_value ChangeModemLogConfig(napi_env env, napi_callback_info info);
void NativeChangeModemLogConfig(napi_env env, void* data);
void ChangeModemLogConfigCallback(napi_env env, napi_status status, void* data);

// sendModemLogCommand(command[, callback]): sends one command to the modem log. A command that fails is never answered.
napi_value SendModemLogCommand(napi_env env, napi_callback_info info);
void NativeSendModemLogCommand(napi_env env, void* data);
void SendModemLogCommandCallback(napi_env env, napi_status status, void* data);

// getTcpdumpStatus([callback]): whether network packet capture is running. A query that fails is never answered.
napi_value GetTcpdumpStatus(napi_env env, napi_callback_info info);
void NativeGetTcpdumpStatus(napi_env env, void* data);
void GetTcpdumpStatusCallback(napi_env env, napi_status status, void* data);

// getTcpdumpConfig(keys[, callback]): the capture's configuration items for a list of keys. A query that fails or finds
// nothing is never answered.
napi_value GetTcpdumpConfig(napi_env env, napi_callback_info info);
void NativeGetTcpdumpConfig(napi_env env, void* data);
void GetTcpdumpConfigCallback(napi_env env, napi_status status, void* data);

// changeTcpdumpConfig(configs[, callback]): applies configuration items to the capture. A change that fails is never
// answered.
napi_value ChangeTcpdumpConfig(napi_env env, napi_callback_info info);
void NativeChangeTcpdumpConfig(napi_env env, void* data);
void ChangeTcpdumpConfigCallback(napi_env env, napi_status status, void* data);

// handleTcpdumpSwitch(state[, callback][, configs]): starts or stops the capture. A switch that fails is never
// answered.
napi_value HandleTcpdumpSwitch(napi_env env, napi_callback_info info);
void NativeHandleTcpdumpSwitch(napi_env env, void* data);
void HandleTcpdumpSwitchCallback(napi_env env, napi_status status, void* data);

// handleBluetoothCallPcmLogSwitch(state[, callback][, configs]): turns the Bluetooth call PCM log on or off. The items
// are read but not sent. Answers false on success; a switch that fails is never answered.
napi_value HandleBluetoothCallPcmLogSwitch(napi_env env, napi_callback_info info);
void NativeHandleBluetoothCallPcmLogSwitch(napi_env env, void* data);
void HandleBluetoothCallPcmLogSwitchCallback(napi_env env, napi_status status, void* data);

// Each of these four returns a promise of the service's reply text, resolved when the request succeeded and rejected
// with the same text when it did not. The wrong number of arguments is logged.

// fetchRemoteDevicesLogs(request, number): exactly two arguments.
napi_value FetchRemoteDevicesLogs(napi_env env, napi_callback_info info);
// queryRemoteDevicesLogs(request): exactly one argument.
napi_value QueryRemoteDevicesLogs(napi_env env, napi_callback_info info);
// getRemoteDevicesList(): arguments are not read.
napi_value GetRemoteDevicesList(napi_env env, napi_callback_info info);
// queryProtocolData(request): exactly one argument.
napi_value QueryProtocolData(napi_env env, napi_callback_info info);

} // namespace OHOS::HiviewDFX

#endif // ZELKLOGSERVICE_NAPI_FUNCTIONS_H
