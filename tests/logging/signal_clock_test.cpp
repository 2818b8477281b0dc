// The time of lines in the handler of a signal, beside what the C library would make of it.
#include "logging/signal_clock.h"

#include <CommonAPI/system_information.h>
#include <gtest/gtest.h>
#include <langinfo.h>

#include <cstdlib>
#include <random>
#include <string>

using namespace CommonAPI::internal;

// A clock and a locale that stand in front of the C library's.
static std::time_t clockTime = -2;  // the real one
static char const* timeFormat = "%H:%M:%S";
static char const* const amPmFormat = "%I.%M.%S %p";

std::time_t time(std::time_t* result) noexcept {
    timespec now = {clockTime, 0};
    if (clockTime == -2)
        clock_gettime(CLOCK_REALTIME, &now);
    if (result)
        *result = now.tv_sec;
    return now.tv_sec;
}

char* nl_langinfo(nl_item item) noexcept {
    char const* const text = item == T_FMT ? timeFormat : item == T_FMT_AMPM ? amPmFormat : "";
    return const_cast<char*>(text);
}

static std::string Formatted(char const* format) {
    char text[200];
    return {text, std::strftime(text, sizeof text, format, std::localtime(&clockTime))};
}

struct SignalClock : testing::Test {
    ~SignalClock() override {
        clockTime = -2;
        timeFormat = "%H:%M:%S";
        unsetenv("TZ");
    }

    /// As a line outside of a handler does.
    static void LogAt(std::time_t time) {
        clockTime = time;
        std::string text;
        GetCurrentTime(text, "%X");
    }
};

TEST_F(SignalClock, FollowsTheRulesOfTheZoneAndTheFormatOfTheLocale) {
    PrepareSignalClock();
    std::mt19937 random(1);
    std::uniform_int_distribution<std::time_t> anyTime(0, 1 << 30);
    std::uniform_int_distribution<std::time_t> silence(0, 3 * 366 * 24 * 3600);
    for (char const* const zone :
         {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "EST5"})
        for (auto const& [format, plain] :
             {std::pair("%H:%M:%S", "%H:%M:%S"), std::pair("%T", "%H:%M:%S"),
              std::pair("%r %Z", "%I.%M.%S %p %Z"), std::pair("%R%%%z", "%H:%M%%%z"),
              std::pair("%-l h %OM min", "%-l h %OM min")})
            for (int round = 0; round < 20; ++round) {
                setenv("TZ", zone, 1);
                timeFormat = format;
                std::time_t const lastLine = anyTime(random);
                LogAt(lastLine);
                clockTime += silence(random);
                EXPECT_EQ(TimeOfDayInSignal(), Formatted(plain))
                    << zone << ", last line at " << lastLine << ", now " << clockTime;
            }
}

TEST_F(SignalClock, IsExactToTheSecondOfAChange) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    timeFormat = "%T %Z";
    PrepareSignalClock();
    constexpr std::time_t toSummer = 1774746000;
    constexpr std::time_t toWinter = 1792890000;
    LogAt(toSummer - 1);
    EXPECT_EQ(TimeOfDayInSignal(), "01:59:59 CET");
    clockTime = toSummer;
    EXPECT_EQ(TimeOfDayInSignal(), "03:00:00 CEST");
    clockTime = toWinter - 1;
    EXPECT_EQ(TimeOfDayInSignal(), "02:59:59 CEST");
    clockTime = toWinter;
    EXPECT_EQ(TimeOfDayInSignal(), "02:00:00 CET");
}

TEST_F(SignalClock, KeepsUpWithAZoneOfOtherRules) {
    setenv("TZ", "CET-1", 1);
    PrepareSignalClock();
    constexpr std::time_t winter = 1700000000;
    constexpr std::time_t summer = 1720000000;
    LogAt(winter);
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);  // the same time and name now
    LogAt(winter);
    clockTime = summer;
    EXPECT_EQ(TimeOfDayInSignal(), Formatted("%T"));
}

TEST_F(SignalClock, TheSecondBeforeTheEpochIsATimeLikeAnyOther) {
    setenv("TZ", "UTC0", 1);
    LogAt(-1);
    std::string text;
    GetCurrentTime(text, "%T");
    EXPECT_EQ(text, "23:59:59");
}
