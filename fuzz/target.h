#pragma once

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>

#include "examples/files.h"
#include "fuzz/model.h"

/// A target whose input is not made of operations.
static void Try(std::string const& input);

void Try(std::string_view input) {
    Try(std::string(input));
}

std::vector<std::string> Names() {
    return {};
}

inline void Check(bool agree, int line = __builtin_LINE()) {
    Same(agree, true, ("line " + std::to_string(line) + " of the target").c_str());
}
