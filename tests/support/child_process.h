#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

struct ChildResult {
    int status;  ///< exit status, or the negative number of the signal that ended the process
    std::string output;
    std::string errors;
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
    std::FILE* const output = std::tmpfile();
    std::FILE* const errors = std::tmpfile();
    pid_t const child = fork();
    if (child == 0) {
        dup2(fileno(output), STDOUT_FILENO);
        dup2(fileno(errors), STDERR_FILENO);
        fcntl(STDOUT_FILENO, F_SETFL, O_APPEND);  // after a log that is opened by name
        body();
        std::exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(child, &status, 0);
    status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return {status, Take(output), Take(errors)};
}
