#ifndef COMMONAPI_TYPES_CONVERTER_H
#define COMMONAPI_TYPES_CONVERTER_H

#include <iconv.h>

#include <cstddef>

// The conversion library, whichever it is: the C library's own or GNU libiconv. All that differs
// between them, or from what the rest of the library expects, is here.

namespace CommonAPI::internal {

using Converter = void*;

/// What an open that failed yields.
inline Converter FailedConverter() {
    return reinterpret_cast<Converter>(-1);  // by definition of `iconv_open`
}

/// Leaves the reason of a failure in `errno`, as `Convert` does.
inline Converter OpenConverter(char const* to, char const* from) {
    return iconv_open(to, from);
}

/// Calls `iconv`, which is declared with or without const, though the input is only read.
template <class Input>
std::size_t CallWithItsConst(std::size_t (*function)(iconv_t, Input**, std::size_t*, char**,
                                                     std::size_t*),
                             Converter converter, char const** input, std::size_t* inputLeft,
                             char** output, std::size_t* outputLeft) {
    return function(static_cast<iconv_t>(converter), const_cast<Input**>(input), inputLeft, output,
                    outputLeft);
}

/// -1 for a failure.
inline int Convert(Converter converter, char const** input, std::size_t* inputLeft, char** output,
                   std::size_t* outputLeft) {
    return static_cast<int>(
        CallWithItsConst(iconv, converter, input, inputLeft, output, outputLeft));
}

/// Does nothing for a null converter.
inline void CloseConverter(Converter converter) {
    if (converter)  // GNU libiconv allows null, the C library crashes on it
        iconv_close(static_cast<iconv_t>(converter));
}

}  // namespace CommonAPI::internal

#endif
