#pragma once

#include <CommonAPI/logging.h>

#include <sstream>

#include "support/child_process.h"

struct LoggedChild : ChildResult {
    std::string log;  ///< the lines that follow the header, each without its time
};

inline std::string LinesAfterHeader(std::string const& file) {
    std::string const dashes(32, '-');
    std::istringstream lines(file);
    std::string line, result;
    while (std::getline(lines, line))
        result = line == dashes ? "" : result + line.substr(line.find(" - ") == 8 ? 11 : 0) + "\n";
    return result;
}

/// Runs `body` in a process of its own, which logs everything.
inline LoggedChild RunLogged(std::function<void()> const& body) {
    TemporaryFolder const folder;
    ChildResult const child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger(folder.file("log"), &settings, "sample", false);
        body();
    });
    return {child, LinesAfterHeader(ReadFile(folder.file("log")))};
}
