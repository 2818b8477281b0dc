#include <CommonAPI/system_information.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <tuple>

namespace {

char* login = nullptr;
passwd* entry = nullptr;

}  // namespace

// Login data that stand in front of the C library's.
extern "C" char* getlogin() {
    return login;
}
extern "C" passwd* getpwnam(char const*) {
    return entry;
}

namespace {

void SetOrUnset(char const* variable, char const* value) {
    value ? setenv(variable, value, 1) : unsetenv(variable);
}

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    static char jd[] = "jd";
    static char jane[] = "Jane Doe,,,";
    static char* const none = nullptr;
    std::string const id = std::to_string(getuid());
    // Login, real name, USER, use the real name, allow an id; what is found, if anything.
    using Row = std::tuple<char*, char*, char const*, bool, bool, char const*>;
    for (auto const& [loginName, realName, variable, useRealName, allowId, expected] :
         {Row{jd, jane, "user", false, false, jd}, Row{jd, jane, "user", true, false, jane},
          Row{jd, jd + 2, "user", true, false, ""}, Row{jd, none, "user", true, false, jd},
          Row{none, jane, "user", true, true, "user"}, Row{none, jane, "", true, true, ""},
          Row{none, jane, none, true, true, id.c_str()},
          Row{none, jane, none, true, false, none}}) {
        passwd data = {};
        data.pw_gecos = realName;
        login = loginName;
        entry = &data;
        SetOrUnset("USER", variable);
        std::string name = "unchanged";
        EXPECT_EQ(GetCurrentUserName(name, useRealName, allowId), expected != nullptr);
        EXPECT_EQ(name, expected ? expected : "unchanged");
        entry = nullptr;  // without an entry there is no real name
        GetCurrentUserName(name, useRealName, allowId);
        EXPECT_TRUE(!login || name == jd);
    }
}

TEST(SystemInformation, FormatsTheTimeAnewWhenASettingChanges) {
    char const* const formats[] = {"%Y-%m-%d %H:%M:%S %z", "%H %z", "", "%511X", "%512X"};
    char const* const zones[] = {"UTC", "<+07>-7", nullptr,
                                 "<a-name-too-long-to-be-kept-x-x-x-x-x-x-x-x-x-x-x-x-x-x>3"};
    for (int round = 0; round < 40; ++round) {
        char const* const format = formats[round % 5];
        SetOrUnset("TZ", zones[round / 2 % 4]);
        std::string text = "old";
        std::time_t now;
        do {  // until the second is the same before and after
            now = std::time(nullptr);
            GetCurrentTime(text, format);
        } while (now != std::time(nullptr));
        char expected[512] = "";
        expected[std::strftime(expected, sizeof expected, format, std::localtime(&now))] = '\0';
        EXPECT_EQ(text, expected) << format;
    }
}

TEST(SystemInformation, NamesTheHostAndSetsVariables) {
    char expected[256] = {};
    gethostname(expected, sizeof expected);
    std::string host = "old";
    GetLocalHostname(host);
    EXPECT_EQ(host, expected);
    char name[] = "COMMONAPI_TEST";
    EXPECT_TRUE(SetEnvironmentVariable(name, expected));
    EXPECT_STREQ(std::getenv(name), expected);
    EXPECT_FALSE(SetEnvironmentVariable(nullptr, expected));
}

}  // namespace
