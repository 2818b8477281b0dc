#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>

#include "examples/files.h"

/// Each target puts the input through the library and through a model of it.
static void Try(std::string const& input);

inline void Check(bool agree, int line = __builtin_LINE()) {
    if (agree)
        return;
    std::cerr << "line " << line << " of the target: library and model disagree" << std::endl;
    std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    Try({reinterpret_cast<char const*>(data), size});
    return 0;
}
