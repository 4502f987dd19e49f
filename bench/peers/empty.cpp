// An addon that does nothing: what loading costs by itself.
#include "addon.h"

BENCH_EXPORT napi_value napi_register_module_v1(napi_env, napi_value exports)
{
    return exports;
}
