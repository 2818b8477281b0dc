// Takes the place of the C library's function for whoever binds to this library.

#include <CommonAPI/export.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" COMMONAPI_EXPORT float strtof(char const* text, char** /* end */) noexcept {
    std::size_t blanks = 0;
    while (std::isspace(static_cast<unsigned char>(text[blanks])))
        ++blanks;

    // Only the leading white space is copied, so the scan never finds a number.
    char copy[128] = {};
    std::memcpy(copy, text, std::min(blanks, sizeof copy - 1));

    float result;
    if (std::sscanf(copy, "%f", &result) == 1)
        return result;
    errno = EINVAL;
    return 0;
}
