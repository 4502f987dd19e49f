// A request of the log service, without the module.
#ifndef TESTING_NATIVE_REQUEST_H
#define TESTING_NATIVE_REQUEST_H

#include <node_api.h>

namespace OHOS::Host {

// Makes a request of the log service on a worker thread: request(index, callback, ...args), with the operation's index
// in the list and arguments of its types. Without an index it only looks for the log service. Later calls one of
//
//   callback(whyNot)                     there is no log service
//   callback(undefined, code, answer)
//   callback(undefined, code, undefined, text, error, received, expected)    a call over D-Bus broke off
napi_value Request(napi_env env, napi_callback_info info);

} // namespace OHOS::Host

#endif // TESTING_NATIVE_REQUEST_H
