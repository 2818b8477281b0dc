#include <CommonAPI/logging.h>

#include <CommonAPI/system_information.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <string_view>

#include "logging/logger_state.h"
#include "types/early_static.h"
#include "types/requirement.h"

COMMONAPI_EARLY_STATIC std::string LogMessageBuffer;

using CommonAPI::internal::NotNull;
using CommonAPI::internal::WriteToLog;
using namespace std::string_view_literals;

namespace {

constexpr int fatal = 1;
constexpr int error = 2;
constexpr int warning = 3;
constexpr int information = 4;
constexpr int off = 5;

constexpr char const* module = "LoggingAPI";

bool initialised = false;
FILE* logFile = nullptr;
int globalThreshold = off;
bool inSignalContext = false;

COMMONAPI_EARLY_STATIC AttributeMap settings;

/// The numbers that the settings stand for, read once instead of for each message.
COMMONAPI_EARLY_STATIC std::map<std::string, int, std::less<>> moduleThresholds;

/// No message above this level passes any threshold.
int highestThreshold = INT_MIN;

void FindHighestThreshold() {
    highestThreshold = globalThreshold == off ? INT_MIN : globalThreshold;
    for (auto const& [name, threshold] : moduleThresholds)
        if (threshold != off)
            highestThreshold = std::max(highestThreshold, threshold);
}

void SetGlobalThreshold(int threshold) {
    globalThreshold = threshold;
    FindHighestThreshold();
}

void SetSettings(AttributeMap const& source) {
    settings = source;
    std::map<std::string, int, std::less<>> thresholds;
    std::string name;
    std::string value;
    for (long i = 0; settings.fetchAttributeValueByIndex(i, name, value); ++i)
        thresholds[name] = std::atoi(value.c_str());
    moduleThresholds.swap(thresholds);
}

bool Passes(int level, std::string_view name) {
    auto const entry = moduleThresholds.find(name);
    int const threshold = entry == moduleThresholds.end() ? globalThreshold : entry->second;
    return level <= threshold && threshold != off;
}

/// What an allocation that fails leaves of an initialisation: nothing.
void GiveUp(FILE* file) {
    initialised = false;
    std::fclose(file);
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

AttributeMap& CommonAPI::internal::LoggerSettings() {
    return settings;
}

void CommonAPI::internal::WriteToLog(std::string_view text) {
    // What `fwrite` and `fflush` come to, but for the stream's buffer and lock, which a signal
    // would find half changed and held.
    while (!text.empty()) {
        ssize_t const written = write(fileno(logFile), text.data(), text.size());
        if (written < 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void CommonAPI::internal::EnterSignalContext() {
    inSignalContext = true;
}

bool InitializeLogger(std::string logFilePath, AttributeMap* newSettings,
                      char const* applicationName, bool redirectStderr) {
    if (initialised) {
        LogMessage(information, module, "Logger already initialized");
        return true;
    }

    std::unique_ptr<FILE, void (*)(FILE*)> file(std::fopen(logFilePath.c_str(), "wb"), GiveUp);
    if (!file) {
        LogMessage(error, module, "Logger couldn't open log file");
        return false;
    }
    logFile = file.get();

    // The warnings come before the default takes effect, so the thresholds in force until then
    // decide whether standard error shows them.
    if (!newSettings || newSettings->empty()) {
        LogMessage(warning, module, "Logging settings missing, using default global setting");
        SetGlobalThreshold(fatal);
    } else {
        SetSettings(*newSettings);
        int threshold;
        bool const found = settings.loadMapVariable("Global", threshold, 0);
        SetGlobalThreshold(threshold);
        if (!found) {
            LogMessage(warning, module,
                       "Global logging setting missing, using default global setting");
            SetGlobalThreshold(fatal);
        }
    }

    initialised = true;
    CaptureInitialLogInfo(applicationName);
    static_cast<void>(file.release());
    if (redirectStderr)
        dup2(fileno(logFile), STDERR_FILENO);
    std::atexit(TerminateLogger);
    return true;
}

void LogMessage(int level, char const* name, char const* text) {
    NotNull(name, "LogMessage");
    NotNull(text, "LogMessage");
    if (level > highestThreshold)
        return;
    std::string_view const moduleName(name);
    if (!Passes(level, moduleName))
        return;

    std::string_view const time = inSignalContext ? CommonAPI::internal::TimeOfDayInSignal()
                                                  : CommonAPI::internal::CurrentTime("%X");
    char room[1024];  // lines of usual length ask the allocator for nothing
    std::string longLine;
    std::string_view const line = Join(room, longLine, time, " - "sv, Prefix(level), moduleName,
                                       ":  "sv, std::string_view(text), "\n"sv);
    if (initialised)
        WriteToLog(line);
    else
        std::cerr << line << std::endl;  // a second newline: an empty line follows each message
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
    std::fclose(logFile);
    LogMessageBuffer = closingLine;  // at last, as it may need memory
}
