// The log service's operations, as JavaScript knows them.
#ifndef TESTING_NATIVE_OPERATION_LIST_H
#define TESTING_NATIVE_OPERATION_LIST_H

#include <node_api.h>

namespace OHOS::Host {

// An array of { method, name, args, answer } in the order of the interface: the name on D-Bus, the name in C++, the
// types of the arguments and of the answer, in words such as "an array of strings".
napi_value MakeOperationList(napi_env env);

} // namespace OHOS::Host

#endif // TESTING_NATIVE_OPERATION_LIST_H
