#pragma once

#include <CommonAPI/logging.h>

#include <sstream>

#include "support/child_process.h"

struct LoggedChild : ChildResult {
    std::string log;  ///< the lines that follow the header, each without its time
};

inline std::string LinesAfterHeader(std::string const& log) {
    std::istringstream lines(log.substr(log.rfind("--\n") + 3));
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += line.substr(line.find(" - ") == 8 ? 11 : 0) + "\n";
    return result;
}

inline int loggedFile;  ///< a descriptor of the log, apart from the logger's

/// Runs `body` in a process of its own, which logs everything.
inline LoggedChild RunLogged(std::function<void()> const& body) {
    std::FILE* const log = std::tmpfile();
    loggedFile = fileno(log);
    ChildResult const child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger("/dev/fd/" + std::to_string(fileno(log)), &settings, "sample", false);
        body();
    });
    return {child, LinesAfterHeader(Take(log))};
}
