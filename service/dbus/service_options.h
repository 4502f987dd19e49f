// The command line of zelk-log-service.
#ifndef SERVICE_DBUS_SERVICE_OPTIONS_H
#define SERVICE_DBUS_SERVICE_OPTIONS_H

#include <string>
#include <vector>

namespace OHOS::Host {

struct ServiceOptions {
    // "session", "system", or an address.
    std::string bus = "session";
    bool verbose = false;
    bool help = false;
};

constexpr const char* SERVICE_USAGE = R"(Usage: zelk-log-service [OPTION]...
Serve the log service as dev.zelk.LogService on D-Bus, until SIGTERM or SIGINT.

  --session        on the session bus (default)
  --system         on the system bus
  --address ADDR   on the bus at ADDR, such as unix:path=/run/x
  --verbose        write each call and its code to standard error
  --help           show this text and end

Exit status: 0 after SIGTERM, SIGINT or --help; 1 when the bus cannot be reached, is lost, or has such a service
already, or when another process takes the name; 2 for a wrong command line.
)";

// Reads the words of the command line, without the program's own name. If they are wrong, `error` says why; if several
// buses are given, the last one counts.
ServiceOptions ParseServiceOptions(const std::vector<std::string>& words, std::string& error);

} // namespace OHOS::Host

#endif // SERVICE_DBUS_SERVICE_OPTIONS_H
