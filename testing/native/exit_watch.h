// The end of the process, at which nothing may wait for a handler.
#ifndef TESTING_NATIVE_EXIT_WATCH_H
#define TESTING_NATIVE_EXIT_WATCH_H

#include <node_api.h>

namespace OHOS::Host {

// Ends all services as soon as the process exits, whatever its `exit` listeners do: Node.js then waits for its pool and
// runs no JavaScript meanwhile. Does nothing in a worker thread, or when it has already been done in this process.
void WatchExit(napi_env env);

} // namespace OHOS::Host

#endif // TESTING_NATIVE_EXIT_WATCH_H
