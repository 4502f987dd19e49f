// HiLog's printing interface, as on the platform. On a desktop the lines go to a file or to standard error; the
// environment variables HILOG_LEVEL and HILOG_FILE choose (see docs/desktop.md).
#ifndef HOST_HILOG_HILOG_LOG_H
#define HOST_HILOG_HILOG_LOG_H

extern "C" {

typedef enum {
    LOG_TYPE_MIN = 0,
    LOG_APP = 0,
    LOG_INIT = 1,
    LOG_CORE = 3,
    LOG_KMSG = 4,
    LOG_ONLY_PRERELEASE = 5,
    LOG_TYPE_MAX,
} LogType;

typedef enum {
    LOG_LEVEL_MIN = 0,
    LOG_DEBUG = 3,
    LOG_INFO = 4,
    LOG_WARN = 5,
    LOG_ERROR = 6,
    LOG_FATAL = 7,
    LOG_LEVEL_MAX,
} LogLevel;

// Writes one line. `fmt` takes printf's conversions, each with a privacy marker after the percent sign; %{public}s,
// %{private}s and a bare %s print their argument alike. %n is not supported: its line is lost. May be called from any
// thread; lines of different threads never mix. A level out of range counts as the nearest one. Returns the number of
// bytes written, 0 for a line below the level in force, -1 for a line that is lost. errno stays as it was.
//
// Clang checks the format by the attribute; GCC warns that it does not know os_log.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat"
__attribute__((visibility("default"))) int HiLogPrint(LogType type, LogLevel level, unsigned int domain,
                                                      const char* tag, const char* fmt, ...)
    __attribute__((__format__(os_log, 5, 6)));
#pragma GCC diagnostic pop
}

#endif // HOST_HILOG_HILOG_LOG_H
