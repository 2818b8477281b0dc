#include <CommonAPI/system_information.h>
#include <pwd.h>

#include "support/child_process.h"

// Login data that stand in front of the C library's.
static char* login = nullptr;
static passwd entry = {};

extern "C" char* getlogin() {
    return login;
}
extern "C" passwd* getpwnam(char const*) {
    return &entry;
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
    EXPECT_EQ(UserName("", true, true), "");
    EXPECT_EQ(UserName(nullptr, true, true), std::to_string(getuid()));
    EXPECT_EQ(UserName(nullptr, true, false), "none found");
    login = loginName;
    entry.pw_gecos = nullptr;
    EXPECT_EQ(UserName("variable", true, false), "jd") << "without a real name";
    entry.pw_gecos = realName;
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
