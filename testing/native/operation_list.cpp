#include "operation_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "js_value.h"
#include "service/api/operations.h"
#include "service/api/proxy_source.h"

namespace OHOS::Host {

namespace {

const char* NameOf(Type type)
{
    switch (type) {
    case Type::BOOL:
        return "a boolean";
    case Type::INT64:
        return "a bigint";
    case Type::TEXT:
        return "a string";
    case Type::TEXTS:
        return "an array of strings";
    case Type::NOTHING:
        break;
    }
    return "nothing";
}

void Set(napi_env env, napi_value object, const char* name, const char* text)
{
    napi_set_named_property(env, object, name, ToJs(env, std::string(text)));
}

// One request on its way. Made and destroyed on the JavaScript thread; a worker writes the results meanwhile.
struct Asking {
    napi_async_work work = nullptr;
    napi_ref callback = nullptr;
    const Operation* operation; // Null where only the log service is looked for.
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

napi_value MakeOperationList(napi_env env)
{
    napi_value list = nullptr;
    napi_create_array_with_length(env, OPERATIONS.size(), &list);
    uint32_t index = 0;
    for (const Operation& operation : OPERATIONS) {
        napi_value row = nullptr;
        napi_create_object(env, &row);
        Set(env, row, "method", operation.method);
        Set(env, row, "name", operation.name);
        Texts types;
        for (const Type type : operation.arguments) {
            if (type != Type::NOTHING) {
                types.emplace_back(NameOf(type));
            }
        }
        napi_set_named_property(env, row, "args", ToJs(env, Value(types)));
        Set(env, row, "answer", NameOf(operation.answer));
        napi_set_element(env, list, index++, row);
    }
    return list;
}

napi_value Request(napi_env env, napi_callback_info info)
{
    std::array<napi_value, 2 + MOST_ARGUMENTS> given{};
    size_t count = given.size();
    napi_get_cb_info(env, info, &count, given.data(), nullptr, nullptr);
    uint32_t index = 0;
    const bool isCall = napi_get_value_uint32(env, given[0], &index) == napi_ok;
    std::unique_ptr<Asking> asking(
        new Asking{nullptr, nullptr, isCall ? &OPERATIONS.at(index) : nullptr, {}, false, {}, {}});
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
