#ifndef COMMONAPI_LOGGING_LOGGER_STATE_H
#define COMMONAPI_LOGGING_LOGGER_STATE_H

#include <CommonAPI/attribute_map.h>

#include <string>
#include <string_view>

namespace CommonAPI::internal {

/// The logger's copy of the settings of the last initialisation that gave any.
AttributeMap& LoggerSettings();

/// Writes to the open log file, with one write.
void WriteToLog(std::string_view text);

/// From here on the process is ending in a signal's handler. Lines take their time from
/// `TimeOfDayInSignal`, which waits for no lock: the interrupted code may hold it.
void EnterSignalContext();

/// The local time by the clock, as `strftime` formats it; kept until the next call.
std::string_view CurrentTime(char const* format);

/// The local time of day as "%X" formats it, by the clock's offset when the time was last asked
/// for. The C library's conversion would take a lock, and memory.
std::string_view TimeOfDayInSignal();

}  // namespace CommonAPI::internal

#endif
