#include <CommonAPI/system_information.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "logging/signal_clock.h"

// Login data that stand in front of the C library's.
static char* login = nullptr;
static passwd* entry = nullptr;
extern "C" char* getlogin() {
    return login;
}
extern "C" passwd* getpwnam(char const*) {
    return entry;
}

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    char jd[] = "jd", jane[] = "Jane Doe,,,", empty[] = "";
    passwd named = {}, emptyName = {}, unnamed = {};
    named.pw_gecos = jane, emptyName.pw_gecos = empty;
    std::string const id = std::to_string(getuid());
    // Use the real name, allow an id, USER; what is found, if anything.
    using Row = std::tuple<char*, passwd*, bool, bool, char const*, char const*>;
    for (auto const& [loginName, data, useRealName, allowId, variable, expected] :
         {Row{jd, &named, false, false, "user", "jd"}, Row{jd, &named, true, false, "user", jane},
          Row{jd, &emptyName, true, false, "user", ""}, Row{jd, &unnamed, true, false, "user", jd},
          Row{jd, nullptr, true, false, "user", jd}, Row{nullptr, &named, true, true, "", ""},
          Row{nullptr, &named, true, true, "user", "user"},
          Row{nullptr, &named, true, true, nullptr, id.c_str()},
          Row{nullptr, &named, true, false, nullptr, nullptr}}) {
        login = loginName, entry = data;
        variable ? setenv("USER", variable, 1) : unsetenv("USER");
        std::string name = "unchanged";
        EXPECT_EQ(GetCurrentUserName(name, useRealName, allowId), expected != nullptr);
        EXPECT_EQ(name, expected ? expected : "unchanged");
    }
}

TEST(SystemInformation, FormatsTheTimeAnewWhenASettingChanges) {
    CommonAPI::internal::PrepareSignalClock();
    char const* const formats[] = {"%Y-%m-%d %H:%M:%S %z", "%H %z", "", "%511X", "%512X"};
    char const* const zones[] = {"UTC", "<+07>-7", nullptr,
                                 "<a-name-too-long-to-be-kept-x-x-x-x-x-x-x-x-x-x-x-x-x-x>3"};
    for (int round = 0; round < 40; ++round) {
        char const* const zone = zones[round / 2 % 4];
        zone ? setenv("TZ", zone, 1) : unsetenv("TZ");
        usleep(round == 1 ? 999999 : 0);  // after which nothing but the second differs
        std::string text = "old", inSignal;
        char expected[512];
        std::time_t now;
        do {  // until the second is the same before and after
            now = std::time(nullptr);
            GetCurrentTime(text, formats[round / 3 % 5]);
            inSignal = CommonAPI::internal::TimeOfDayInSignal();
        } while (now != std::time(nullptr));
        expected[std::strftime(expected, 512, formats[round / 3 % 5], std::localtime(&now))] = '\0';
        EXPECT_EQ(text, expected) << round;
        std::strftime(expected, 512, "%X", std::localtime(&now));
        EXPECT_EQ(inSignal, expected) << round;
    }
}

TEST(SystemInformation, NamesTheHostAndSetsVariables) {
    char expected[256] = {}, name[] = "COMMONAPI_TEST";
    std::string host = "old";
    GetLocalHostname(host);
    EXPECT_TRUE(gethostname(expected, sizeof expected) == 0 && host == expected);
    EXPECT_TRUE(SetEnvironmentVariable(name, expected) && std::getenv(name) == host);
    EXPECT_FALSE(SetEnvironmentVariable(nullptr, expected));
}
