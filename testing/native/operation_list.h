// The log service's operations, as JavaScript knows them.
#ifndef TESTING_NATIVE_OPERATION_LIST_H
#define TESTING_NATIVE_OPERATION_LIST_H

#include <node_api.h>

namespace OHOS::Host {

// An array of { method, name, args, answer } in the order of the interface: the name on D-Bus, the name in C++, the
// types of the arguments and of the answer, in words such as "an array of strings".
napi_value MakeOperationList(napi_env env);

// Makes a request of the log service on a worker thread: request(index, callback, ...args), with the operation's index
// in the list and arguments of its types. Without an index it only looks for the log service. Later calls one of
//
//   callback(whyNot)                     there is no log service
//   callback(undefined, code, answer)
//   callback(undefined, code, undefined, text, error, received, expected)    a call over D-Bus broke off
napi_value Request(napi_env env, napi_callback_info info);

} // namespace OHOS::Host

#endif // TESTING_NATIVE_OPERATION_LIST_H
