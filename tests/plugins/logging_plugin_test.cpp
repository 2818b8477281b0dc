#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "support/logged_child.h"

// This program has the library as a shared object, as the plug-in has.
TEST(LoggingPlugin, LogsFromItsConstructorsAndDestructors) {
    LoggedChild const child = RunLogged([] {
        void* const handle = OpenSharedLibrary(LOGGING_PLUGIN, RTLD_NOW);
        if (!handle || CloseSharedLibrary(handle) != 0)
            std::_Exit(EXIT_FAILURE);
        LogMessage(4, "Net", "goes on");
        OpenSharedLibrary(LOGGING_PLUGIN, RTLD_NOW);  // unloaded at exit
    });
    std::string const loaded = "Plugin:  constructed\nPlugin Loader:  Loaded " LOGGING_PLUGIN "\n";
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, loaded + "Plugin:  destroyed\nNet:  goes on\n" + loaded +
                             "Plugin:  destroyed\nTerminating logging facility\n");
}
