#pragma once

#include <CommonAPI/logging.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>

inline std::string const closingLine = "Terminating logging facility\n";

struct ChildResult {
    int status;  ///< exit status, or the negative number of the signal that ended the process
    std::string output, errors;
    std::string log = "";  ///< the lines that follow the header, each without its time
};

/// All that is in a file, which ends if it is a temporary one.
inline std::string Take(std::FILE* file) {
    std::ifstream stream("/dev/fd/" + std::to_string(fileno(file)));
    std::string const content(std::istreambuf_iterator<char>(stream), {});
    std::fclose(file);
    return content;
}

/// Runs `body` and a normal exit in a process of its own.
inline ChildResult RunInChild(std::function<void()> const& body) {
    std::FILE *const output = std::tmpfile(), *const errors = std::tmpfile();
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        dup2(fileno(output), STDOUT_FILENO), dup2(fileno(errors), STDERR_FILENO);
        fcntl(STDOUT_FILENO, F_SETFL, O_APPEND);  // after a log that is opened by name
        body();
        std::exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), Take(output),
            Take(errors)};
}

inline std::string LinesAfterHeader(std::string const& log) {
    std::istringstream lines(log.substr(log.rfind("--\n") + 3));
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += line.substr(line.find(" - ") == 8 ? 11 : 0) + "\n";
    return result;
}

inline int loggedFile;  ///< a descriptor of the log, apart from the logger's

/// Runs `body` in a process of its own, which logs everything.
inline ChildResult RunLogged(std::function<void()> const& body) {
    std::FILE* const log = std::tmpfile();
    loggedFile = fileno(log);
    ChildResult child = RunInChild([&] {
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger("/dev/fd/" + std::to_string(loggedFile), &settings, "sample", false);
        body();
    });
    child.log = LinesAfterHeader(Take(log));
    return child;
}
