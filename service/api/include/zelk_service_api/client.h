// Base of the log service's clients: finds the service.
#ifndef SERVICE_API_ZELK_SERVICE_API_CLIENT_H
#define SERVICE_API_ZELK_SERVICE_API_CLIENT_H

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "host/utils/thread_safety.h"
#include "iremote_object.h"
#include "refbase.h"
#include "zelk_service_api/i_zelk_log_service.h"

namespace OHOS::HiviewDFX {

// The order of the virtual operations is part of the binary interface. All of them may be called from any thread.
class __attribute__((visibility("default"))) Client {
public:
    // The service, or null when it cannot be reached now. Where this looks was decided by the environment variable
    // ZELK_LOG_SERVICE when this library was loaded (see docs/desktop.md).
    virtual sptr<IZelkLogService> GetProxy();

    // Calls the stored callbacks in the order of their names. Nothing else is needed, because every GetProxy looks for
    // the service anew. Not called on a desktop.
    virtual void OnRemoteDied(const wptr<IRemoteObject>& remote);

    virtual ~Client() = default;

    // Stores a copy of `callback` under `name` for OnRemoteDied, replacing an earlier one of that name.
    virtual void RegisterRemotedDied(std::string name, std::function<void()>& callback);

private:
    using Callbacks = std::map<std::string, std::function<void()>>;

    std::mutex mutex_; // Not held while a callback runs.
    Callbacks callbacks_ ZELK_GUARDED_BY(mutex_);
};

} // namespace OHOS::HiviewDFX

#endif // SERVICE_API_ZELK_SERVICE_API_CLIENT_H
