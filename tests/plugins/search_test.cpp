#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include "support/child_process.h"

static void* FoundByPluginItself(int flags) {
    void* const plugin = OpenSharedLibrary(PLUGINS "/searching", RTLD_NOW | flags);
    void* const find = FetchSharedLibraryResource(plugin, "FindOwnSymbol");
    return reinterpret_cast<void* (*)()>(find)();
}

TEST(FetchSymbol, SearchesTheWholeProcessWhoeverAsks) {
    ExpectInChild([] {  // in which what was found stays loaded
        EXPECT_EQ(FoundByPluginItself(RTLD_LOCAL), nullptr);
        EXPECT_NE(FoundByPluginItself(RTLD_GLOBAL), nullptr);
    });
}
