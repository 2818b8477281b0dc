// Texts that lie in the logger's shared one are logged as they were at the call.
#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/system_information.h>
#include <dlfcn.h>

#include "support/child_process.h"

static char const text[] = "/a/text/that/needs/memory";

static ChildResult Logged(void (*call)()) {
    return RunInChild([call] {
        AttributeMap settings;
        settings["Global"] = "4";
        LogMessageBuffer = text;
        InitializeLogger("/dev/stdout", &settings, LogMessageBuffer.c_str(), false);
        LogMessageBuffer = text;
        call();
    });
}

TEST(SharedText, NamesTheApplication) {
    ChildResult const child = Logged([] {
        lseek(STDOUT_FILENO, 0, SEEK_SET);
        CaptureInitialLogInfo(LogMessageBuffer.c_str());
    });
    std::string const name = std::string("Application:  ") + text + "\n";
    EXPECT_THAT(child.output, testing::HasSubstr(name));
}

TEST(SharedText, IsAPathOfAPluginAndAMessage) {
    ChildResult const child = Logged([] {
        OpenSharedLibrary(LogMessageBuffer.c_str(), RTLD_NOW);
        LogMessageBuffer = text;
        LogStringMessage(4, LogMessageBuffer.c_str(), LogMessageBuffer);
    });
    EXPECT_EQ(LinesAfterHeader(child.output),
              std::string("FATAL/SharedObjectResource::loadResource():  Failed to load library (") +
                  text + "):  " + text +
                  ": cannot open shared object file: No such file or directory\n" + text + ":  " +
                  text + "\n" + closingLine);
}
