// The plan of Node-API calls that are to fail.
#include "faults.h"

#include <map>
#include <mutex>
#include <string>

#include "control.h"

namespace ZelkTest {

namespace {

std::mutex g_mutex;
Json::Value g_plan;                      // [{"name": "" for any, "nth": 1.., "status": ..}, ..]
std::map<std::string, int> g_usesByName; // Since the plan was made; "" counts all.
Json::Value g_trace(Json::arrayValue);

} // namespace

Counts& TheCounts()
{
    static Counts counts;
    return counts;
}

void SetFaults(const Json::Value& plan)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_plan = plan;
    g_usesByName.clear();
    g_trace.clear();
    TheCounts().calls = 0;
    TheCounts().faults = 0;
}

Json::Value ReadTrace()
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    return g_trace;
}

napi_status Traced(const char* function, napi_status status)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    if (!g_plan.empty()) {
        Json::Value& call = g_trace.append(Json::Value(Json::arrayValue));
        call.append(function);
        call.append(status);
    }
    return status;
}

bool TakeFault(const char* function, napi_status* status)
{
    const std::lock_guard<std::mutex> lock(g_mutex);
    TheCounts().calls++;
    const int anyUse = ++g_usesByName[""];
    const int ownUse = ++g_usesByName[function];
    for (const Json::Value& fault : g_plan) {
        const std::string name = fault["name"].asString();
        const int uses = name.empty() ? anyUse : ownUse;
        if ((name.empty() || name == function) && uses == fault["nth"].asInt()) {
            TheCounts().faults++;
            *status = static_cast<napi_status>(fault.get("status", napi_generic_failure).asInt());
            return true;
        }
    }
    return false;
}

} // namespace ZelkTest
