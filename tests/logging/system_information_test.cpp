#include <CommonAPI/system_information.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

// The login data of this test stand in front of the C library's.
namespace {

char* login = nullptr;
passwd* entry = nullptr;

}  // namespace

extern "C" char* getlogin() {
    return login;
}
extern "C" passwd* getpwnam(char const*) {
    return entry;
}

namespace {

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    char loginName[] = "jd";
    char realName[] = "Jane Doe,,,";
    char noName[] = "";
    std::string const id = std::to_string(getuid());
    struct {
        char* login;
        bool hasEntry;
        char* realName;
        char const* variable;
        bool useRealName;
        bool allowNumericUid;
        char const* expected;  // null: nothing found
    } const rows[] = {
        {loginName, true, realName, "user", false, false, "jd"},
        {loginName, true, realName, "user", true, false, "Jane Doe,,,"},
        {loginName, true, noName, "user", true, false, ""},
        {loginName, true, nullptr, "user", true, false, "jd"},
        {loginName, false, nullptr, "user", true, false, "jd"},
        {nullptr, true, realName, "user", true, true, "user"},
        {nullptr, true, realName, "", true, true, ""},
        {nullptr, true, realName, nullptr, true, true, id.c_str()},
        {nullptr, true, realName, nullptr, true, false, nullptr},
    };
    for (auto const& row : rows) {
        passwd data = {};
        data.pw_gecos = row.realName;
        login = row.login;
        entry = row.hasEntry ? &data : nullptr;
        row.variable ? setenv("USER", row.variable, 1) : unsetenv("USER");
        std::string name = "unchanged";
        bool const found = GetCurrentUserName(name, row.useRealName, row.allowNumericUid);
        EXPECT_EQ(found, row.expected != nullptr);
        EXPECT_EQ(name, row.expected ? row.expected : "unchanged");
    }
}

TEST(SystemInformation, FormatsTheTime) {
    std::string text = "old";
    GetCurrentTime(text, "");
    EXPECT_EQ(text, "");
    GetCurrentTime(text, std::string(512, 'x').c_str());
    EXPECT_EQ(text, "");
    GetCurrentTime(text, std::string(511, 'x').c_str());
    EXPECT_EQ(text, std::string(511, 'x'));

    char const* const format = "%Y-%m-%d %H:%M:%S %z";
    for (char const* const zone : {"UTC", "<+07>-7"}) {
        setenv("TZ", zone, 1);
        std::time_t now;
        do {  // until the second is the same before and after
            now = std::time(nullptr);
            GetCurrentTime(text, format);
        } while (now != std::time(nullptr));
        char expected[64];
        std::strftime(expected, sizeof expected, format, std::localtime(&now));
        EXPECT_EQ(text, expected);
    }
}

TEST(SystemInformation, NamesTheHost) {
    char expected[256] = {};
    gethostname(expected, sizeof expected);
    std::string name = "old";
    GetLocalHostname(name);
    EXPECT_EQ(name, expected);
}

TEST(SystemInformation, SetsAVariable) {
    char name[] = "COMMONAPI_TEST";
    char value[] = "a value";
    EXPECT_TRUE(SetEnvironmentVariable(name, value));
    EXPECT_STREQ(std::getenv(name), value);
    EXPECT_FALSE(SetEnvironmentVariable(nullptr, value));
}

}  // namespace
