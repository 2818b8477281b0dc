#include "types/converter.h"

#include <iconv.h>

namespace CommonAPI::internal {

Converter FailedConverter() {
    return reinterpret_cast<Converter>(-1);  // the value that `iconv_open` is defined to return
}

Converter OpenConverter(char const* to, char const* from) {
    return iconv_open(to, from);
}

std::size_t Convert(Converter converter, char const** input, std::size_t* inputLeft, char** output,
                    std::size_t* outputLeft) {
    // Declared without const, though the input is only read.
    return iconv(static_cast<iconv_t>(converter), const_cast<char**>(input), inputLeft, output,
                 outputLeft);
}

void CloseConverter(Converter converter) {
    if (converter)  // GNU libiconv allows null, the C library crashes on it
        iconv_close(static_cast<iconv_t>(converter));
}

}  // namespace CommonAPI::internal
