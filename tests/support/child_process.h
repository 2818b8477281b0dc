#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>

#include "support/temporary_folder.h"

struct ChildResult {
    int status;  ///< exit status, or the negative number of the signal that ended the process
    std::string output;
    std::string errors;
};

/// Runs `body` and a normal exit in a process of its own.
inline ChildResult RunInChild(std::function<void()> const& body) {
    TemporaryFolder const folder;
    auto const redirect = [&](int descriptor, char const* name) {
        dup2(open(folder.file(name).c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), descriptor);
    };
    pid_t const child = fork();
    if (child == 0) {
        redirect(STDOUT_FILENO, "output");
        redirect(STDERR_FILENO, "errors");
        body();
        std::exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
            ReadFile(folder.file("output")), ReadFile(folder.file("errors"))};
}
