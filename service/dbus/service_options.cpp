#include "service_options.h"

namespace OHOS::Host {

ServiceOptions ParseServiceOptions(const std::vector<std::string>& words, std::string& error)
{
    static const std::string ADDRESS = "--address";
    ServiceOptions options;
    for (size_t index = 0; index < words.size(); ++index) {
        const std::string& word = words[index];
        if (word == "--session" || word == "--system") {
            options.bus = word.substr(2);
        } else if (word == ADDRESS && index + 1 < words.size()) {
            options.bus = words[++index];
        } else if (word.substr(0, ADDRESS.size() + 1) == ADDRESS + "=") {
            options.bus = word.substr(ADDRESS.size() + 1);
        } else if (word == "--verbose") {
            options.verbose = true;
        } else if (word == "--help") {
            options.help = true;
        } else {
            error = word == ADDRESS ? "--address needs an address" : "unknown option " + word;
            return options;
        }
    }
    return options;
}

} // namespace OHOS::Host
