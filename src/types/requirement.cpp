#include "types/requirement.h"

#include <cstdio>
#include <cstdlib>

void CommonAPI::internal::RefuseCall(char const* call, char const* reason) {
    std::fprintf(stderr, "CommonAPI: %s: %s\n", call, reason);
    std::abort();
}
