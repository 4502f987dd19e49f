// The signatures and types that the module's parts are known by. Compiling this is the test.
#include <cstddef>
#include <type_traits>

#include "client/zelk_log_service_client.h"
#include "config/config_info.h"
#include "config/json_to_object.h"
#include "config/napi_zelk_config_info_build.h"
#include "napi/calls/config_change_call.h"
#include "napi/calls/config_query_call.h"
#include "napi/calls/status_query_call.h"
#include "napi/calls/switch_call.h"
#include "napi/functions.h"
#include "napi/util/arguments.h"
#include "napi/util/napi_executor.h"
#include "napi/util/napi_util.h"
#include "payload/payload.h"

namespace OHOS::HiviewDFX {

namespace {

using Strings = std::vector<std::string>;
using Items = std::vector<std::shared_ptr<ConfigInfo>>;

// Each is exactly this, and has neither an overload nor a template beside it.
template <typename Wanted, typename... Given>
constexpr bool Are(Given...)
{
    return (std::is_same_v<Wanted, Given> && ...);
}

// The name has this overload.
template <typename Wanted>
constexpr bool Has(Wanted)
{
    return true;
}

// The enumerators are numbered from 0.
template <typename Enumeration, size_t N>
constexpr bool CountFromZero(const Enumeration (&enumerators)[N])
{
    for (size_t i = 0; i < N; ++i) {
        if (static_cast<size_t>(enumerators[i]) != i) {
            return false;
        }
    }
    return true;
}

// ---- The functions and their steps ----

static_assert(Are<napi_value (*)(napi_env, napi_callback_info)>(
    GetModemLogConfig, GetModemLogDirectPackConfig, GetModemLogLogMasks, GetModemLogStatus, HandleModemLogSwitch,
    ChangeModemLogConfig, SendModemLogCommand, GetTcpdumpStatus, GetTcpdumpConfig, ChangeTcpdumpConfig,
    HandleTcpdumpSwitch, HandleBluetoothCallPcmLogSwitch, FetchRemoteDevicesLogs, QueryRemoteDevicesLogs,
    GetRemoteDevicesList, QueryProtocolData));
static_assert(Are<void (*)(napi_env, void*)>(NativeGetModemLogConfig, NativeGetModemLogDirectPackConfig,
                                             NativeGetModemLogLogMasks, NativeGetModemLogStatus,
                                             NativeHandleModemLogSwitch, NativeChangeModemLogConfig,
                                             NativeSendModemLogCommand, NativeGetTcpdumpStatus, NativeGetTcpdumpConfig,
                                             NativeChangeTcpdumpConfig, NativeHandleTcpdumpSwitch,
                                             NativeHandleBluetoothCallPcmLogSwitch, OnGlobalExecuteCallback));
static_assert(Are<void (*)(napi_env, napi_status, void*)>(
    GetModemLogConfigCallback, GetModemLogDirectPackConfigCallback, GetModemLogLogMasksCallback,
    GetModemLogStatusCallback, HandleModemLogSwitchCallback, ChangeModemLogConfigCallback, SendModemLogCommandCallback,
    GetTcpdumpStatusCallback, GetTcpdumpConfigCallback, ChangeTcpdumpConfigCallback, HandleTcpdumpSwitchCallback,
    HandleBluetoothCallPcmLogSwitchCallback, OnGlobalCompleteCallback));
static_assert(Are<bool (*)(napi_env, const napi_value[], std::initializer_list<napi_valuetype>)>(MatchParameters));

// ---- The async frame ----

static_assert(std::is_standard_layout_v<BaseContext> && std::is_trivially_destructible_v<BaseContext>);
static_assert(Are<napi_async_work BaseContext::*>(&BaseContext::work));
static_assert(Are<napi_deferred BaseContext::*>(&BaseContext::deferred));
static_assert(Are<napi_ref BaseContext::*>(&BaseContext::callbackRef));
static_assert(Are<bool BaseContext::*>(&BaseContext::resolved));
static_assert(Are<int32_t BaseContext::*>(&BaseContext::errorCode));
static_assert(offsetof(BaseContext, work) == 0 && offsetof(BaseContext, deferred) == sizeof(void*) &&
              offsetof(BaseContext, callbackRef) == 2 * sizeof(void*) &&
              offsetof(BaseContext, resolved) == 3 * sizeof(void*) &&
              offsetof(BaseContext, errorCode) > offsetof(BaseContext, resolved));
static_assert(BaseContext().errorCode == -1 && !BaseContext().resolved);

template <typename... Contexts>
constexpr bool AreContexts = (std::is_base_of_v<BaseContext, Contexts> && ...);
static_assert(AreContexts<GetModemLogStatusContext, SwitchContext, GetConfigContext, ChangeConfigContext>);
static_assert(Are<bool GetModemLogStatusContext::*>(&GetModemLogStatusContext::status));
static_assert(Are<bool SwitchContext::*>(&SwitchContext::switchStatus, &SwitchContext::result));
static_assert(Are<Items SwitchContext::*>(&SwitchContext::configs));
static_assert(Are<Strings GetConfigContext::*>(&GetConfigContext::configKeys, &GetConfigContext::callbackConfigs));
static_assert(Are<Items ChangeConfigContext::*>(&ChangeConfigContext::configs));
static_assert(Are<bool ChangeConfigContext::*>(&ChangeConfigContext::result));

static_assert(Are<napi_value (*)(napi_env, BaseContext*, const std::string&, napi_async_execute_callback,
                                 napi_async_complete_callback)>(NapiUtil::HandleAsyncWork));
static_assert(Are<void (*)(napi_env, BaseContext*, napi_value)>(NapiUtil::Handle2ValueCallback));
static_assert(Are<void (*)(napi_env, int32_t, const std::string&)>(NapiUtil::ThrowError));
static_assert(Are<bool (*)()>(NapiUtil::IsSystemAppCall));
static_assert(Are<napi_value (*)(napi_env)>(NapiUtil::CreateUndefined));

struct Context : NapiContext {
    using NapiContext::NapiContext;
    void OnExecuteCallback() override {}
    void OnCompleteCallback(napi_env, napi_status) override {}
};
using Job = std::function<std::pair<int, std::string>()>;
using Converter = std::function<napi_value(napi_env, std::string&)>;
using Executor = NapiExecutor<std::string>;
static_assert(std::is_abstract_v<NapiContext> && std::has_virtual_destructor_v<NapiContext>);
static_assert(std::is_constructible_v<Context, napi_env, std::string>);
static_assert(std::is_base_of_v<NapiContext, Executor>);
static_assert(std::is_constructible_v<Executor, std::string, napi_env, Job, Converter>);
static_assert(Are<napi_value (NapiContext::*)()>(&NapiContext::Execute));
static_assert(Are<void (NapiContext::*)()>(&NapiContext::OnExecuteCallback));
static_assert(Are<void (NapiContext::*)(napi_env, napi_status)>(&NapiContext::OnCompleteCallback));
static_assert(Are<std::string NapiContext::*>(&NapiContext::name));
static_assert(Are<napi_env NapiContext::*>(&NapiContext::env));
static_assert(Are<napi_async_work NapiContext::*>(&NapiContext::work));
static_assert(Are<napi_deferred NapiContext::*>(&NapiContext::deferred));
static_assert(Are<int32_t NapiContext::*>(&NapiContext::errorCode));
static_assert(Are<Job Executor::*>(&Executor::job));
static_assert(Are<Converter Executor::*>(&Executor::converter));
static_assert(Are<std::string Executor::*>(&Executor::result));

// ---- Access to JavaScript values ----

static_assert(MAX_STRING_LENGTH == 8194);
static_assert(Are<bool (*)(napi_env, napi_value, napi_valuetype)>(NapiUtil::MatchValueType));
static_assert(Are<napi_valuetype (*)(napi_env, napi_value)>(NapiUtil::GetType, NapiUtil::GetArrayType));
static_assert(Are<bool (*)(napi_env, napi_value)>(NapiUtil::IsUndefined, NapiUtil::IsArray, NapiUtil::GetBool));
static_assert(Are<int32_t (*)(napi_env, napi_value)>(NapiUtil::GetInt32));
static_assert(Are<int64_t (*)(napi_env, napi_value)>(NapiUtil::GetInt64));
static_assert(Are<std::string (*)(napi_env, napi_value)>(NapiUtil::GetString));
static_assert(Are<napi_value (*)(napi_env, const std::string&)>(NapiUtil::CreateStringValue));
static_assert(Are<napi_value (*)(napi_env, napi_value, const std::string&)>(NapiUtil::GetProperty));
static_assert(Are<void (*)(napi_env, napi_value, Strings&)>(NapiUtil::GetPropertyNames));
static_assert(
    Are<void (*)(napi_env, napi_value, const std::string&, const std::string&)>(NapiUtil::SetPropertyStringUtf8));
static_assert(Are<uint32_t (*)(napi_env, napi_value)>(NapiUtil::GetArrayLength));
static_assert(Are<napi_value (*)(napi_env, napi_value, uint32_t)>(NapiUtil::GetElement));
static_assert(Are<void (*)(napi_env, napi_value, std::vector<bool>&)>(NapiUtil::GetBooleans));
static_assert(Are<void (*)(napi_env, napi_value, std::vector<int>&)>(NapiUtil::GetInt32s));
static_assert(Are<void (*)(napi_env, napi_value, Strings, uint32_t)>(NapiUtil::GetStrings));

// ---- Configuration items ----

static_assert(std::is_same_v<std::underlying_type_t<ConfigInfoParamType>, int32_t>);
constexpr ConfigInfoParamType PARAM_TYPES[] = {
    TYPE_NONE,       TYPE_BOOL,        TYPE_CHAR,         TYPE_SHORT,         TYPE_INT,          TYPE_LONG,
    TYPE_FLOAT,      TYPE_DOUBLE,      TYPE_STRING,       TYPE_BOOL_VECTOR,   TYPE_CHAR_VECTOR,  TYPE_SHORT_VECTOR,
    TYPE_INT_VECTOR, TYPE_LONG_VECTOR, TYPE_FLOAT_VECTOR, TYPE_DOUBLE_VECTOR, TYPE_STRING_VECTOR};
static_assert(CountFromZero(PARAM_TYPES));

using ParamValue = ConfigInfoParamValue;
static_assert(std::is_copy_constructible_v<ParamValue> && !std::is_copy_assignable_v<ParamValue>);
static_assert(Are<const ConfigInfoParamType ParamValue::*>(&ParamValue::type));
static_assert(Are<bool ParamValue::*>(&ParamValue::boolValue));
static_assert(Are<char ParamValue::*>(&ParamValue::charValue));
static_assert(Are<int16_t ParamValue::*>(&ParamValue::shortValue));
static_assert(Are<int32_t ParamValue::*>(&ParamValue::intValue));
static_assert(Are<int64_t ParamValue::*>(&ParamValue::longValue));
static_assert(Are<float ParamValue::*>(&ParamValue::floatValue));
static_assert(Are<double ParamValue::*>(&ParamValue::doubleValue));
static_assert(Are<std::string ParamValue::*>(&ParamValue::stringValue));
static_assert(Are<std::vector<bool> ParamValue::*>(&ParamValue::boolVector));
static_assert(Are<std::vector<char> ParamValue::*>(&ParamValue::charVector));
static_assert(Are<std::vector<int16_t> ParamValue::*>(&ParamValue::shortVector));
static_assert(Are<std::vector<int32_t> ParamValue::*>(&ParamValue::intVector));
static_assert(Are<std::vector<int64_t> ParamValue::*>(&ParamValue::longVector));
static_assert(Are<std::vector<float> ParamValue::*>(&ParamValue::floatVector));
static_assert(Are<std::vector<double> ParamValue::*>(&ParamValue::doubleVector));
static_assert(Are<Strings ParamValue::*>(&ParamValue::stringVector));

static_assert(std::is_constructible_v<ConfigInfoParam, std::string, ConfigInfoParamType>);
static_assert(std::is_copy_constructible_v<ConfigInfoParam>);
static_assert(Are<std::string ConfigInfoParam::*>(&ConfigInfoParam::name));
static_assert(Are<const ConfigInfoParamType ConfigInfoParam::*>(&ConfigInfoParam::type));
static_assert(Are<ParamValue ConfigInfoParam::*>(&ConfigInfoParam::value));

static_assert(std::is_constructible_v<ConfigInfo, const std::string&> && !std::is_polymorphic_v<ConfigInfo>);
static_assert(Are<std::string ConfigInfo::*>(&ConfigInfo::key));
static_assert(Are<std::list<ConfigInfoParam> ConfigInfo::*>(&ConfigInfo::params));
static_assert(Has<void (ConfigInfo::*)(const std::string&, bool)>(&ConfigInfo::AddParam));
static_assert(Has<void (ConfigInfo::*)(const std::string&, int)>(&ConfigInfo::AddParam));
static_assert(Has<void (ConfigInfo::*)(const std::string&, const std::string&)>(&ConfigInfo::AddParam));
static_assert(Has<void (ConfigInfo::*)(const std::string&, const std::vector<bool>&)>(&ConfigInfo::AddParam));
static_assert(Has<void (ConfigInfo::*)(const std::string&, const std::vector<int>&)>(&ConfigInfo::AddParam));
static_assert(Has<void (ConfigInfo::*)(const std::string&, const Strings&)>(&ConfigInfo::AddParam));
static_assert(Are<std::string (ConfigInfo::*)() const>(&ConfigInfo::GetJsonParams));

template <typename Values>
using StreamWriter = void (ConfigInfo::*)(std::stringstream&, Values) const;
static_assert(Are<StreamWriter<ConfigInfoParam>>(&ConfigInfo::AddVectorToJson));
static_assert(Are<StreamWriter<const std::vector<bool>&>>(&ConfigInfo::ConvertBoolVectorToJson));
static_assert(Are<StreamWriter<const std::vector<float>&>>(&ConfigInfo::ConvertFloatVectorToJson));
static_assert(Are<StreamWriter<const std::vector<double>&>>(&ConfigInfo::ConvertDecimalsVectorToJson));
static_assert(Are<StreamWriter<const std::vector<char>&>>(&ConfigInfo::ConvertVectorToJson<char>));
static_assert(Are<StreamWriter<const std::vector<int16_t>&>>(&ConfigInfo::ConvertVectorToJson<int16_t>));
static_assert(Are<StreamWriter<const std::vector<int32_t>&>>(&ConfigInfo::ConvertVectorToJson<int32_t>));
static_assert(Are<StreamWriter<const std::vector<int64_t>&>>(&ConfigInfo::ConvertVectorToJson<int64_t>));
static_assert(Are<StreamWriter<const Strings&>>(&ConfigInfo::ConvertVectorToJson<std::string>));

using Build = NapiZelkConfigInfoBuild;
static_assert(std::is_constructible_v<Build, const std::shared_ptr<ConfigInfo>&>);
static_assert(Are<int32_t Build::*>(&Build::errorCode));
static_assert(Are<std::shared_ptr<ConfigInfo> Build::*>(&Build::configInfo));
static_assert(Are<std::shared_ptr<ConfigInfo> (Build::*)(napi_env, napi_value)>(&Build::BuildChangeConfig));
static_assert(Are<void (Build::*)(napi_env, const std::string&, napi_value)>(&Build::AddParamToList,
                                                                             &Build::AddArrayParamToList));
static_assert(Are<void (*)(napi_env, napi_value, Items&)>(FillConfigInfoVector));
static_assert(Are<void (*)(napi_env, napi_value, Strings&)>(FillStringVector));
static_assert(Are<void (*)(napi_env, std::string, napi_value)>(ConvertJsonToObject));

// ---- The service client ----

using ServiceClient = ZelkLogServiceClient;
static_assert(std::is_base_of_v<Client, ServiceClient>);
static_assert(Are<std::shared_ptr<ServiceClient> (*)()>(DelayedSingleton<ServiceClient>::GetInstance));
static_assert(Are<sptr<IZelkLogService> (Client::*)()>(&ServiceClient::GetProxy));
static_assert(Are<void (Client::*)(const wptr<IRemoteObject>&)>(&ServiceClient::OnRemoteDied));
static_assert(Are<void (Client::*)(std::string, std::function<void()>&)>(&ServiceClient::RegisterRemotedDied));

static_assert(Are<int32_t (ServiceClient::*)(Strings&, Strings&)>(&ServiceClient::GetModemLogConfig));
static_assert(Are<int32_t (ServiceClient::*)(std::string&)>(&ServiceClient::GetModemLogDirectPackConfig,
                                                            &ServiceClient::GetRemoteDevicesList));
static_assert(Are<int32_t (ServiceClient::*)(Strings&)>(&ServiceClient::GetModemLogLogMasks));
static_assert(Are<int32_t (ServiceClient::*)(bool&)>(&ServiceClient::GetModemLogStatus,
                                                     &ServiceClient::GetTcpdumpStatus));
static_assert(Has<int32_t (ServiceClient::*)(bool, bool&)>(&ServiceClient::HandleModemLogSwitch));
static_assert(Has<int32_t (ServiceClient::*)(bool, Items, bool&)>(&ServiceClient::HandleModemLogSwitch));
static_assert(Are<int32_t (ServiceClient::*)(Items, bool&)>(&ServiceClient::ChangeModemLogConfig));
static_assert(Are<int32_t (ServiceClient::*)(std::shared_ptr<ConfigInfo>, bool&)>(&ServiceClient::SendModemLogCommand));
static_assert(Are<int32_t (ServiceClient::*)(Strings, Strings&)>(&ServiceClient::GetTcpdumpConfig));
static_assert(Are<int32_t (ServiceClient::*)(Items&, bool&)>(&ServiceClient::ChangeTcpdumpConfig));
static_assert(Has<int32_t (ServiceClient::*)(bool, bool&)>(&ServiceClient::HandleTcpdumpSwitch));
static_assert(Has<int32_t (ServiceClient::*)(bool, Items&, bool&)>(&ServiceClient::HandleTcpdumpSwitch));
static_assert(Are<int32_t (ServiceClient::*)(bool)>(&ServiceClient::HandleBluetoothCallPcmLogSwitch));
static_assert(
    Are<int32_t (ServiceClient::*)(const std::string&, std::string&, int64_t)>(&ServiceClient::FetchRemoteDevicesLogs));
static_assert(Are<int32_t (ServiceClient::*)(const std::string&, std::string&)>(&ServiceClient::QueryRemoteDevicesLogs,
                                                                                &ServiceClient::QueryProtocolData));

using Proxy = IZelkLogService;
static_assert(std::is_base_of_v<RefBase, Proxy>);
static_assert(Are<int32_t (Proxy::*)(Strings&, Strings&)>(&Proxy::GetModemLogConfig));
static_assert(Are<int32_t (Proxy::*)(std::string&)>(&Proxy::GetModemLogDirectPackConfig, &Proxy::GetRemoteDevicesList));
static_assert(Are<int32_t (Proxy::*)(Strings&)>(&Proxy::GetModemLogLogMasks));
static_assert(Are<int32_t (Proxy::*)(bool&)>(&Proxy::GetModemLogStatus, &Proxy::GetTcpdumpStatus));
static_assert(Has<int32_t (Proxy::*)(bool, bool&)>(&Proxy::HandleModemLogSwitch));
static_assert(Has<int32_t (Proxy::*)(bool, Strings&, bool&)>(&Proxy::HandleModemLogSwitch));
static_assert(Are<int32_t (Proxy::*)(std::string, bool&)>(&Proxy::SendModemLogCommand));
static_assert(Are<int32_t (Proxy::*)(Strings&, bool&)>(&Proxy::ChangeModemLogConfig, &Proxy::ChangeTcpdumpConfig));
static_assert(Are<int32_t (Proxy::*)(Strings, Strings&)>(&Proxy::GetTcpdumpConfig));
static_assert(Has<int32_t (Proxy::*)(bool, bool&)>(&Proxy::HandleTcpdumpSwitch));
static_assert(Has<int32_t (Proxy::*)(bool, Strings&, bool&)>(&Proxy::HandleTcpdumpSwitch));
static_assert(Are<int32_t (Proxy::*)(bool)>(&Proxy::HandleBluetoothCallPcmLogSwitch));
static_assert(Are<int32_t (Proxy::*)(const std::string&, std::string&, int64_t)>(&Proxy::FetchRemoteDevicesLogs));
static_assert(Are<int32_t (Proxy::*)(const std::string&, std::string&)>(&Proxy::QueryRemoteDevicesLogs,
                                                                        &Proxy::QueryProtocolData));

// ---- The payload writer ----

static_assert(std::is_same_v<std::underlying_type_t<ValueType>, int32_t> && static_cast<int>(ValueType::NONE) == -1);
// One type for each kind, in the order of the kinds.
template <typename... Types>
constexpr bool ARE_KINDS = CountFromZero<ValueType>({KIND_OF<Types>..., KIND_OF<std::vector<Types>>...});
static_assert(ARE_KINDS<int8_t, int16_t, int32_t, int64_t, uint8_t, uint16_t, uint32_t, uint64_t, float, double,
                        std::string, Payload>);
static_assert(Are<ValueType Value::*>(&Value::type));
static_assert(Are<std::any Value::*>(&Value::holder));

template <typename... Types>
constexpr bool HAVE_WRITERS = (Has<void (*)(std::ostream&, const Value&)>(WriteValue<Types>) && ...) &&
                              (Has<void (*)(std::ostream&, const Value&)>(WriteArray<Types>) && ...) &&
                              (Has<std::ostream& (*)(std::ostream&, const std::vector<Types>&)>(operator<<) && ...);
static_assert(HAVE_WRITERS<int16_t, int32_t, int64_t, uint16_t, uint32_t, uint64_t, float, double, Payload>);
static_assert(HAVE_WRITERS<signed char, unsigned char>);
static_assert(Are<void (*)(std::ostream&, const Value&)>(Payload::WriteInt8, Payload::WriteUint8, Payload::WriteString,
                                                         Payload::WriteStringArray));
static_assert(Has<std::ostream& (*)(std::ostream&, const Payload&)>(operator<<));
static_assert(Has<std::ostream& (*)(std::ostream&, const Value&)>(operator<<));

} // namespace

} // namespace OHOS::HiviewDFX
