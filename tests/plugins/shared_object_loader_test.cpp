#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include "support/child_process.h"

static std::string const loaded = "Plugin Loader:  Loaded ";
static char const *const identified = PLUGINS "/identified", *const logging = PLUGINS "/logging";

TEST(SharedObjectLoader, LogsWhatItLoadedOrTheSystemsReason) {
    ChildResult const child = RunLogged([&] {
        void* const plugin = OpenSharedLibrary(identified, RTLD_NOW);
        for (char const* const name : {"_KeldaSODisplayName", "_KeldaSOVersion"})
            for (char const* const text : {"text", "", static_cast<char const*>(nullptr)}) {
                *static_cast<char const**>(FetchSharedLibraryResource(plugin, name)) = text;
                EXPECT_EQ(OpenSharedLibrary(identified, RTLD_NOW), plugin);
            }
        EXPECT_TRUE(OpenSharedLibrary(nullptr, RTLD_NOW));
        EXPECT_FALSE(OpenSharedLibrary(nullptr, 1 << 20) ||
                     OpenSharedLibrary("/no/such", RTLD_NOW));
        std::exit(testing::Test::HasFailure());
    });
    std::string const failed =
        "FATAL/SharedObjectResource::loadResource():  Failed to load library (";
    std::string expected;
    for (std::string const identification :
         {" - Sample Filter 2.1", " - text 2.1", " 2.1", " 2.1", " text", "", ""})
        expected += loaded + identified + identification + "\n";
    EXPECT_EQ(child.status, 0) << child.output;
    EXPECT_EQ(child.log, expected + loaded + "current application\n" + failed +
                             "):  invalid mode parameter\n" + failed +
                             "/no/such):  /no/such: cannot open shared object file: "
                             "No such file or directory\n" +
                             closingLine);
}

TEST(SharedObjectLoader, FindsSymbolsInThePluginAndInAllThatTheProcessSees) {
    char const* const name = "CommonAPITestEntryPoint";
    void* const hidden = OpenSharedLibrary(identified, RTLD_NOW | RTLD_LOCAL);
    void* const entryPoint = FetchSharedLibraryResource(hidden, name);
    ASSERT_TRUE(entryPoint);
    EXPECT_EQ(reinterpret_cast<int (*)()>(entryPoint)(), 42);
    EXPECT_EQ(FetchSharedLibraryResource(hidden, "CommonAPITestNothing"), nullptr);
    EXPECT_EQ(FetchSymbol(name), nullptr);
    void* const seen = OpenSharedLibrary(identified, RTLD_NOW | RTLD_GLOBAL);
    EXPECT_EQ(FetchSymbol(name), entryPoint);
    EXPECT_EQ(CloseSharedLibrary(seen) | CloseSharedLibrary(hidden), 0);
}

TEST(SharedObjectLoader, LetsAPluginLogFromItsConstructorsAndDestructors) {
    if (!FetchSymbol("OpenSharedLibrary"))
        GTEST_SKIP() << "no library that program and plug-in share";
    ChildResult const child = RunLogged([&] {
        CloseSharedLibrary(OpenSharedLibrary(logging, RTLD_NOW));
        OpenSharedLibrary(logging, RTLD_NOW);  // unloaded at exit
    });
    std::string const life = "Plugin:  constructed\n" + loaded + logging + "\nPlugin:  destroyed\n";
    EXPECT_EQ(child.log, life + life + closingLine);
}
