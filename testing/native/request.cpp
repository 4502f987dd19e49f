#include "request.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "js_value.h"
#include "service/api/operations.h"
#include "service/api/proxy_source.h"

namespace OHOS::Host {

namespace {

// One request on its way. Made and destroyed on the JavaScript thread; a worker writes the results meanwhile.
struct Asking {
    napi_async_work work = nullptr;
    napi_ref callback = nullptr;
    const Operation* operation = nullptr; // Null where only the log service is looked for.
    ArgumentValues arguments;

    bool isFound = false;
    std::string whyNot;
    Outcome outcome;
};

Arguments PointersTo(const ArgumentValues& values)
{
    const auto pointerTo = [](const auto& value) -> Argument {
        if constexpr (std::is_same_v<decltype(value), const Nothing&>) {
            return value;
        } else {
            return &value;
        }
    };
    Arguments arguments;
    std::transform(values.begin(), values.end(), arguments.begin(),
                   [&pointerTo](const Value& value) { return std::visit(pointerTo, value); });
    return arguments;
}

void Ask(napi_env /*env*/, void* data)
{
    auto& asking = *static_cast<Asking*>(data);
    try {
        const sptr<LogService> service = FindLogService(asking.whyNot);
        asking.isFound = service != nullptr;
        if (asking.isFound && asking.operation != nullptr) {
            asking.outcome = service->Call(*asking.operation, PointersTo(asking.arguments));
        }
    } catch (const std::bad_alloc&) {
        asking.isFound = false;
        asking.whyNot = "out of memory";
    }
}

std::vector<napi_value> Results(napi_env env, const Asking& asking)
{
    if (!asking.isFound) {
        return {ToJs(env, asking.whyNot)};
    }
    napi_value code = nullptr;
    napi_create_int32(env, asking.outcome.code, &code);
    std::vector<napi_value> results = {ToJs(env, Nothing()), code, ToJs(env, asking.outcome.answer)};
    if (const std::optional<BreakOff>& why = asking.outcome.why) {
        for (const std::string& text : {why->text, why->error, why->received, why->expected}) {
            results.push_back(ToJs(env, text));
        }
    }
    return results;
}

void Finish(napi_env env, napi_status /*status*/, void* data)
{
    const std::unique_ptr<Asking> asking(static_cast<Asking*>(data));
    napi_value callback = nullptr;
    napi_get_reference_value(env, asking->callback, &callback);
    napi_delete_reference(env, asking->callback);
    napi_delete_async_work(env, asking->work);
    const std::vector<napi_value> results = Results(env, *asking);
    napi_call_function(env, ToJs(env, Nothing()), callback, results.size(), results.data(), nullptr);
}

} // namespace

napi_value Request(napi_env env, napi_callback_info info)
{
    const auto given = ReadArguments<2 + MOST_ARGUMENTS>(env, info);
    auto asking = std::make_unique<Asking>();
    uint32_t index = 0;
    if (napi_get_value_uint32(env, given[0], &index) == napi_ok) {
        asking->operation = &OPERATIONS.at(index);
    }
    for (size_t i = 0; i < MOST_ARGUMENTS; ++i) {
        asking->arguments[i] = FromJs(env, given[2 + i]);
    }
    napi_create_reference(env, given[1], 1, &asking->callback);
    napi_create_async_work(env, nullptr, ToJs(env, std::string("zelklogservice/testing")), Ask, Finish, asking.get(),
                           &asking->work);
    if (napi_queue_async_work(env, asking->work) == napi_ok) {
        static_cast<void>(asking.release());
    }
    return nullptr;
}

} // namespace OHOS::Host
