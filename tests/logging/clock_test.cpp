// The time of lines, which is kept, and in the handler of a signal is told without the C library.
#include "logging/signal_clock.h"

#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <langinfo.h>
#include <locale.h>
#include <setjmp.h>

#include "support/child_process.h"
#include "types/requirement.h"

using namespace CommonAPI::internal;

// A clock and a locale that stand in front of the C library's.
static std::time_t now = 1700000000;
static char const* localeName = "C";
static char const* timeFormat = "%H:%M:%S";
static char const* const amPmFormat = "%I.%M.%S %p";

std::time_t time(std::time_t* result) noexcept {
    return result ? *result = now : now;
}

char* setlocale(int, char const*) noexcept {
    return const_cast<char*>(localeName);
}

char* nl_langinfo(nl_item item) noexcept {
    char const* const text = item == T_FMT ? timeFormat : item == T_FMT_AMPM ? amPmFormat : "";
    return const_cast<char*>(text);
}

std::size_t strftime(char* text, std::size_t room, char const* format,
                     std::tm const* local) noexcept {
    static locale_t const plain = newlocale(LC_ALL_MASK, "C", locale_t());
    bool const byLocale = std::strcmp(format, "%X") == 0;
    return strftime_l(text, room, byLocale ? timeFormat : format, local, plain);
}

static std::string Formatted(char const* format) {
    char text[200];
    return {text, std::strftime(text, sizeof text, format, std::localtime(&now))};
}

static std::string CurrentTime(std::string const& format) {
    std::string text = "old";
    GetCurrentTime(text, format.c_str());
    return text;
}

TEST(CurrentTime, ShowsEveryChangeWithinOneSecond) {
    ExpectInChild([] {
        setenv("TZ", "UTC0", 1);
        now = -1;
        EXPECT_EQ(CurrentTime("%X"), "23:59:59") << "in the second before the epoch";
        now = 1709251199;
        EXPECT_EQ(CurrentTime("%d %X"), "29 23:59:59") << "in another format";
        setenv("TZ", "<+07>-7", 1);
        EXPECT_EQ(CurrentTime("%X"), "06:59:59") << "in another zone";
        ++now;
        EXPECT_EQ(CurrentTime("%X"), "07:00:00") << "in another second";
        timeFormat = "%H.%M";
        localeName = "with dots";
        EXPECT_EQ(CurrentTime("%X"), "07.00") << "in another locale";
        timeFormat = "%Hh";
        uselocale(newlocale(LC_TIME_MASK, "C", locale_t()));
        EXPECT_EQ(CurrentTime("%X"), "07h") << "in the thread's own locale";
    });
}

TEST(CurrentTime, TellsLongFormatsApart) {
    for (std::size_t const length : {63u, 64u, 65u}) {
        std::string const format(length - 2, 'x');
        EXPECT_EQ(CurrentTime(format + "%m"), format + "11") << length;
        EXPECT_EQ(CurrentTime(format + "%y"), format + "23") << length;
    }
}

// A year's end, around the changes of the clocks in Europe, between them and years later.
static constexpr std::time_t times[] = {1767225599, 1774745999, 1774746000, 1782907932,
                                        1792889999, 1792890000, 1887761423};
// Two have the same time and name in winter.
static constexpr char const* zones[] = {"UTC0", "CET-1", "CET-1CEST,M3.5.0,M10.5.0/3",
                                        "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"};

TEST(SignalClock, FollowsTheRulesOfTheZoneAndTheFormatOfTheLocale) {
    ExpectInChild([] {
        PrepareSignalClock();
        for (auto const& [format, plain] :
             {std::pair("%H:%M:%S", "%H:%M:%S"), std::pair("%T %Z", "%H:%M:%S %Z"),
              std::pair("%r %Z", "%I.%M.%S %p %Z"), std::pair("%R%%%z", "%H:%M%%%z"),
              std::pair("%-l h %OM min", "%-l h %OM min")})
            for (std::time_t const lastLine : times)
                for (char const* const zone : zones) {
                    timeFormat = format;
                    setenv("TZ", zone, 1);
                    now = lastLine;
                    CurrentTime("%X");  // as a line outside of a handler asks for it
                    for (std::time_t const inHandler : times) {
                        now = std::max(lastLine, inHandler);
                        EXPECT_EQ(TimeOfDayInSignal(), Formatted(plain))
                            << zone << ", last line at " << lastLine << ", now " << now;
                    }
                }
    });
}

TEST(SignalClock, AHandlerIsLeftByAJumpToo) {
    static sigjmp_buf beforeSignal;
    ExpectInChild([] {
        OpenLog(logPath, {});
        TrapExceptionSignal(SIGUSR1, [](siginfo*) { siglongjmp(beforeSignal, 1); });
        if (sigsetjmp(beforeSignal, 1) == 0)
            raise(SIGUSR1);
        if (hardened)
            raise(SIGALRM);  // the deadline, which is none any more
        setenv("TZ", "<later>-1:11:11", 1);
        LogMessage(1, "Net", "text");
        std::string const line = Formatted("%T") + " - FATAL/Net:  text\n";
        EXPECT_THAT(ContentOf(logPath), testing::HasSubstr(line));
    });
}
