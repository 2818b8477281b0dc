#include "logging/log_file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace {

FILE* logFile = nullptr;

}  // namespace

bool CommonAPI::internal::OpenLogFile(char const* path) {
    logFile = std::fopen(path, "wb");
    return logFile != nullptr;
}

void CommonAPI::internal::CloseLogFile() {
    if (FILE* const file = std::exchange(logFile, nullptr))
        std::fclose(file);
}

void CommonAPI::internal::RedirectStandardErrorToLog() {
    dup2(fileno(logFile), STDERR_FILENO);
}

void CommonAPI::internal::WriteToLog(std::string_view text) {
    // What `fwrite` and `fflush` come to, but for the stream's buffer and lock, which a signal
    // would find half changed and held.
    while (logFile && !text.empty()) {
        ssize_t const written = write(fileno(logFile), text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return;
    }
}
