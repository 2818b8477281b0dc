// The time of lines in the handler of a signal, beside what the C library would make of it.
#include "logging/signal_clock.h"

#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <langinfo.h>
#include <setjmp.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "support/child_process.h"

using namespace CommonAPI::internal;

// A clock and a locale that stand in front of the C library's.
static std::time_t clockTime = 1700000000;
static char const* timeFormat = "%H:%M:%S";
static char const* const amPmFormat = "%I.%M.%S %p";

std::time_t time(std::time_t* result) noexcept {
    return result ? *result = clockTime : clockTime;
}

char* nl_langinfo(nl_item item) noexcept {
    char const* const text = item == T_FMT ? timeFormat : item == T_FMT_AMPM ? amPmFormat : "";
    return const_cast<char*>(text);
}

static std::string Formatted(char const* format) {
    char text[200];
    return {text, std::strftime(text, sizeof text, format, std::localtime(&clockTime))};
}

/// Half of them around a change of the clocks in Europe.
static std::time_t AnyTime(std::mt19937& random) {
    constexpr std::time_t toSummer = 1774746000;
    constexpr std::time_t toWinter = 1792890000;
    std::time_t const change = random() % 2 ? toSummer : toWinter;
    auto const seconds = static_cast<std::time_t>(random() / 2);
    return change + (random() % 2 ? seconds % 2 : seconds % (3 * 366 * 24 * 3600)) - 1;
}

TEST(SignalClock, FollowsTheRulesOfTheZoneAndTheFormatOfTheLocale) {
    ExpectInChild([] {
        PrepareSignalClock();
        std::mt19937 random(1);
        for (int round = 0; round < 50; ++round) {
            std::time_t const lastLine = AnyTime(random);
            std::time_t const now = std::max(lastLine, AnyTime(random));
            for (auto const& [format, plain] :
                 {std::pair("%H:%M:%S", "%H:%M:%S"), std::pair("%T %Z", "%H:%M:%S %Z"),
                  std::pair("%r %Z", "%I.%M.%S %p %Z"), std::pair("%R%%%z", "%H:%M%%%z"),
                  std::pair("%-l h %OM min", "%-l h %OM min")})
                // Two have the same time and name in winter.
                for (char const* const zone : {"UTC0", "CET-1", "CET-1CEST,M3.5.0,M10.5.0/3",
                                               "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"}) {
                    setenv("TZ", zone, 1);
                    timeFormat = format;
                    clockTime = lastLine;
                    std::string text;
                    GetCurrentTime(text, "%X");  // as a line outside of a handler does
                    clockTime = now;
                    EXPECT_EQ(TimeOfDayInSignal(), Formatted(plain))
                        << zone << ", last line at " << lastLine << ", now " << now;
                }
        }
    });
}

TEST(SignalClock, AHandlerIsLeftByAJumpToo) {
    static sigjmp_buf beforeSignal;
    TemporaryFile const log;
    ExpectInChild([&log] {
        OpenLog(log.path(), {});
        TrapExceptionSignal(SIGUSR1, [](siginfo*) { siglongjmp(beforeSignal, 1); });
        if (sigsetjmp(beforeSignal, 1) == 0)
            raise(SIGUSR1);
#ifdef COMMONAPI_HARDENED
        raise(SIGALRM);  // the deadline, which is none any more
#endif
        setenv("TZ", "<later>-1:11:11", 1);
        LogMessage(1, "Net", "text");
    });
    setenv("TZ", "<later>-1:11:11", 1);
    std::string const line = Formatted("%T") + " - FATAL/Net:  text\n";
    EXPECT_THAT(ContentOf(log.path()), testing::HasSubstr(line));
}
