#pragma once

#include <CommonAPI/logging.h>

#include <sstream>

#include "support/child_process.h"

struct LoggedChild : ChildResult {
    std::string log;  ///< what stands between the header and the closing line, without times
};

/// The lines of a log file that follow the header, each without its time.
inline std::string LinesAfterHeader(std::string const& file) {
    std::string const dashes(32, '-');
    std::size_t const header = file.rfind(dashes + "\n");
    std::istringstream lines(header == std::string::npos ? file
                                                         : file.substr(header + dashes.size() + 1));
    std::string const separator = " - ";
    std::size_t const timeSize = 8;
    std::string result;
    for (std::string line; std::getline(lines, line); result += line + "\n")
        if (line.size() > timeSize && line.compare(timeSize, separator.size(), separator) == 0)
            line.erase(0, timeSize + separator.size());
    return result;
}

/// Runs `body` in a process of its own, which logs everything.
inline LoggedChild RunLogged(std::function<void()> const& body) {
    TemporaryFolder const folder;
    std::string const path = folder.file("log");
    ChildResult const child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        if (!InitializeLogger(path, &settings, "sample", false))
            std::_Exit(EXIT_FAILURE);
        body();
    });
    return {child, LinesAfterHeader(ReadFile(path))};
}
