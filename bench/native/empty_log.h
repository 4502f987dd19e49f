// A variadic function with the interface of HiLogPrint that does nothing.
#ifndef BENCH_NATIVE_EMPTY_LOG_H
#define BENCH_NATIVE_EMPTY_LOG_H

#include "hilog/log.h"

int EmptyLogPrint(LogType type, LogLevel level, unsigned int domain, const char* tag, const char* format, ...);

#endif // BENCH_NATIVE_EMPTY_LOG_H
