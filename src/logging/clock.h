#ifndef COMMONAPI_LOGGING_CLOCK_H
#define COMMONAPI_LOGGING_CLOCK_H

#include <string_view>

namespace CommonAPI::internal {

/// The local time by the clock, as `strftime` formats it; kept until the next call.
std::string_view CurrentTime(char const* format);

}  // namespace CommonAPI::internal

#endif
