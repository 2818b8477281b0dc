#include <CommonAPI/logging.h>
#include <CommonAPI/system_information.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <string_view>

#include "logging/clock.h"
#include "logging/log_file.h"
#include "logging/log_settings.h"
#include "logging/signal_clock.h"
#include "logging/signal_context.h"
#include "types/requirement.h"
#include "types/standard_streams.h"

using namespace CommonAPI::internal;
using namespace std::string_view_literals;

namespace {

constexpr int fatal = 1;
constexpr int error = 2;
constexpr int warning = 3;
constexpr int information = 4;

constexpr char const* module = "LoggingAPI";

bool initialised = false;

/// The warnings come before the default takes effect, so the thresholds in force until then decide
/// whether standard error shows them.
void TakeSettings(AttributeMap const* settings) {
    if (!settings || settings->empty()) {
        LogMessage(warning, module, "Logging settings missing, using default global setting");
        SetGlobalLogThreshold(fatal);
        return;
    }
    SetLogSettings(*settings);
    int threshold;
    bool const found = LogSettings().loadMapVariable("Global", threshold, 0);
    SetGlobalLogThreshold(threshold);
    if (!found) {
        LogMessage(warning, module, "Global logging setting missing, using default global setting");
        SetGlobalLogThreshold(fatal);
    }
}

std::string_view Prefix(int level) {
    switch (level) {
        case fatal:
            return "FATAL/";
        case error:
            return "ERROR/";
        case warning:
            return "WARNING/";
        default:
            return "";
    }
}

/// The pieces one behind the other, in `room` or, where that is too short, in `longLine`.
template <std::size_t size, class... Pieces>
std::string_view Join(char (&room)[size], std::string& longLine, Pieces... pieces) {
    std::size_t const length = (pieces.size() + ...);
    if (length > size)
        longLine.resize(length);
    char* const line = longLine.empty() ? room : longLine.data();
    char* end = line;
    ((end = std::copy(pieces.begin(), pieces.end(), end)), ...);
    return {line, length};
}

}  // namespace

bool InitializeLogger(std::string logFilePath, AttributeMap* settings, char const* applicationName,
                      bool redirectStderr) {
    if (initialised) {
        LogMessage(information, module, "Logger already initialized");
        return true;
    }
    if (!OpenLogFile(logFilePath.c_str())) {
        LogMessage(error, module, "Logger couldn't open log file");
        return false;
    }

    try {
        TakeSettings(settings);
        initialised = true;
        CaptureInitialLogInfo(applicationName);
    } catch (...) {  // of an initialisation that runs out of memory, no log is left
        initialised = false;
        CloseLogFile();
        throw;
    }
    if (redirectStderr)
        RedirectStandardErrorToLog();
    std::atexit(TerminateLogger);
    return true;
}

void LogMessage(int level, char const* name, char const* text) {
    NotNull(name, "LogMessage");
    NotNull(text, "LogMessage");
    if (level > highestLogThreshold)
        return;
    std::string_view const moduleName(name);
    if (!PassesLogThreshold(level, moduleName))
        return;

    std::string_view const time = InSignalContext() ? TimeOfDayInSignal() : CurrentTime("%X");
    char room[1024];  // lines of usual length ask the allocator for nothing
    std::string longLine;
    std::string_view const line = Join(room, longLine, time, " - "sv, Prefix(level), moduleName,
                                       ":  "sv, std::string_view(text), "\n"sv);
    if (initialised)
        WriteToLog(line);
    else
        StandardError() << line << std::endl;  // a second newline: an empty line follows
}

void LogStringMessage(int level, char const* name, std::string& text) {
    LogMessage(level, name, text.c_str());
    text.clear();
}

void TerminateLogger() {
    if (!initialised)
        return;
    initialised = false;
    char const* const closingLine = "Terminating logging facility\n";
    WriteToLog(closingLine);
    CloseLogFile();
    LogMessageBuffer = closingLine;  // at last, as it may need memory
}
