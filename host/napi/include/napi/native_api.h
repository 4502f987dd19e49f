// The platform's Node-API header. On a desktop it is the runtime's own Node-API.
#ifndef HOST_NAPI_NAPI_NATIVE_API_H
#define HOST_NAPI_NAPI_NATIVE_API_H

#include <node_api.h>

#endif // HOST_NAPI_NAPI_NATIVE_API_H
