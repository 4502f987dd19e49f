// What the peers share: the entry of an addon.
#ifndef BENCH_PEERS_ADDON_H
#define BENCH_PEERS_ADDON_H

#include <node_api.h>

#define BENCH_EXPORT extern "C" __attribute__((visibility("default")))

// Puts a function on the addon's exports.
inline void Export(napi_env env, napi_value exports, const char* name, napi_callback function)
{
    napi_value value = nullptr;
    napi_create_function(env, name, NAPI_AUTO_LENGTH, function, nullptr, &value);
    napi_set_named_property(env, exports, name, value);
}

template <size_t N>
void ReadArguments(napi_env env, napi_callback_info info, napi_value (&values)[N])
{
    size_t count = N;
    napi_get_cb_info(env, info, &count, values, nullptr, nullptr);
}

#endif // BENCH_PEERS_ADDON_H
