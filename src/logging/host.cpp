#include <CommonAPI/system_information.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "types/requirement.h"

namespace {

/// A character of an environment entry. Such an entry is allocated one byte shorter than its text
/// with the terminator, so the allocation keeps that byte in reserve.
struct EnvironmentCharacter {
    char value;

    static void* operator new[](std::size_t size) { return ::operator new[](size + 1); }
};

}  // namespace

bool GetCurrentUserName(std::string& out, bool useRealName, bool allowNumericUid) {
    if (char const* const login = getlogin()) {
        passwd const* const entry = useRealName ? getpwnam(login) : nullptr;
        out = entry && entry->pw_gecos ? entry->pw_gecos : login;
        return true;
    }
    if (char const* const user = std::getenv("USER")) {
        out = user;
        return true;
    }
    if (!allowNumericUid)
        return false;
    out = std::to_string(static_cast<int>(getuid()));
    return true;
}

void GetLocalHostname(std::string& out) {
    char name[256] = {};
    gethostname(name, sizeof name);
    out = name;
}

bool SetEnvironmentVariable(char* name, char* value) {
    if (!name)
        return false;
    CommonAPI::internal::NotNull(value, "SetEnvironmentVariable");
    std::size_t const size = std::strlen(name) + std::strlen(value) + 1;
    char* const entry = reinterpret_cast<char*>(new EnvironmentCharacter[size]());
    std::snprintf(entry, size + 1, "%s=%s", name, value);
    return putenv(entry) == 0;
}
