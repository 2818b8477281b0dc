#ifndef COMMONAPI_LOGGING_LOGGER_STATE_H
#define COMMONAPI_LOGGING_LOGGER_STATE_H

#include <CommonAPI/attribute_map.h>

#include <string>
#include <string_view>

namespace CommonAPI::internal {

/// The logger's copy of the settings of the last initialisation that gave any.
AttributeMap& LoggerSettings();

/// Writes to the open log file with one write, and flushes.
void WriteToLog(std::string_view text);

/// From here on the process is ending in a signal's handler. Lines wait neither for the lock of the
/// log's stream nor, by `GetTimeOfDayInSignal`, for that of the time: the interrupted code may hold
/// them.
void EnterSignalContext();

/// The local time of day as "%X" formats it, by the clock's offset when `GetCurrentTime` was last
/// called. The C library's conversion would take a lock, and memory.
void GetTimeOfDayInSignal(std::string& out);

}  // namespace CommonAPI::internal

#endif
