#include <CommonAPI/system_information.h>

#include <CommonAPI/logging.h>
#include <CommonAPI/text_utilities.h>
#include <locale.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>
#include <utility>

#include "logging/logger_state.h"
#include "types/requirement.h"

using CommonAPI::internal::NotNull;

namespace {

constexpr char const* dashes = "--------------------------------\n";

/// The local time of day less the clock's time, in seconds: one word, which a signal finds whole.
std::atomic<std::time_t> timeOfDayOffset;

void AppendSystemNames(std::string& header) {
    utsname system;
    if (uname(&system) == -1)
        return;
    header.append("System name:\t").append(system.sysname);
    header.append("\nNode name:\t").append(system.nodename);
    header.append("\nRelease:\t").append(system.release);
    header.append("\nVersion:\t").append(system.version);
    header.append("\nMachine:\t").append(system.machine).append("\n");
}

void AppendSettings(std::string& header) {
    std::string module;
    std::string level;
    AttributeMap& settings = CommonAPI::internal::LoggerSettings();
    for (long i = 0; settings.fetchAttributeValueByIndex(i, module, level); ++i)
        header.append("Log level for module ")
            .append(module)
            .append(" is ")
            .append(level)
            .append("\n");
}

/// A character of an environment entry. Such an entry is allocated one byte shorter than its text
/// with the terminator, so the allocation keeps that byte in reserve.
struct EnvironmentCharacter {
    char value;

    static void* operator new[](std::size_t size) { return ::operator new[](size + 1); }
};

/// A short text, or none, kept to be compared with.
class KeptText {
public:
    /// Keeps `text`, which may be null. True if it equals what was kept before.
    bool stays(char const* text) {
        if (content == shortText && text && std::strcmp(kept, text) == 0)
            return true;
        if (content == none && !text)
            return true;
        content = !text ? none : std::strlen(text) < sizeof kept ? shortText : tooLong;
        if (content == shortText)
            std::strcpy(kept, text);
        return false;
    }

private:
    enum Content { none, shortText, tooLong };

    Content content = none;
    char kept[64];
};

/// All that the text of a time depends on. With TZ unset, the C library asks the file system for
/// the zone at each conversion; one conversion a second is enough.
class TimeSetting {
public:
    bool stays(std::time_t now, char const* format) {
        // Each is asked, so that each keeps the latest.
        bool const sameFormat = formats.stays(format);
        bool const sameZone = zones.stays(std::getenv("TZ"));
        bool const sameLocale = locales.stays(setlocale(LC_TIME, nullptr));
        // A thread's own locale has no name to compare.
        bool const named = uselocale(locale_t()) == LC_GLOBAL_LOCALE;
        bool const sameSecond = std::exchange(second, named ? now : -1) == now;
        return sameSecond && named && sameFormat && sameZone && sameLocale;
    }

private:
    std::time_t second = -1;
    KeptText formats;
    KeptText zones;
    KeptText locales;
};

}  // namespace

void CaptureInitialLogInfo(char const* applicationName) {
    std::string& header = LogMessageBuffer;
    header.clear();
    if (applicationName)
        header.append(dashes)
            .append("Application:  ")
            .append(applicationName)
            .append("\n")
            .append(dashes);

    std::string time;
    GetCurrentTime(time, "%x %X");
    header.append("Time Stamp:\t").append(time).append("\n");
    header.append("Process ID:\t").append(itoa(static_cast<long>(getpid()))).append("\n");
    AppendSystemNames(header);
    AppendSettings(header);
    header.append(dashes);
    CommonAPI::internal::WriteToLog(header);
}

std::string_view CommonAPI::internal::CurrentTime(char const* format) {
    static std::time_t now;
    static char text[512];
    static std::size_t length;
    static TimeSetting setting;
    now = std::time(nullptr);
    if (!setting.stays(now, format)) {
        std::tm const* const local = std::localtime(&now);
        timeOfDayOffset = (local->tm_hour * 60 + local->tm_min) * 60 + local->tm_sec - now;
        length = std::strftime(text, sizeof text, format, local);
    }
    return {text, length};
}

void GetCurrentTime(std::string& out, char const* format) {
    out = CommonAPI::internal::CurrentTime(NotNull(format, "GetCurrentTime"));
}

std::string_view CommonAPI::internal::TimeOfDayInSignal() {
    constexpr int day = 24 * 60 * 60;
    int const second = static_cast<int>((std::time(nullptr) + timeOfDayOffset) % day + day) % day;
    std::tm local = {};
    local.tm_hour = second / (60 * 60);
    local.tm_min = second / 60 % 60;
    local.tm_sec = second % 60;
    static char text[64];
    return {text, std::strftime(text, sizeof text, "%X", &local)};
}

bool GetCurrentUserName(std::string& out, bool useRealName, bool allowNumericUid) {
    if (char const* const login = getlogin()) {
        passwd const* const entry = useRealName ? getpwnam(login) : nullptr;
        out = entry && entry->pw_gecos ? entry->pw_gecos : login;
        return true;
    }
    if (char const* const user = std::getenv("USER")) {
        out = user;
        return true;
    }
    if (!allowNumericUid)
        return false;
    out = itoa(static_cast<int>(getuid()));
    return true;
}

void GetLocalHostname(std::string& out) {
    char name[256] = {};
    gethostname(name, sizeof name);
    out = name;
}

bool SetEnvironmentVariable(char* name, char* value) {
    if (!name)
        return false;
    NotNull(value, "SetEnvironmentVariable");
    std::size_t const size = std::strlen(name) + std::strlen(value) + 1;
    char* const entry = reinterpret_cast<char*>(new EnvironmentCharacter[size]());
    std::snprintf(entry, size + 1, "%s=%s", name, value);
    return putenv(entry) == 0;
}
