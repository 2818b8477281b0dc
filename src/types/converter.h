#ifndef COMMONAPI_TYPES_CONVERTER_H
#define COMMONAPI_TYPES_CONVERTER_H

#include <cstddef>

// The conversion library, whichever it is: the C library's own or GNU libiconv. All that differs
// between them, or from what the rest of the library expects, is in converter.cpp.

namespace CommonAPI::internal {

/// Null before an open; `FailedConverter()` after one that failed.
using Converter = void*;

Converter FailedConverter();

/// Both calls leave the reason of a failure in `errno`.
Converter OpenConverter(char const* to, char const* from);
std::size_t Convert(Converter converter, char const** input, std::size_t* inputLeft, char** output,
                    std::size_t* outputLeft);

/// Does nothing for a null converter.
void CloseConverter(Converter converter);

}  // namespace CommonAPI::internal

#endif
