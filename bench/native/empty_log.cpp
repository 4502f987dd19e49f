#include "empty_log.h"

int EmptyLogPrint(LogType, LogLevel, unsigned int, const char*, const char*, ...)
{
    return 0;
}
