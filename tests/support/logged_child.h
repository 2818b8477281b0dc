#pragma once

#include <CommonAPI/logging.h>

#include <regex>

#include "support/child_process.h"

struct LoggedChild : ChildResult {
    std::string log;  ///< the lines that follow the header, each without its time
};

inline std::string LinesAfterHeader(std::string const& log) {
    std::string const lines = log.substr(log.rfind("--\n") + 3);
    return std::regex_replace(lines, std::regex("(^|\n)[0-9:]{8} - "), "$1");
}

/// Runs `body` in a process of its own, which logs everything.
inline LoggedChild RunLogged(std::function<void()> const& body) {
    std::FILE* const log = std::tmpfile();
    ChildResult const child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger("/dev/fd/" + std::to_string(fileno(log)), &settings, "sample", false);
        body();
    });
    return {child, LinesAfterHeader(Take(log))};
}
