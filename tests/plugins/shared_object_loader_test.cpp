#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "support/logged_child.h"

namespace {

TEST(SharedObjectLoader, LogsWhatItLoadedOrTheSystemsReason) {
    struct {
        char const* path;
        bool loaded;
        std::string text;
        int flags = RTLD_NOW;
    } const rows[] = {
        {PLUGINS "/libplugin_both.so", true, " - Sample Filter 2.1"},
        {PLUGINS "/libplugin_only_name.so", true, " - Sample Filter"},
        {PLUGINS "/libplugin_only_version.so", true, " 2.1"},
        {PLUGINS "/libplugin_neither.so", true, ""},
        {PLUGINS "/libplugin_null_name.so", true, " 2.1"},
        {PLUGINS "/libplugin_empty_texts.so", true, ""},
        {nullptr, true, "current application"},
        {nullptr, false, "invalid mode parameter", 1 << 20},
        {"/no/such/file.so", false,
         "/no/such/file.so: cannot open shared object file: No such file or directory"},
        {PLUGINS "/CTestTestfile.cmake", false, PLUGINS "/CTestTestfile.cmake: invalid ELF header"},
    };
    for (auto const& row : rows) {
        auto const child = RunLogged([&] { std::exit(!OpenSharedLibrary(row.path, row.flags)); });
        std::string const name = row.path ? row.path : "";
        std::string const line =
            row.loaded ? "Plugin Loader:  Loaded " + name
                       : "FATAL/SharedObjectResource::loadResource():  Failed to load library (" +
                             name + "):  ";
        EXPECT_EQ(child.status, !row.loaded);
        EXPECT_EQ(child.log, line + row.text + "\nTerminating logging facility\n");
    }
}

TEST(SharedObjectLoader, FindsSymbolsInThePluginAndInAllThatTheProcessSees) {
    char const* const name = "CommonAPITestEntryPoint";
    void* const hidden = OpenSharedLibrary(PLUGINS "/libplugin_neither.so", RTLD_NOW | RTLD_LOCAL);
    void* const entryPoint = FetchSharedLibraryResource(hidden, name);
    ASSERT_TRUE(entryPoint);
    EXPECT_EQ(reinterpret_cast<int (*)()>(entryPoint)(), 42);
    EXPECT_EQ(FetchSharedLibraryResource(hidden, "CommonAPITestNothing"), nullptr);
    EXPECT_EQ(FetchSymbol(name), nullptr);
    void* const seen = OpenSharedLibrary(PLUGINS "/libplugin_neither.so", RTLD_NOW | RTLD_GLOBAL);
    EXPECT_EQ(FetchSymbol(name), entryPoint);
    EXPECT_EQ(CloseSharedLibrary(seen) | CloseSharedLibrary(hidden), 0);
}

#ifdef HAS_LOGGING_PLUGIN
TEST(SharedObjectLoader, LetsAPluginLogFromItsConstructorsAndDestructors) {
    LoggedChild const child = RunLogged([] {
        CloseSharedLibrary(OpenSharedLibrary(PLUGINS "/libplugin_logging.so", RTLD_NOW));
        OpenSharedLibrary(PLUGINS "/libplugin_logging.so", RTLD_NOW);  // unloaded at exit
    });
    std::string const life = "Plugin:  constructed\nPlugin Loader:  Loaded " PLUGINS
                             "/libplugin_logging.so\nPlugin:  destroyed\n";
    EXPECT_EQ(child.log, life + life + "Terminating logging facility\n");
}
#endif

}  // namespace
