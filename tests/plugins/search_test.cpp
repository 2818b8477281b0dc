#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

static void* FoundByPluginItself(int flags) {
    void* const plugin = OpenSharedLibrary(PLUGINS "/searching", RTLD_NOW | flags);
    auto const find =
        reinterpret_cast<void* (*)()>(FetchSharedLibraryResource(plugin, "FindOwnSymbol"));
    return find();
}

TEST(FetchSymbol, SearchesTheWholeProcessWhoeverAsks) {
    EXPECT_EQ(FoundByPluginItself(RTLD_LOCAL), nullptr);
    EXPECT_NE(FoundByPluginItself(RTLD_GLOBAL), nullptr);
}
