#include "test/support/fault_layer.h"

#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "host/utils/thread_safety.h"

namespace ZelkTest {

namespace {

std::mutex g_mutex;
Json::Value g_plan ZELK_GUARDED_BY(g_mutex);                      // See PlanFaults.
std::map<std::string, int> g_usesByName ZELK_GUARDED_BY(g_mutex); // Since the plan was made; "" counts all.
Json::Value g_trace ZELK_GUARDED_BY(g_mutex) = Json::arrayValue;
std::map<std::string, int> g_counts ZELK_GUARDED_BY(g_mutex) = {{"contexts", 0},  {"references", 0}, {"works", 0},
                                                                {"deferreds", 0}, {"inFlight", 0},   {"faults", 0},
                                                                {"members", 0},   {"returned", 0}};

// The fault of the last call, or null. Its message is valid until the next call, as on runtimes that then overwrite the
// error record.
thread_local Json::Value g_fault;

// The calls that change what the module holds.
const std::map<std::string, std::pair<const char*, int>> HOLDINGS = {
    {"napi_create_async_work", {"works", 1}},      {"napi_delete_async_work", {"works", -1}},
    {"napi_create_promise", {"deferreds", 1}},     {"napi_resolve_deferred", {"deferreds", -1}},
    {"napi_reject_deferred", {"deferreds", -1}},   {"napi_create_reference", {"references", 1}},
    {"napi_delete_reference", {"references", -1}}, {"napi_queue_async_work", {"inFlight", 1}},
};

// Async work of the module. Without data both of its steps run on the JavaScript thread, because a step may then throw.
struct Work {
    napi_async_execute_callback execute;
    napi_async_complete_callback complete;
    void* data;
};

void Execute(napi_env env, void* data)
{
    const auto* work = static_cast<Work*>(data);
    if (work->data != nullptr) {
        work->execute(env, work->data);
    }
}

void Complete(napi_env env, napi_status status, void* data)
{
    const Work work = *static_cast<Work*>(data);
    delete static_cast<Work*>(data);
    Count("inFlight", -1);
    if (work.data == nullptr) {
        work.execute(env, nullptr);
    }
    work.complete(env, status, work.data);
}

// The fault that is planned for this use of the call; null when there is none.
Json::Value PlannedFault(const CallSite& site)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    const int anyUse = ++g_usesByName[""];
    const int ownUse = ++g_usesByName[site.call];
    for (const Json::Value& fault : g_plan) {
        const std::string name = fault["name"].asString();
        const int uses = name.empty() ? anyUse : ownUse;
        if ((name.empty() || name == site.call) && uses == fault["nth"].asInt()) {
            ++g_counts.at("faults");
            return fault;
        }
    }
    return {};
}

} // namespace

void Count(const char* what, int change)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_counts.at(what) += change;
}

Json::Value PlanFaults(const Json::Value& plan)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_plan = plan;
    g_usesByName.clear();
    g_trace.clear();
    g_counts.at("faults") = 0;
    return {};
}

Json::Value ReadTrace(const Json::Value&)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return g_trace;
}

Json::Value ReadCounts(const Json::Value&)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    Json::Value counts;
    for (const auto& [what, count] : g_counts) {
        counts[what] = count;
    }
    return counts;
}

bool TakeFault(const CallSite& site)
{
    g_fault = PlannedFault(site);
    return !g_fault.isNull();
}

napi_status FaultStatus()
{
    return g_fault.isMember("dataless") ? napi_ok : napi_generic_failure;
}

napi_status Ended(const CallSite& site, napi_status status)
{
    const auto holding = HOLDINGS.find(site.call);
    if (status == napi_ok && holding != HOLDINGS.end()) {
        Count(holding->second.first, holding->second.second);
    }
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (!g_plan.empty()) {
        Json::Value& call = g_trace.append(Json::Value(Json::arrayValue));
        call.append(site.call);
        call.append(status);
        call.append(site.function);
    }
    return status;
}

napi_status Call(const CallSite& site, decltype(&napi_create_async_work) real, napi_env env, napi_value resource,
                 napi_value resourceName, napi_async_execute_callback execute, napi_async_complete_callback complete,
                 void* data, napi_async_work* result)
{
    const bool isFaulty = TakeFault(site);
    const bool isWithoutData = g_fault.isMember("dataless");
    if (isFaulty && !isWithoutData) {
        return Ended(site, napi_generic_failure);
    }
    auto* work = new Work{execute, complete, isWithoutData ? nullptr : data};
    return Ended(site, real(env, resource, resourceName, Execute, Complete, work, result));
}

napi_status Call(const CallSite& site, decltype(&napi_get_last_error_info) real, napi_env env,
                 const napi_extended_error_info** result)
{
    static const napi_extended_error_info injected = {"injected failure", nullptr, 0, napi_generic_failure};
    static const napi_extended_error_info wordless = {nullptr, nullptr, 0, napi_generic_failure};
    if (!PlannedFault(site).isNull()) {
        return Ended(site, napi_generic_failure);
    }
    *result = g_fault.isMember("wordless") ? &wordless : &injected;
    return Ended(site, g_fault.isNull() ? real(env, result) : napi_ok);
}

} // namespace ZelkTest
