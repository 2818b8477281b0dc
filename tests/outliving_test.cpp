// What the library still does for code that ends after it.
#include <CommonAPI/paper_size.h>
#include <CommonAPI/signal_trap.h>
#include <stdlib.h>

#include "support/child_process.h"

static void (*theEnd)() = [] {};

// Called before any library is initialised, and so heard after all of them have ended.
[[gnu::section(".preinit_array"), gnu::used]] static void (*registerTheEnd)() = [] {
    on_exit([](int, void*) { theEnd(); }, nullptr);
};

struct LogsFromItsDestructor {
    std::string text;
    ~LogsFromItsDestructor() {
        LogMessageBuffer = text;
        LogStringMessage(4, "Static", LogMessageBuffer);
    }
};

TEST(Outliving, AllServicesWorkAsLongAsThereIsACaller) {
    ChildResult const child = RunInChild([] {
        static LogsFromItsDestructor const outlivesTheLog{"after the log"};
        OpenLog(logPath, {{"Global", "3"}, {"Static", "4"}});
        TrapExceptionSignal(SIGSEGV, nullptr);
        static LogsFromItsDestructor const goesBeforeTheLog{"before its end"};
        theEnd = [] {
            LogMessage(4, "Net", "filtered");
            static_cast<void>(LogsFromItsDestructor{"after the library, whose text needs memory"});
            PaperSize().findMediaDataByKey("A4");
            std::cerr << AttributeMap()(0) << AttributeMap()[0L].length() << std::endl;
            raise(SIGSEGV);
        };
    });
    EXPECT_EQ(child.log, "Static:  before its end\n" + closingLine);
    EXPECT_THAT(
        child.errors,
        testing::StartsWith(
            "Static:  after the log\n\nStatic:  after the library, whose text needs memory\n\n"
            "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A4\n\n-1\n"));
    EXPECT_THAT(child.errors, testing::HasSubstr("Exception Signal:  SIGSEGV (11)"));
    EXPECT_EQ(child.status, 0);
}
