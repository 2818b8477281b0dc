#include "logging/clock.h"

#include <CommonAPI/system_information.h>
#include <locale.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <utility>

#include "logging/signal_clock.h"
#include "types/requirement.h"

namespace {

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
        std::optional<std::time_t> const latest = named ? std::optional(now) : std::nullopt;
        bool const sameSecond = std::exchange(second, latest) == now;
        return sameSecond && named && sameFormat && sameZone && sameLocale;
    }

private:
    std::optional<std::time_t> second;
    KeptText formats;
    KeptText zones;
    KeptText locales;
};

}  // namespace

std::string_view CommonAPI::internal::CurrentTime(char const* format) {
    static std::time_t now;
    static char text[512];
    static std::size_t length;
    static TimeSetting setting;
    now = std::time(nullptr);
    if (!setting.stays(now, format)) {
        std::tm const* const local = std::localtime(&now);
        length = std::strftime(text, sizeof text, format, local);
        RefreshSignalClock(now, *local);
    }
    return {text, length};
}

void GetCurrentTime(std::string& out, char const* format) {
    using namespace CommonAPI::internal;
    out = CurrentTime(NotNull(format, "GetCurrentTime"));
}
