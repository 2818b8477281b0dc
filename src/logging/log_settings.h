#ifndef COMMONAPI_LOGGING_LOG_SETTINGS_H
#define COMMONAPI_LOGGING_LOG_SETTINGS_H

#include <CommonAPI/attribute_map.h>

#include <string_view>

// The settings and thresholds of the last initialisation. They are never destroyed: code that ends
// after the library may still log.

namespace CommonAPI::internal {

/// As a threshold: nothing passes.
inline constexpr int logOff = 5;

/// Takes a copy.
void SetLogSettings(AttributeMap const& settings);

/// The copy; without entries before the first one.
AttributeMap& LogSettings();

/// The threshold of modules that have no setting.
void SetGlobalLogThreshold(int threshold);

/// No message above this level passes any threshold.
extern int highestLogThreshold;

/// Whether a message of `level` passes the threshold of its module.
bool PassesLogThreshold(int level, std::string_view module);

}  // namespace CommonAPI::internal

#endif
