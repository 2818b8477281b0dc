#include "types/standard_streams.h"

#include <ostream>

#if defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE < 13
namespace std {  // as <iostream> has them, which makes the streams wherever it is included
extern ostream cout;
extern ostream cerr;
}  // namespace std
#else
#include <iostream>
#endif

namespace CommonAPI::internal {
namespace {

std::ostream& Made(std::ostream& stream) {
    static std::ios_base::Init const streams;
    return stream;
}

}  // namespace

std::ostream& StandardOutput() {
    return Made(std::cout);
}

std::ostream& StandardError() {
    return Made(std::cerr);
}

}  // namespace CommonAPI::internal
