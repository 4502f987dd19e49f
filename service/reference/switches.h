// What a log service has switched on.
#ifndef SERVICE_REFERENCE_SWITCHES_H
#define SERVICE_REFERENCE_SWITCHES_H

namespace OHOS::Host {

struct Switches {
    bool modemLog = false;
    bool tcpdump = false;
    bool bluetoothCallPcmLog = false;
};

} // namespace OHOS::Host

#endif // SERVICE_REFERENCE_SWITCHES_H
