// Runs code in processes of its own, and shows what they wrote.
#ifndef COMMONAPI_TESTS_SUPPORT_CHILD_PROCESS_H
#define COMMONAPI_TESTS_SUPPORT_CHILD_PROCESS_H

#include <CommonAPI/logging.h>
#include <gmock/gmock.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>

inline std::string const closingLine = "Terminating logging facility\n";

struct ChildResult {
    int status;  ///< exit status, or the negative number of the signal that ended the process
    std::string output;
    std::string errors;
    std::string log;  ///< as the errors, without a header and the times of lines
};

inline std::string logPath;  ///< of the log of the present child process

inline std::string ContentOf(std::string const& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What follows the header of a log, or all of a text without one, without the times of the lines.
inline std::string LinesAfterHeader(std::string const& log) {
    std::string const end = std::string(32, '-') + "\n";
    std::size_t const header = log.rfind(end);
    std::istringstream lines(header == std::string::npos ? log : log.substr(header + end.size()));
    std::string result;
    for (std::string line; std::getline(lines, line);)
        result += line.substr(line.find(" - ") == 8 ? 11 : 0) + (lines.eof() ? "" : "\n");
    return result;
}

struct TemporaryFile {
    std::shared_ptr<std::FILE> file{std::tmpfile(), std::fclose};
    int descriptor = fileno(file.get());
    std::string path = "/dev/fd/" + std::to_string(descriptor);
};

/// Runs `body` and a normal exit in a process of its own. What it expects in vain fails the test.
[[nodiscard]] inline ChildResult RunInChild(std::function<void()> const& body) {
    constexpr itimerval limit = {{0, 0}, {60, 0}};
    constexpr int expectedInVain = 99;
    bool const failedBefore = testing::Test::HasFailure();
    TemporaryFile const output;
    TemporaryFile const errors;
    TemporaryFile const log;
    logPath = log.path;
    std::cout.flush();
    std::fflush(nullptr);
    pid_t const child = fork();
    if (child == 0) {
        setitimer(ITIMER_REAL, &limit, nullptr);
        dup2(output.descriptor, STDOUT_FILENO);
        dup2(errors.descriptor, STDERR_FILENO);
        body();
        std::exit(testing::Test::HasFailure() && !failedBefore ? expectedInVain : EXIT_SUCCESS);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    EXPECT_NE(status, -SIGALRM) << "the child process hung for " << limit.it_value.tv_sec << " s";
    EXPECT_NE(status, expectedInVain) << ContentOf(output.path);
    return {status, ContentOf(output.path), LinesAfterHeader(ContentOf(errors.path)),
            LinesAfterHeader(ContentOf(log.path))};
}

/// For a `body` that tells all by its own expectations.
inline void ExpectInChild(std::function<void()> const& body) {
    ChildResult const child = RunInChild([&] {
        body();
        std::cout << "at its end";
    });
    EXPECT_EQ(child.output, "at its end");
    EXPECT_EQ(child.status, EXIT_SUCCESS) << child.errors;
}

using Levels = std::map<std::string, std::string>;  ///< by module

inline bool OpenLog(std::string const& path, Levels const& levels, bool redirectStderr = false) {
    AttributeMap settings;
    for (auto const& [module, level] : levels)
        settings[module] = level.c_str();
    return InitializeLogger(path, &settings, "sample", redirectStderr);
}

/// Runs `body` in a process of its own, which logs everything.
[[nodiscard]] inline ChildResult RunLogged(std::function<void()> const& body) {
    return RunInChild([&] {
        OpenLog(logPath, {{"Global", "4"}});
        body();
    });
}

#endif
