#include "dbus_library.h"

#include <dlfcn.h>

namespace OHOS::Host {

namespace {

constexpr const char* LIBRARY = "libzelk_dbus-" ZELK_VERSION ".so";

// The folder, with its slash, of the library that contains this code.
std::string OwnFolder()
{
    static const char inThisLibrary = 0;
    Dl_info info = {};
    if (dladdr(&inThisLibrary, &info) == 0) {
        return {};
    }
    const std::string file = info.dli_fname;
    return file.substr(0, file.rfind('/') + 1);
}

std::string LoaderError()
{
    const char* error = dlerror(); // NOLINT(concurrency-mt-unsafe): the C library keeps it per thread.
    return error == nullptr ? "unknown error" : error;
}

} // namespace

ProxySource OpenDbusLibrary(const std::string& address, void (*onInvalid)(), std::string& error)
{
    void* library = dlopen((OwnFolder() + LIBRARY).c_str(), RTLD_NOW | RTLD_LOCAL);
    void* symbol = library == nullptr ? nullptr : dlsym(library, DBUS_SOURCE_FUNCTION);
    if (symbol == nullptr) {
        error = "cannot open " + std::string(LIBRARY) + " (" + LoaderError() + ")";
        return {};
    }
    ProxySource source;
    reinterpret_cast<DbusSourceFunction>(symbol)(address, onInvalid, source);
    if (!source) {
        error = "memory is short";
    }
    return source;
}

} // namespace OHOS::Host
