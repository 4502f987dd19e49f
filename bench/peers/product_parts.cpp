// Not a peer but the product's own parts, called from JavaScript without the call around them.
#include <ctime>
#include <malloc.h>
#include <string>

#include "addon.h"
#include "config/json_to_object.h"

namespace {

// convertReply(text, object)
napi_value ConvertReply(napi_env env, napi_callback_info info)
{
    napi_value arguments[2] = {};
    ReadArguments(env, info, arguments);
    size_t length = 0;
    napi_get_value_string_utf8(env, arguments[0], nullptr, 0, &length);
    std::string text(length, '\0');
    napi_get_value_string_utf8(env, arguments[0], text.data(), length + 1, &length);
    OHOS::HiviewDFX::ConvertJsonToObject(env, text, arguments[1]);
    return nullptr;
}

// The bytes that the process's C and C++ code has allocated and not freed.
napi_value AllocatedBytes(napi_env env, napi_callback_info)
{
    const struct mallinfo2 info = mallinfo2();
    napi_value value = nullptr;
    napi_create_int64(env, static_cast<int64_t>(info.uordblks + info.hblkhd), &value);
    return value;
}

// The time that this thread has run: waiting for a processor does not count.
napi_value ThreadNanoseconds(napi_env env, napi_callback_info)
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    napi_value value = nullptr;
    napi_create_double(env, static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec), &value);
    return value;
}

} // namespace

BENCH_EXPORT napi_value napi_register_module_v1(napi_env env, napi_value exports)
{
    Export(env, exports, "convertReply", ConvertReply);
    Export(env, exports, "allocatedBytes", AllocatedBytes);
    Export(env, exports, "threadNanoseconds", ThreadNanoseconds);
    return exports;
}
