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

template <typename Type>
using List = std::vector<Type>;
using Strings = List<std::string>;
using Items = std::vector<std::shared_ptr<ConfigInfo>>;

// Each is exactly this, and has neither an overload nor a template beside it.
template <typename Wanted, typename... Given>
constexpr bool Are(Given...)
{
    return (std::is_same_v<Wanted, Given> && ...);
}

// The members of the class, data and functions, are of these types, in this order.
template <typename Class, typename... Wanted, typename... Given>
constexpr bool AreMembers(Given...)
{
    return (std::is_same_v<Wanted Class::*, Given> && ...);
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

static_assert(Are<napi_callback>(GetModemLogConfig, GetModemLogDirectPackConfig, GetModemLogLogMasks, GetModemLogStatus,
                                 HandleModemLogSwitch, ChangeModemLogConfig, SendModemLogCommand, GetTcpdumpStatus,
                                 GetTcpdumpConfig, ChangeTcpdumpConfig, HandleTcpdumpSwitch,
                                 HandleBluetoothCallPcmLogSwitch, FetchRemoteDevicesLogs, QueryRemoteDevicesLogs,
                                 GetRemoteDevicesList, QueryProtocolData));
static_assert(Are<napi_async_execute_callback>(
    NativeGetModemLogConfig, NativeGetModemLogDirectPackConfig, NativeGetModemLogLogMasks, NativeGetModemLogStatus,
    NativeHandleModemLogSwitch, NativeChangeModemLogConfig, NativeSendModemLogCommand, NativeGetTcpdumpStatus,
    NativeGetTcpdumpConfig, NativeChangeTcpdumpConfig, NativeHandleTcpdumpSwitch, NativeHandleBluetoothCallPcmLogSwitch,
    OnGlobalExecuteCallback));
static_assert(Are<napi_async_complete_callback>(
    GetModemLogConfigCallback, GetModemLogDirectPackConfigCallback, GetModemLogLogMasksCallback,
    GetModemLogStatusCallback, HandleModemLogSwitchCallback, ChangeModemLogConfigCallback, SendModemLogCommandCallback,
    GetTcpdumpStatusCallback, GetTcpdumpConfigCallback, ChangeTcpdumpConfigCallback, HandleTcpdumpSwitchCallback,
    HandleBluetoothCallPcmLogSwitchCallback, OnGlobalCompleteCallback));
static_assert(Are<bool (*)(napi_env, const napi_value[], std::initializer_list<napi_valuetype>)>(MatchParameters));

// ---- The async frame ----

static_assert(std::is_standard_layout_v<BaseContext> && std::is_trivially_destructible_v<BaseContext>);
static_assert(AreMembers<BaseContext, napi_async_work, napi_deferred, napi_ref, bool, int32_t>(
    &BaseContext::work, &BaseContext::deferred, &BaseContext::callbackRef, &BaseContext::resolved,
    &BaseContext::errorCode));
static_assert(offsetof(BaseContext, work) == 0 && offsetof(BaseContext, deferred) == sizeof(void*) &&
              offsetof(BaseContext, callbackRef) == 2 * sizeof(void*) &&
              offsetof(BaseContext, resolved) == 3 * sizeof(void*) &&
              offsetof(BaseContext, errorCode) > offsetof(BaseContext, resolved));
static_assert(BaseContext().errorCode == -1 && !BaseContext().resolved);

template <typename... Contexts>
constexpr bool AreContexts = (std::is_base_of_v<BaseContext, Contexts> && ...);
static_assert(AreContexts<GetModemLogStatusContext, SwitchContext, GetConfigContext, ChangeConfigContext>);
static_assert(AreMembers<GetModemLogStatusContext, bool>(&GetModemLogStatusContext::status));
static_assert(AreMembers<SwitchContext, bool, bool, Items>(&SwitchContext::switchStatus, &SwitchContext::result,
                                                           &SwitchContext::configs));
static_assert(AreMembers<GetConfigContext, Strings, Strings>(&GetConfigContext::configKeys,
                                                             &GetConfigContext::callbackConfigs));
static_assert(AreMembers<ChangeConfigContext, Items, bool>(&ChangeConfigContext::configs,
                                                           &ChangeConfigContext::result));

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
static_assert(AreMembers<NapiContext, napi_value(), void(), void(napi_env, napi_status)>(
    &NapiContext::Execute, &NapiContext::OnExecuteCallback, &NapiContext::OnCompleteCallback));
static_assert(AreMembers<NapiContext, std::string, napi_env, napi_async_work, napi_deferred, int32_t>(
    &NapiContext::name, &NapiContext::env, &NapiContext::work, &NapiContext::deferred, &NapiContext::errorCode));
static_assert(AreMembers<Executor, Job, Converter, std::string>(&Executor::job, &Executor::converter,
                                                                &Executor::result));

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
static_assert(AreMembers<ParamValue, const ConfigInfoParamType, bool, char, int16_t, int32_t, int64_t, float, double,
                         std::string>(&ParamValue::type, &ParamValue::boolValue, &ParamValue::charValue,
                                      &ParamValue::shortValue, &ParamValue::intValue, &ParamValue::longValue,
                                      &ParamValue::floatValue, &ParamValue::doubleValue, &ParamValue::stringValue));
static_assert(AreMembers<ParamValue, List<bool>, List<char>, List<int16_t>, List<int32_t>, List<int64_t>, List<float>,
                         List<double>, Strings>(&ParamValue::boolVector, &ParamValue::charVector,
                                                &ParamValue::shortVector, &ParamValue::intVector,
                                                &ParamValue::longVector, &ParamValue::floatVector,
                                                &ParamValue::doubleVector, &ParamValue::stringVector));

static_assert(std::is_constructible_v<ConfigInfoParam, std::string, ConfigInfoParamType>);
static_assert(std::is_copy_constructible_v<ConfigInfoParam>);
static_assert(AreMembers<ConfigInfoParam, std::string, const ConfigInfoParamType>(&ConfigInfoParam::name,
                                                                                  &ConfigInfoParam::type));
static_assert(Are<ParamValue ConfigInfoParam::*>(&ConfigInfoParam::value));

static_assert(std::is_constructible_v<ConfigInfo, const std::string&> && !std::is_polymorphic_v<ConfigInfo>);
static_assert(AreMembers<ConfigInfo, std::string, std::list<ConfigInfoParam>, std::string() const>(
    &ConfigInfo::key, &ConfigInfo::params, &ConfigInfo::GetJsonParams));
template <typename... Types>
constexpr bool TAKES = (Has<void (ConfigInfo::*)(const std::string&, Types)>(&ConfigInfo::AddParam) && ...);
static_assert(TAKES<bool, int, const std::string&, const List<bool>&, const List<int>&, const Strings&>);

template <typename Values>
using StreamWriter = void (ConfigInfo::*)(std::stringstream&, Values) const;
static_assert(Are<StreamWriter<ConfigInfoParam>>(&ConfigInfo::AddVectorToJson));
static_assert(Are<StreamWriter<const List<bool>&>>(&ConfigInfo::ConvertBoolVectorToJson));
static_assert(Are<StreamWriter<const List<float>&>>(&ConfigInfo::ConvertFloatVectorToJson));
static_assert(Are<StreamWriter<const List<double>&>>(&ConfigInfo::ConvertDecimalsVectorToJson));
template <typename... Types>
constexpr bool WRITES = (Are<StreamWriter<const List<Types>&>>(&ConfigInfo::ConvertVectorToJson<Types>) && ...);
static_assert(WRITES<char, int16_t, int32_t, int64_t, std::string>);

using Build = NapiZelkConfigInfoBuild;
static_assert(std::is_constructible_v<Build, const std::shared_ptr<ConfigInfo>&>);
using BuildStep = void(napi_env, const std::string&, napi_value);
static_assert(AreMembers<Build, int32_t, std::shared_ptr<ConfigInfo>, std::shared_ptr<ConfigInfo>(napi_env, napi_value),
                         BuildStep, BuildStep>(&Build::errorCode, &Build::configInfo, &Build::BuildChangeConfig,
                                               &Build::AddParamToList, &Build::AddArrayParamToList));
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

// What the client and the service that it calls have in common.
template <typename Class>
constexpr bool HAS_OPERATIONS =
    Are<int32_t (Class::*)(Strings&, Strings&)>(&Class::GetModemLogConfig) &&
    Are<int32_t (Class::*)(Strings, Strings&)>(&Class::GetTcpdumpConfig) &&
    Are<int32_t (Class::*)(Strings&)>(&Class::GetModemLogLogMasks) &&
    Are<int32_t (Class::*)(bool&)>(&Class::GetModemLogStatus, &Class::GetTcpdumpStatus) &&
    Are<int32_t (Class::*)(std::string&)>(&Class::GetModemLogDirectPackConfig, &Class::GetRemoteDevicesList) &&
    Are<int32_t (Class::*)(const std::string&, std::string&, int64_t)>(&Class::FetchRemoteDevicesLogs) &&
    Are<int32_t (Class::*)(const std::string&, std::string&)>(&Class::QueryRemoteDevicesLogs,
                                                              &Class::QueryProtocolData) &&
    Are<int32_t (Class::*)(bool)>(&Class::HandleBluetoothCallPcmLogSwitch) &&
    Has<int32_t (Class::*)(bool, bool&)>(&Class::HandleModemLogSwitch) &&
    Has<int32_t (Class::*)(bool, bool&)>(&Class::HandleTcpdumpSwitch);
static_assert(HAS_OPERATIONS<ServiceClient> && HAS_OPERATIONS<IZelkLogService>);

// And what only one of them has: the client takes items, the service their texts.
static_assert(Are<int32_t (ServiceClient::*)(Items, bool&)>(&ServiceClient::ChangeModemLogConfig));
static_assert(Are<int32_t (ServiceClient::*)(std::shared_ptr<ConfigInfo>, bool&)>(&ServiceClient::SendModemLogCommand));
static_assert(Are<int32_t (ServiceClient::*)(Items&, bool&)>(&ServiceClient::ChangeTcpdumpConfig));
static_assert(Has<int32_t (ServiceClient::*)(bool, Items, bool&)>(&ServiceClient::HandleModemLogSwitch));
static_assert(Has<int32_t (ServiceClient::*)(bool, Items&, bool&)>(&ServiceClient::HandleTcpdumpSwitch));
using Service = IZelkLogService;
static_assert(std::is_base_of_v<RefBase, Service>);
static_assert(Are<int32_t (Service::*)(std::string, bool&)>(&Service::SendModemLogCommand));
static_assert(Are<int32_t (Service::*)(Strings&, bool&)>(&Service::ChangeModemLogConfig,
                                                         &Service::ChangeTcpdumpConfig));
static_assert(Has<int32_t (Service::*)(bool, Strings&, bool&)>(&Service::HandleModemLogSwitch));
static_assert(Has<int32_t (Service::*)(bool, Strings&, bool&)>(&Service::HandleTcpdumpSwitch));

// ---- The payload writer ----

static_assert(std::is_same_v<std::underlying_type_t<ValueType>, int32_t> && static_cast<int>(ValueType::NONE) == -1);
// One type for each kind, in the order of the kinds.
template <typename... Types>
constexpr bool ARE_KINDS = CountFromZero<ValueType>({KIND_OF<Types>..., KIND_OF<std::vector<Types>>...});
static_assert(ARE_KINDS<int8_t, int16_t, int32_t, int64_t, uint8_t, uint16_t, uint32_t, uint64_t, float, double,
                        std::string, Payload>);
static_assert(AreMembers<Value, ValueType, std::any>(&Value::type, &Value::holder));

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
