// How the handler of a trapped signal may end, other than by ending the process at once.
#include <CommonAPI/signal_trap.h>
#include <setjmp.h>
#include <sys/time.h>

#include <thread>

#include "support/child_process.h"

static unsigned int secondsAskedFor = 0;

/// Stands in front of the C library's: time passes a hundred times as fast.
extern "C" unsigned int alarm(unsigned int seconds) noexcept {
    secondsAskedFor = seconds;
    itimerval const timer = {{0, 0}, {0, static_cast<suseconds_t>(seconds * 10000)}};
    setitimer(ITIMER_REAL, &timer, nullptr);
    return 0;
}

static sigjmp_buf beforeSignal;

static void LeaveHandler(siginfo*) {
    siglongjmp(beforeSignal, 1);
}

TEST(HandlerEnd, AJumpOutOfItLeavesTheClockRight) {
    ChildResult const child = RunInChild([] {
        InitializeLogger("/dev/stdout", nullptr, nullptr, false);
        TrapExceptionSignal(SIGUSR1, LeaveHandler);
        if (sigsetjmp(beforeSignal, 1) == 0)
            raise(SIGUSR1);
        setenv("TZ", "<later>-1:11:11", 1);
        std::time_t const now = std::time(nullptr);
        char time[20];
        std::strftime(time, sizeof time, "%X", std::localtime(&now));
        LogMessage(1, "The time is", time);
    });
    std::size_t const line = child.output.find(" - FATAL") - 8;
    std::string const expected = child.output.substr(child.output.find("is:  ") + 5, 8);
    EXPECT_EQ(child.output.substr(line, 8), expected);
}

#ifdef COMMONAPI_HARDENED
[[noreturn]] static void Stick(siginfo*) {
    LogMessage(1, "Net", "stays");
    for (;;)
        pause();
}

TEST(HardenedHandlerEnd, AReportThatSticksEndsTheProcessInTheEnd) {
    for (bool const besideAnotherThread : {false, true}) {
        ChildResult const child = RunLogged([besideAnotherThread] {
            TrapExceptionSignal(SIGUSR1, Stick);
            if (besideAnotherThread)
                std::thread([] { raise(SIGUSR1); }).join();
            raise(SIGUSR1);
        });
        EXPECT_EQ(child.status, 0) << besideAnotherThread;
        EXPECT_EQ(child.log, "FATAL/Net:  stays\n") << besideAnotherThread;
    }
}

TEST(HardenedHandlerEnd, AHandlerThatWasLeftHasNoDeadline) {
    ChildResult const child = RunInChild([] {
        TrapExceptionSignal(SIGUSR1, LeaveHandler);
        if (sigsetjmp(beforeSignal, 1) == 0)
            raise(SIGUSR1);
        timespec const half = {0, 500000000};
        timespec left = half;
        while (nanosleep(&left, &left) != 0)
            continue;
        std::printf("%u", secondsAskedFor);
    });
    EXPECT_EQ(child.output, "30");
}
#endif
