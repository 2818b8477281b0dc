// What the library still does for code that ends after it.
#include <CommonAPI/paper_size.h>
#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/signal_trap.h>
#include <dlfcn.h>

#include <iostream>

#include "ends_last.h"
#include "support/child_process.h"

/// The lines that the end of a process leaves on standard error, without times.
static std::string ErrorsOf(void (*theEnd)(), int& status) {
    ChildResult const child = RunInChild([theEnd] {
        AttributeMap settings;
        settings["Global"] = "3";
        settings["a module whose name needs memory"] = "4";
        InitializeLogger("/dev/null", &settings, "sample", false);
        TrapExceptionSignal(SIGSEGV, nullptr);
        CallAtTheEnd(theEnd);
    });
    status = child.status;
    std::string lines;
    std::istringstream errors(child.errors);
    for (std::string line; std::getline(errors, line);)
        if (!line.empty())
            lines += line.substr(line.find(" - ") == 8 ? 11 : 0) + "\n";
    return lines;
}

TEST(Outliving, LogsByTheLastThresholds) {
    int status;
    EXPECT_EQ(ErrorsOf(
                  [] {
                      LogMessage(4, "Net", "filtered");
                      LogMessage(3, "Net", "passes");
                      LogMessageBuffer = "a text that needs memory";
                      LogStringMessage(4, "a module whose name needs memory", LogMessageBuffer);
                  },
                  status),
              "WARNING/Net:  passes\n"
              "a module whose name needs memory:  a text that needs memory\n");
    EXPECT_EQ(status, 0);
}

TEST(Outliving, FindsPaperSizesPluginsAndSettings) {
    int status;
    EXPECT_EQ(ErrorsOf(
                  [] {
                      PaperSize().findMediaDataByKey("A4");
                      OpenSharedLibrary("/no/such", RTLD_NOW);
                      std::cerr << AttributeMap()(0) << AttributeMap()[0L].length() << std::endl;
                  },
                  status),
              "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A4\n"
              "FATAL/SharedObjectResource::loadResource():  Failed to load library (/no/such):  "
              "/no/such: cannot open shared object file: No such file or directory\n"
              "-1\n");
    EXPECT_EQ(status, 0);
}

TEST(Outliving, ReportsATrappedSignal) {
    int status;
    std::string const errors = ErrorsOf([] { raise(SIGSEGV); }, status);
    EXPECT_THAT(errors, testing::HasSubstr("Exception Signal:  SIGSEGV (11)"));
    EXPECT_EQ(status, 0);
}
