#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include "support/child_process.h"

static char const* const identified = PLUGINS "/identified";
static char const* const logging = PLUGINS "/logging";
static std::string const loaded = "Plugin Loader:  Loaded ";

TEST(SharedObjectLoader, AnnouncesAPluginByWhatItPublishes) {
    using Row = std::tuple<char const*, char const*, std::string>;
    for (auto const& [displayName, version, identification] :
         {Row{"Sample Filter", "2.1", " - Sample Filter 2.1"}, Row{"Filter", "", " - Filter"},
          Row{"Filter", nullptr, " - Filter"}, Row{"", "2.1", " 2.1"}, Row{nullptr, "2.1", " 2.1"},
          Row{nullptr, nullptr, ""}}) {
        void* const plugin = dlopen(identified, RTLD_NOW);
        *static_cast<char const**>(dlsym(plugin, "_KeldaSODisplayName")) = displayName;
        *static_cast<char const**>(dlsym(plugin, "_KeldaSOVersion")) = version;
        ChildResult const child =
            RunLogged([&] { EXPECT_EQ(OpenSharedLibrary(identified, RTLD_NOW), plugin); });
        EXPECT_EQ(child.log, loaded + identified + identification + "\n" + closingLine);
        dlclose(plugin);
    }
}

TEST(SharedObjectLoader, AnnouncesTheProgramItself) {
    ChildResult const child = RunLogged(
        [] { EXPECT_EQ(OpenSharedLibrary(nullptr, RTLD_NOW), dlopen(nullptr, RTLD_NOW)); });
    EXPECT_EQ(child.log, loaded + "current application\n" + closingLine);
}

TEST(SharedObjectLoader, LogsTheSystemsReasonForAFailure) {
    std::string const failed =
        "FATAL/SharedObjectResource::loadResource():  Failed to load library (";
    using Row = std::tuple<char const*, int, std::string>;
    for (auto const& [path, flags, shownPath] :
         {Row{"/no/such", RTLD_NOW, "/no/such"}, Row{nullptr, 1 << 20, ""}}) {
        dlopen(path, flags);
        std::string const reason = dlerror();
        ChildResult const child = RunLogged(
            [path = path, flags = flags] { EXPECT_EQ(OpenSharedLibrary(path, flags), nullptr); });
        EXPECT_EQ(child.log, failed + shownPath + "):  " + reason + "\n" + closingLine);
    }
}

TEST(SharedObjectLoader, FindsSymbolsInThePluginAndInAllThatTheProcessSees) {
    char const* const name = "CommonAPITestEntryPoint";
    ExpectInChild([name] {
        void* const hidden = OpenSharedLibrary(identified, RTLD_NOW | RTLD_LOCAL);
        void* const entryPoint = FetchSharedLibraryResource(hidden, name);
        ASSERT_NE(entryPoint, nullptr);
        EXPECT_EQ(reinterpret_cast<int (*)()>(entryPoint)(), 42);
        EXPECT_EQ(FetchSharedLibraryResource(hidden, "CommonAPITestNothing"), nullptr);
        EXPECT_EQ(FetchSymbol(name), nullptr);

        void* const seen = OpenSharedLibrary(identified, RTLD_NOW | RTLD_GLOBAL);
        EXPECT_EQ(FetchSymbol(name), entryPoint);
        EXPECT_EQ(CloseSharedLibrary(seen), 0);
        EXPECT_EQ(CloseSharedLibrary(hidden), 0);
    });
}

TEST(SharedObjectLoader, LetsAPluginLogFromItsConstructorsAndDestructors) {
    if (!FetchSymbol("OpenSharedLibrary"))
        GTEST_SKIP() << "no library that program and plug-in share";
    ChildResult const child = RunLogged([] {
        CloseSharedLibrary(OpenSharedLibrary(logging, RTLD_NOW));
        OpenSharedLibrary(logging, RTLD_NOW);  // unloaded at exit
    });
    std::string const life = "Plugin:  constructed\n" + loaded + logging + "\nPlugin:  destroyed\n";
    EXPECT_EQ(child.log, life + life + closingLine);
}
