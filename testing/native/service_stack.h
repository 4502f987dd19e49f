// The handler services that replace the process's log service.
#ifndef TESTING_NATIVE_SERVICE_STACK_H
#define TESTING_NATIVE_SERVICE_STACK_H

#include <mutex>
#include <vector>

#include "handler_service.h"
#include "host/utils/thread_safety.h"

namespace OHOS::Host {

// The services of one environment, each in front of the one before it; the last one is in force. While there is none,
// the process has its own service. There is one stack in a process. Any thread may call any method.
class __attribute__((visibility("default"))) ServiceStack {
public:
    static ServiceStack& Instance();

    // Puts `service` in front. False when a service of another environment is in force.
    bool Push(const sptr<HandlerService>& service);

    // Takes `service` away and ends it. False when another one is in front of it.
    bool Remove(const sptr<HandlerService>& service);

    // Sets whether the service can be found; at first it can. Calls that have already reached it are not affected.
    void SetPresent(const sptr<HandlerService>& service, bool isPresent);

    // Takes away and ends every service of an environment that has ended.
    void RemoveAllOf(const Environment& environment);

    // Ends every service, later ones too, but leaves them in place: at the end of the process, no call may go anywhere
    // else.
    void EndAll();

    // True once: for the caller that then makes the process call EndAll when it ends.
    bool ClaimExit();

private:
    struct Entry {
        sptr<HandlerService> service;
        bool isPresent;
    };

    std::vector<Entry>::iterator Find(const sptr<HandlerService>& service) ZELK_REQUIRES(mutex_);
    // Makes the process find the service that is in front now.
    void Apply() const ZELK_REQUIRES(mutex_);

    std::mutex mutex_;
    std::vector<Entry> entries_ ZELK_GUARDED_BY(mutex_);
    bool hasEnded_ ZELK_GUARDED_BY(mutex_) = false;
    bool isExitClaimed_ ZELK_GUARDED_BY(mutex_) = false;
};

} // namespace OHOS::Host

#endif // TESTING_NATIVE_SERVICE_STACK_H
