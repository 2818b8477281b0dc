#ifndef COMMONAPI_TYPES_STANDARD_STREAMS_H
#define COMMONAPI_TYPES_STANDARD_STREAMS_H

#include <iosfwd>

namespace CommonAPI::internal {

/// `std::cout` and `std::cerr`, made when they are first asked for: for programs that write to
/// neither, that would be a twentieth of their start.
std::ostream& StandardOutput();
std::ostream& StandardError();

}  // namespace CommonAPI::internal

#endif
