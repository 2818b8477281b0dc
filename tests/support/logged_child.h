#pragma once

#include <CommonAPI/logging.h>

#include <regex>

#include "support/child_process.h"

struct LoggedChild : ChildResult {
    std::string log;  ///< what stands between the header and the closing line, without times
};

/// The lines of a log file that follow the header, each without its time.
inline std::string LinesAfterHeader(std::string const& file) {
    std::string const dashes(32, '-');
    std::size_t const header = file.rfind(dashes + "\n");
    std::string const lines =
        header == std::string::npos ? file : file.substr(header + dashes.size() + 1);
    return std::regex_replace(lines, std::regex("(^|\n)[0-9]{2}:[0-9]{2}:[0-9]{2} - "), "$1");
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
