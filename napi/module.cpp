// The entry of the shared object: the module record, its registration and the table of functions.
#include <array>

#include "napi/functions.h"
#include "napi/native_api.h"
#include "napi/util/checked_call.h"

namespace OHOS::HiviewDFX {

namespace {

constexpr napi_property_descriptor Function(const char* name, napi_callback method)
{
    return {name, nullptr, method, nullptr, nullptr, nullptr, napi_default, nullptr};
}

// JavaScript sees the properties in this order.
constexpr std::array FUNCTIONS = {
    Function("getModemLogConfig", GetModemLogConfig),
    Function("getModemLogDirectPackConfig", GetModemLogDirectPackConfig),
    Function("getModemLogLogMasks", GetModemLogLogMasks),
    Function("getModemLogStatus", GetModemLogStatus),
    Function("handleModemLogSwitch", HandleModemLogSwitch),
    Function("changeModemLogConfig", ChangeModemLogConfig),
    Function("sendModemLogCommand", SendModemLogCommand),
    Function("getTcpdumpStatus", GetTcpdumpStatus),
    Function("getTcpdumpConfig", GetTcpdumpConfig),
    Function("changeTcpdumpConfig", ChangeTcpdumpConfig),
    Function("handleTcpdumpSwitch", HandleTcpdumpSwitch),
    Function("handleBluetoothCallPcmLogSwitch", HandleBluetoothCallPcmLogSwitch),
    Function("fetchRemoteDevicesLogs", FetchRemoteDevicesLogs),
    Function("queryRemoteDevicesLogs", QueryRemoteDevicesLogs),
    Function("getRemoteDevicesList", GetRemoteDevicesList),
    Function("queryProtocolData", QueryProtocolData),
};

napi_value Init(napi_env env, napi_value exports)
{
    auto functions = FUNCTIONS;
    const napi_status status = napi_define_properties(env, exports, functions.size(), functions.data());
    return CheckCall(env, status) ? exports : nullptr;
}

napi_module g_module = {
    1,                // nm_version
    0,                // nm_flags
    nullptr,          // nm_filename
    Init,             // nm_register_func
    "zelklogservice", // nm_modname
    nullptr,          // nm_priv
    {nullptr},        // reserved
};

} // namespace

// Runs when the shared object is loaded.
extern "C" __attribute__((constructor)) void RegisterModule()
{
    napi_module_register(&g_module);
}

} // namespace OHOS::HiviewDFX
