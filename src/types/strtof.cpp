// Takes the place of the C library's function for whoever binds to this library.

#include <CommonAPI/export.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>

// Under a name of its own for the compiler: C libraries differ in how they declare the other one.
extern "C" COMMONAPI_EXPORT float CommonAPIStrtof(char const* text, char** end) __asm__("strtof");

extern "C" float CommonAPIStrtof(char const* text, char** /* end */) {
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
