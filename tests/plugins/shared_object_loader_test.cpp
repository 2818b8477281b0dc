#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "support/logged_child.h"

namespace {

std::string const closing = "\nTerminating logging facility\n";

std::string Plugin(char const* name) {
    return PLUGINS "/lib" + std::string(name) + ".so";
}

LoggedChild RunOpened(char const* path, bool expected) {
    return RunLogged([=] {
        if ((OpenSharedLibrary(path, RTLD_NOW) != nullptr) != expected)
            std::_Exit(EXIT_FAILURE);
    });
}

TEST(SharedObjectLoader, AnnouncesWhatThePluginPublishes) {
    struct {
        char const* plugin;
        char const* identification;
    } const rows[] = {
        {"plugin_both", " - Sample Filter 2.1"},
        {"plugin_only_name", " - Sample Filter"},
        {"plugin_only_version", " 2.1"},
        {"plugin_neither", ""},
        {"plugin_null_name", " 2.1"},
        {"plugin_empty_texts", ""},
    };
    for (auto const& row : rows) {
        std::string const path = Plugin(row.plugin);
        LoggedChild const child = RunOpened(path.c_str(), true);
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(child.log, "Plugin Loader:  Loaded " + path + row.identification + closing);
    }
}

TEST(SharedObjectLoader, AnnouncesTheProgramItselfWithoutIdentification) {
    LoggedChild const child = RunOpened(nullptr, true);
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, "Plugin Loader:  Loaded current application" + closing);
}

TEST(SharedObjectLoader, LogsTheSystemsReasonUnderTheResourcesName) {
    std::string const noLibrary = PLUGINS "/CTestTestfile.cmake";
    std::string const orphan = Plugin("plugin_orphan");
    std::string const absent = ": cannot open shared object file: No such file or directory";
    struct {
        std::string path;
        std::string reason;
    } const rows[] = {
        {"/no/such/file.so", "/no/such/file.so" + absent},
        {orphan, "libplugin_gone.so" + absent},
        {noLibrary, noLibrary + ": invalid ELF header"},
    };
    for (auto const& row : rows) {
        LoggedChild const child = RunOpened(row.path.c_str(), false);
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(child.log,
                  "FATAL/SharedObjectResource::loadResource():  Failed to load library (" +
                      row.path + "):  " + row.reason + closing);
    }
}

TEST(SharedObjectLoader, TakesANullPathThatFailsAsAnEmptyText) {
    LoggedChild const child = RunLogged([] {
        int const noSuchFlag = 1 << 20;
        if (OpenSharedLibrary(nullptr, noSuchFlag))
            std::_Exit(EXIT_FAILURE);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_NE(child.log.find("Failed to load library ():  "), std::string::npos) << child.log;
}

TEST(SharedObjectLoader, FindsSymbolsInThePluginAndInAllThatTheProcessSees) {
    std::string const path = Plugin("plugin_neither");
    char const* const name = "CommonAPITestEntryPoint";
    void* const hidden = OpenSharedLibrary(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_TRUE(hidden);
    void* const entryPoint = FetchSharedLibraryResource(hidden, name);
    ASSERT_TRUE(entryPoint);
    EXPECT_EQ(reinterpret_cast<int (*)()>(entryPoint)(), 42);
    EXPECT_EQ(FetchSharedLibraryResource(hidden, "CommonAPITestNothing"), nullptr);
    EXPECT_EQ(FetchSymbol(name), nullptr);

    void* const seen = OpenSharedLibrary(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    EXPECT_EQ(FetchSymbol(name), entryPoint);
    EXPECT_TRUE(FetchSymbol("getpid"));
    EXPECT_EQ(CloseSharedLibrary(seen), 0);
    EXPECT_EQ(CloseSharedLibrary(hidden), 0);
}

}  // namespace
