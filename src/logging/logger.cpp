#include <CommonAPI/logging.h>

#include <CommonAPI/system_information.h>
#include <stdio_ext.h>
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

bool Passes(int level, char const* name) {
    if (level > highestThreshold)
        return false;
    auto const entry = moduleThresholds.find(std::string_view(name));
    int const threshold = entry == moduleThresholds.end() ? globalThreshold : entry->second;
    return level <= threshold && threshold != off;
}

/// What an allocation that fails leaves of an initialisation: nothing.
void GiveUp(FILE* file) {
    initialised = false;
    std::fclose(file);
}

char const* Prefix(int level) {
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

}  // namespace

AttributeMap& CommonAPI::internal::LoggerSettings() {
    return settings;
}

void CommonAPI::internal::WriteToLog(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), logFile);
    std::fflush(logFile);
}

void CommonAPI::internal::EnterSignalContext() {
    inSignalContext = true;
    if (initialised)
        __fsetlocking(logFile, FSETLOCKING_BYCALLER);
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

    // Each line is written at once anyway, and a signal may arrive between any two instructions:
    // what it finds is no half-filled buffer, nor does closing the file ask the allocator to take
    // one back.
    std::setvbuf(logFile, nullptr, _IONBF, 0);

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
    file.release();
    if (redirectStderr)
        dup2(fileno(logFile), STDERR_FILENO);
    std::atexit(TerminateLogger);
    return true;
}

void LogMessage(int level, char const* name, char const* text) {
    NotNull(name, "LogMessage");
    NotNull(text, "LogMessage");
    if (!Passes(level, name))
        return;

    std::string time;
    if (inSignalContext)
        CommonAPI::internal::GetTimeOfDayInSignal(time);
    else
        GetCurrentTime(time, "%X");
    std::string_view const pieces[] = {time, " - ", Prefix(level), name, ":  ", text, "\n"};
    std::size_t length = 0;
    for (std::string_view const piece : pieces)
        length += piece.size();

    char room[1024];  // lines of usual length ask the allocator for nothing
    std::string longLine;
    if (length > sizeof room)
        longLine.resize(length);
    char* const line = longLine.empty() ? room : longLine.data();
    char* end = line;
    for (std::string_view const piece : pieces)
        end = std::copy(piece.begin(), piece.end(), end);

    std::string_view const whole(line, length);
    if (initialised)
        WriteToLog(whole);
    else
        std::cerr << whole << std::endl;  // a second newline: an empty line follows each message
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
