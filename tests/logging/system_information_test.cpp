#include <CommonAPI/system_information.h>
#include <locale.h>
#include <pwd.h>

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

static std::string UserName(char const* variable, bool useRealName, bool allowId) {
    variable ? setenv("USER", variable, 1) : unsetenv("USER");
    std::string user = "none found";
    bool const found = GetCurrentUserName(user, useRealName, allowId);
    EXPECT_EQ(found, user != "none found");
    return user;
}

TEST(SystemInformation, NamesTheUserByTheFirstSourceThatHasOne) {
    char loginName[] = "jd";
    char realName[] = "Jane Doe,,,";
    passwd data = {};
    EXPECT_EQ(UserName("", true, true), "");
    EXPECT_EQ(UserName(nullptr, true, true), std::to_string(getuid()));
    EXPECT_EQ(UserName(nullptr, true, false), "none found");
    login = loginName;
    entry = &data;
    EXPECT_EQ(UserName("variable", true, false), "jd") << "without a real name";
    data.pw_gecos = realName;
    EXPECT_EQ(UserName("variable", true, false), realName);
    EXPECT_EQ(UserName("variable", false, false), "jd");
    login = nullptr;
    EXPECT_EQ(UserName("variable", true, false), "variable") << "without a login name";
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
        setenv("TZ", "UTC0", 1);
        now = -1;
        EXPECT_EQ(CurrentTime("%X"), "23:59:59") << "in the second before the epoch";
        now = 1709251199;
        EXPECT_EQ(CurrentTime("%d %X"), "29 23:59:59") << "in another format";
        setenv("TZ", "<+07>-7", 1);
        EXPECT_EQ(CurrentTime("%X"), "06:59:59") << "in another zone";
        ++now;
        EXPECT_EQ(CurrentTime("%X"), "07:00:00") << "in another second";
        ASSERT_TRUE(setlocale(LC_TIME, "with_dots")) << "none in " LOCALES;
        EXPECT_EQ(CurrentTime("%X"), "07.00") << "in another locale";
        setlocale(LC_TIME, "C");
        uselocale(newlocale(LC_TIME_MASK, "with_dots", locale_t()));
        EXPECT_EQ(CurrentTime("%X"), "07.00") << "in the thread's own locale";
    });
}

TEST(CurrentTime, TellsLongFormatsApart) {
    for (std::size_t const length : {63u, 64u, 65u}) {
        std::string const format(length - 2, 'x');
        EXPECT_EQ(CurrentTime(format + "%m"), format + "02") << length;
        EXPECT_EQ(CurrentTime(format + "%y"), format + "24") << length;
    }
}
