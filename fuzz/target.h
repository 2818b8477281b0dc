#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
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

#ifdef REPLAY  // each file of a folder
int main(int, char** arguments) {
    for (auto const& file : std::filesystem::directory_iterator(arguments[1])) {
        std::cerr << file.path() << std::endl;  // the last one shown is the one that fails
        Try(ReadFile(file.path()));
    }
}
#else
extern "C" int LLVMFuzzerTestOneInput(char const* data, std::size_t size) {
    Try({data, size});
    return 0;
}
#endif
