#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <locale.h>
#include <pwd.h>
#include <sys/utsname.h>

#include <ctime>

#include "support/child_process.h"

// Login data and a clock that stand in front of the C library's.
static char* login = nullptr;
static passwd* entry = nullptr;
static std::time_t now = 1709251199;  // the last second of 29 February 2024, in UTC

extern "C" char* getlogin() {
    return login;
}
extern "C" passwd* getpwnam(char const*) {
    return entry;
}
extern "C" std::time_t time(std::time_t* result) noexcept {
    return result ? *result = now : now;
}

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    char jd[] = "jd";
    char jane[] = "Jane Doe,,,";
    char empty[] = "";
    passwd named = {};
    passwd emptyName = {};
    passwd unnamed = {};
    named.pw_gecos = jane;
    emptyName.pw_gecos = empty;
    std::string const id = std::to_string(getuid());
    std::string const none = "none found";
    // Login name, password entry, variable; use the real name, allow an id; what is found.
    using Row = std::tuple<char*, passwd*, char const*, bool, bool, std::string>;
    for (auto const& [loginName, data, variable, useRealName, allowId, expected] : {
             Row{jd, &named, "variable", false, false, "jd"},
             Row{jd, &named, "variable", true, false, jane},
             Row{jd, &emptyName, "variable", true, false, ""},
             Row{jd, &unnamed, "variable", true, false, "jd"},
             Row{jd, nullptr, "variable", true, false, "jd"},
             Row{nullptr, &named, "variable", true, true, "variable"},
             Row{nullptr, &named, "", true, true, ""},
             Row{nullptr, &named, nullptr, true, true, id},
             Row{nullptr, &named, nullptr, true, false, none},
         }) {
        login = loginName;
        entry = data;
        variable ? setenv("USER", variable, 1) : unsetenv("USER");
        std::string user = none;
        EXPECT_EQ(GetCurrentUserName(user, useRealName, allowId), expected != none) << expected;
        EXPECT_EQ(user, expected);
    }
}

TEST(SystemInformation, NamesTheHost) {
    utsname system;
    uname(&system);
    std::string host;
    GetLocalHostname(host);
    EXPECT_EQ(host, system.nodename);
}

TEST(SystemInformation, SetsAndReplacesVariables) {
    char name[] = "COMMONAPI_TEST";
    for (std::string value : {"new", "replaced", ""}) {
        EXPECT_TRUE(SetEnvironmentVariable(name, value.data()));
        EXPECT_EQ(std::getenv(name), value);
    }
    EXPECT_FALSE(SetEnvironmentVariable(nullptr, name));
}

static std::string CurrentTime(std::string const& format) {
    std::string text = "old";
    GetCurrentTime(text, format.c_str());
    return text;
}

TEST(CurrentTime, ShowsEveryChangeWithinOneSecond) {
    ExpectInChild([] {
        setenv("LOCPATH", LOCALES, 1);
        locale_t const withDots = newlocale(LC_TIME_MASK, "with_dots", locale_t());
        ASSERT_TRUE(withDots) << "none in " LOCALES;
        setenv("TZ", "UTC0", 1);
        EXPECT_EQ(CurrentTime("%d %X"), "29 23:59:59");
        EXPECT_EQ(CurrentTime("%X"), "23:59:59") << "in another format";
        setenv("TZ", "<+07>-7", 1);
        EXPECT_EQ(CurrentTime("%X"), "06:59:59") << "in another zone";
        ++now;
        EXPECT_EQ(CurrentTime("%X"), "07:00:00") << "in another second";
        setlocale(LC_TIME, "with_dots");
        EXPECT_EQ(CurrentTime("%X"), "07.00") << "in another locale";
        setlocale(LC_TIME, "C");
        EXPECT_EQ(CurrentTime("%X"), "07:00:00") << "in the first locale";
        uselocale(withDots);
        EXPECT_EQ(CurrentTime("%X"), "07.00") << "in the thread's own locale";
        uselocale(LC_GLOBAL_LOCALE);
        freelocale(withDots);
        EXPECT_EQ(CurrentTime("%X"), "07:00:00") << "in the locale of the process";
        unsetenv("TZ");
        char expected[] = "hh:mm:ss";
        std::strftime(expected, sizeof expected, "%X", std::localtime(&now));
        EXPECT_EQ(CurrentTime("%X"), expected) << "without a zone";
        setenv("TZ", "UTC0", 1);
        EXPECT_EQ(CurrentTime("%X"), "00:00:00") << "in a zone after none";
    });
}

TEST(CurrentTime, TellsLongFormatsAndZonesApart) {
    ExpectInChild([] {
        for (std::size_t const length : {63u, 64u, 65u}) {
            std::string const format(length - 2, 'x');
            setenv("TZ", "UTC0", 1);
            EXPECT_EQ(CurrentTime(format + "%H"), format + "23") << length;
            EXPECT_EQ(CurrentTime(format + "%M"), format + "59") << length;
            std::string const zone = "<" + std::string(length - 3, 'x') + ">";
            setenv("TZ", (zone + "3").c_str(), 1);
            EXPECT_EQ(CurrentTime("%H"), "20") << length;
            setenv("TZ", (zone + "4").c_str(), 1);
            EXPECT_EQ(CurrentTime("%H"), "19") << length;
        }
    });
}

TEST(CurrentTime, IsEmptyWithoutTextOrWithMoreThan511Characters) {
    EXPECT_EQ(CurrentTime(""), "");
    EXPECT_EQ(CurrentTime("%511n").size(), 511);
    EXPECT_EQ(CurrentTime("%512n"), "");
}

TEST(CurrentTime, GoesOnWhileASignalIsHandled) {
    // Zone, seconds since the last line, time of the report.
    using Row = std::tuple<char const*, int, std::string>;
    for (auto const& [zone, seconds, expected] : {
             Row{"UTC0", 0, "23:59:59"},
             Row{"UTC0", 1, "00:00:00"},
             Row{"UTC0", 90000, "00:59:59"},
             Row{"UTC0", -3600, "22:59:59"},
             Row{"<+07>-7", 17 * 3600 + 1, "00:00:00"},
             Row{"<-11>11", 11 * 3600 + 1, "00:00:00"},
         }) {
        TemporaryFile const log;
        ExpectInChild([&log, zone = zone, seconds = seconds] {
            setenv("TZ", zone, 1);
            OpenLog(log.path(), {});
            TrapExceptionSignal(SIGTERM, nullptr);
            now += seconds;
            raise(SIGTERM);
        });
        std::string const content = ContentOf(log.path());
        EXPECT_EQ(content.substr(content.rfind(" - FATAL/") - 8, 8), expected) << zone << seconds;
    }
}
