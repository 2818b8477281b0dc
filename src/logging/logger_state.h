#ifndef COMMONAPI_LOGGING_LOGGER_STATE_H
#define COMMONAPI_LOGGING_LOGGER_STATE_H

#include <CommonAPI/attribute_map.h>

#include <string_view>

namespace CommonAPI::internal {

/// The logger's copy of the settings of the last initialisation that gave any.
AttributeMap& LoggerSettings();

/// Writes to the open log file with one write, and flushes.
void WriteToLog(std::string_view text);

}  // namespace CommonAPI::internal

#endif
