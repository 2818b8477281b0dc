#include <CommonAPI/system_information.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <ctime>

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

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    static char jd[] = "jd";
    static char jane[] = "Jane Doe,,,";
    static char empty[] = "";
    std::string const id = std::to_string(getuid());
    struct {
        char* login;
        char* realName;
        char const* variable;
        bool useRealName;
        bool allowNumericUid;
        char const* expected;  // null: nothing found
    } const rows[] = {
        {jd, jane, "user", false, false, "jd"},
        {jd, jane, "user", true, false, jane},
        {jd, empty, "user", true, false, ""},
        {jd, nullptr, "user", true, false, "jd"},
        {nullptr, jane, "user", true, true, "user"},
        {nullptr, jane, "", true, true, ""},
        {nullptr, jane, nullptr, true, true, id.c_str()},
        {nullptr, jane, nullptr, true, false, nullptr},
    };
    for (auto const& row : rows) {
        passwd data = {};
        data.pw_gecos = row.realName;
        login = row.login;
        for (passwd* const found : {&data, static_cast<passwd*>(nullptr)}) {
            entry = found;
            row.variable ? setenv("USER", row.variable, 1) : unsetenv("USER");
            std::string name = "unchanged";
            bool const known = GetCurrentUserName(name, row.useRealName, row.allowNumericUid);
            EXPECT_EQ(known, row.expected != nullptr);
            bool const byLogin = row.login && !found;  // no entry, so no real name either
            EXPECT_EQ(name, byLogin ? "jd" : row.expected ? row.expected : "unchanged");
        }
    }
}

TEST(SystemInformation, FormatsTheTimeAnewWhenASettingChanges) {
    char const* const formats[] = {"%Y-%m-%d %H:%M:%S %z", "%H %z", "", "%511X", "%512X"};
    char const* const zones[] = {"UTC", "<+07>-7", nullptr,
                                 "<a-name-too-long-to-be-kept-x-x-x-x-x-x-x-x-x-x-x-x-x-x>3"};
    for (int round = 0; round < 40; ++round) {
        char const* const format = formats[round % 5];
        char const* const zone = zones[round / 2 % 4];
        zone ? setenv("TZ", zone, 1) : unsetenv("TZ");
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
    char value[] = "a value";
    EXPECT_TRUE(SetEnvironmentVariable(name, value));
    EXPECT_STREQ(std::getenv(name), value);
    EXPECT_FALSE(SetEnvironmentVariable(nullptr, value));
}

}  // namespace
