#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include "support/child_process.h"

static bool const sharedWithPlugins = FetchSymbol("OpenSharedLibrary") != nullptr;
static std::string const loaded = "Plugin Loader:  Loaded ";

TEST(SharedObjectLoader, AnnouncesAPluginByWhatItPublishes) {
    using Row = std::tuple<char const*, char const*, std::string>;
    for (auto const& [displayName, version, identification] :
         {Row{"Sample Filter", "2.1", " - Sample Filter 2.1"}, Row{"Filter", "", " - Filter"},
          Row{"", "2.1", " 2.1"}, Row{nullptr, nullptr, ""}}) {
        void* const plugin = dlopen(PLUGIN, RTLD_NOW);
        *static_cast<char const**>(dlsym(plugin, "_KeldaSODisplayName")) = displayName;
        *static_cast<char const**>(dlsym(plugin, "_KeldaSOVersion")) = version;
        ChildResult const child =
            RunLogged([&] { EXPECT_EQ(OpenSharedLibrary(PLUGIN, RTLD_NOW), plugin); });
        EXPECT_EQ(child.log, loaded + PLUGIN + identification + "\n" + closingLine);
        dlclose(plugin);
    }
}

TEST(SharedObjectLoader, TakesNoPathForTheProgramItself) {
    ChildResult const child = RunLogged([] {
        EXPECT_EQ(OpenSharedLibrary(nullptr, RTLD_NOW), dlopen(nullptr, RTLD_NOW));
        EXPECT_EQ(OpenSharedLibrary(nullptr, 1 << 20), nullptr) << "with flags that are none";
    });
    EXPECT_THAT(child.log, testing::StartsWith(loaded + "current application\n"));
    EXPECT_THAT(child.log, testing::HasSubstr("Failed to load library ():  "));
}

TEST(SharedObjectLoader, FindsSymbolsInThePluginAndInAllThatTheProcessSees) {
    ExpectInChild([] {
        char const* const name = "FindOwnSymbol";
        void* const hidden = OpenSharedLibrary(PLUGIN, RTLD_NOW | RTLD_LOCAL);
        void* const found = FetchSharedLibraryResource(hidden, name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(FetchSharedLibraryResource(hidden, "CommonAPITestNothing"), nullptr);
        auto const findOwnSymbol = reinterpret_cast<void* (*)()>(found);
        EXPECT_EQ(FetchSymbol(name), nullptr);
        EXPECT_EQ(findOwnSymbol(), sharedWithPlugins ? nullptr : found) << "whoever asks";

        void* const seen = OpenSharedLibrary(PLUGIN, RTLD_NOW | RTLD_GLOBAL);
        EXPECT_EQ(FetchSymbol(name), found);
        EXPECT_EQ(CloseSharedLibrary(seen), 0);
        EXPECT_EQ(CloseSharedLibrary(hidden), 0);
    });
}

TEST(SharedObjectLoader, LetsAPluginLogFromItsConstructorsAndDestructors) {
    if (!sharedWithPlugins)
        GTEST_SKIP() << "no library that program and plug-in share";
    ChildResult const child = RunLogged([] {
        CloseSharedLibrary(OpenSharedLibrary(PLUGIN, RTLD_NOW));
        OpenSharedLibrary(PLUGIN, RTLD_NOW);  // unloaded at exit
    });
    std::string const life =
        "Plugin:  constructed\n" + loaded + PLUGIN + " - Sample Filter 2.1\nPlugin:  destroyed\n";
    EXPECT_EQ(child.log, life + life + closingLine);
}
