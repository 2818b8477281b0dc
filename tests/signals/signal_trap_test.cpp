#include <CommonAPI/signal_trap.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cstring>
#include <ctime>

#include "signals/signal_report.h"
#include "support/logged_child.h"

// The allocator and the conversion of times of this test stand in front of the C library's, to be
// interrupted and to notice whoever calls them.
namespace {

bool volatile forbidden = false;
void (*volatile interruption)() = nullptr;

void MustBeAllowed() {
    if (forbidden)
        std::_Exit(EXIT_FAILURE);
}

}  // namespace

#ifndef __SANITIZE_ADDRESS__
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* malloc(std::size_t size) {
    MustBeAllowed();
    return __libc_malloc(size);
}
#endif

extern "C" std::tm* localtime(std::time_t const* time) {
    MustBeAllowed();
    static std::tm result;
    if (interruption)
        interruption();
    return localtime_r(time, &result);
}

namespace {

using testing::HasSubstr;

std::string const banner =
    "FATAL/ExceptionSignalHandler:  \n\n*******************************\n"
    "  UNEXPECTED APPLICATION EXIT  \n*******************************\n";
std::string const closing = "\nTerminating logging facility\n";

std::string Report(std::string const& name, std::string const& code) {
    return banner + "Exception Signal:  " + name + "\nSignal Code:       " + code + closing;
}

void Trap(int number, void (*handler)(siginfo*) = nullptr) {
    if (!TrapExceptionSignal(number, handler))
        std::_Exit(EXIT_FAILURE);
}

/// Has this process receive a signal with that code.
void Queue(int number, int code) {
    siginfo_t info = {};
    info.si_signo = number;
    info.si_code = code;
    syscall(SYS_rt_sigqueueinfo, getpid(), number, &info);
}

LoggedChild RunQueued(int number, int code) {
    return RunLogged([=] {
        Trap(number);
        Queue(number, code);
        std::_Exit(EXIT_FAILURE);
    });
}

int volatile zero = 0;
char* volatile nowhere = nullptr;

// The faults themselves, not what a sanitizer says of them.
__attribute__((no_sanitize("undefined"))) void WriteToNull() {
    *nowhere = 'x';
}

__attribute__((no_sanitize("undefined"))) void DivideByZero() {
    zero = 7 / zero;
}

TEST(SignalTrap, ReportsRealFaults) {
    struct {
        int number;
        void (*fault)();
        char const* name;
        char const* code;
    } const rows[] = {
        {SIGSEGV, WriteToNull, "SIGSEGV (11)", "Address not mapped to object\n"},
        {SIGFPE, DivideByZero, "SIGFPE (8)", "Integer divide by zero\n"},
        {SIGILL, [] { __builtin_trap(); }, "SIGILL (4)", "Illegal operand\n"},
        {SIGABRT, std::abort, "SIGABRT (6)", "Unknown Code:  -6\n"},
        {SIGTERM, [] { kill(getpid(), SIGTERM); }, "SIGTERM (15)", "Unknown Code:  0\n"},
    };
    for (auto const& row : rows) {
        LoggedChild const child = RunLogged([&] {
            Trap(row.number);
            row.fault();
            std::_Exit(EXIT_FAILURE);
        });
        EXPECT_EQ(child.status, 0) << row.name;
        EXPECT_EQ(child.log, Report(row.name, row.code));
    }
}

TEST(SignalTrap, TellsTheMeaningOfEveryCode) {
    using Texts = std::vector<char const*>;
    Texts const busError = {"Invalid address alignment", "Non-existant physical address",
                            "Object specific hardware error"};
    Texts const childStatus = {
        "Child has exited",         "Child was killed",  "Child terminated abnormally",
        "Traced child has trapped", "Child has stopped", "Stopped child has continued"};
    Texts const pollableEvent = {"Data input available",          "Output buffers available",
                                 "Input message available",       "I/O error",
                                 "High priority input available", "Device disconnected"};
    struct {
        int number;
        char const* name;
        Texts codes;
    } const rows[] = {
        {4,
         "SIGILL",
         {"Illegal opcode", "Illegal operand", "Illegal addressing mode", "Illegal trap",
          "Privileged opcode", "Privileged register", "Coprocessor error", "Internal stack error"}},
        {5, "SIGTRAP", {"Process breakpoint", "Process trace trap"}},
        {8,
         "SIGFPE",
         {"Integer divide by zero", "Integer overflow", "Floating point divide by zero",
          "Floating point overflow", "Floating point underflow", "Floating point inexact result",
          "Floating point invalid operation", "Subscript out of range"}},
        {11, "SIGSEGV", {"Address not mapped to object", "Invalid permissions for mapped object"}},
        // The literal numbers come first ...
        {10, "SIGUSR1", busError},
        {18, "SIGCONT", childStatus},
        {22, "SIGTTOU", pollableEvent},
        // ... then the signals that have the meaning on this host.
        {SIGBUS, "SIGBUS", busError},
        {SIGCHLD, "SIGCHLD", childStatus},
        {SIGIO, "SIGIO", pollableEvent},
    };
    for (auto const& row : rows) {
        std::string const name = std::string(row.name) + " (" + std::to_string(row.number) + ")";
        int const count = static_cast<int>(row.codes.size());
        for (int code = 0; code <= count + 1; ++code) {
            bool const known = code >= 1 && code <= count;
            std::string const text =
                known ? row.codes[static_cast<std::size_t>(code - 1)] + std::string("\n") : "";
            EXPECT_EQ(RunQueued(row.number, code).log, Report(name, text)) << "code " << code;
        }
    }
}

TEST(SignalTrap, NamesEverySignalAsThisHostNumbersIt) {
    struct {
        int number;
        char const* name;
    } const rows[] = {
        {1, "SIGHUP"},       {2, "SIGINT"},   {3, "SIGQUIT"},    {6, "SIGABRT"},
        {12, "SIGUSR2"},     {13, "SIGPIPE"}, {14, "SIGALRM"},   {15, "SIGTERM"},
        {16, "SIGSTKFLT"},   {20, "SIGTSTP"}, {21, "SIGTTIN"},   {23, "SIGURG"},
        {24, "SIGXCPU"},     {25, "SIGXFSZ"}, {26, "SIGVTALRM"}, {27, "SIGPROF"},
        {28, "SIGWINCH"},    {30, "SIGPWR"},  {31, "SIGSYS"},    {34, "SIGRTMIN+0"},
        {63, "SIGRTMIN+29"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(RunQueued(row.number, 3).log,
                  Report(row.name + std::string(" (") + std::to_string(row.number) + ")",
                         "Unknown Code:  3\n"));
    LoggedChild const reserved = RunLogged([] {
        siginfo info = {};
        info.si_signo = 33;
        CommonAPI::internal::ReportSignal(&info);
    });
    EXPECT_EQ(reserved.log, Report("Unknown (33)", "Unknown Code:  0\n"));
}

TEST(SignalTrap, ReportsASignalOfWhichNothingIsKnown) {
    LoggedChild const child = RunLogged([] {
        CommonAPI::internal::ReportSignal(nullptr);
        LogMessage(4, "Net", "it returned");
    });
    EXPECT_EQ(child.log, banner + "Exception Signal:  Unknown\nNet:  it returned" + closing);
}

TEST(SignalTrap, RefusesNumbersWithoutAnEntryAndTellsOfThoseTheSystemRefuses) {
    ChildResult const child = RunInChild([] {
        for (int const number : {0, -1, 64, 65, 1 << 30, 9, 32})
            if (TrapExceptionSignal(number, nullptr))
                std::_Exit(EXIT_FAILURE);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.output, "Couldn't trap Signal 9\nCouldn't trap Signal 32\n");
    EXPECT_EQ(child.errors, "");
}

TEST(SignalTrap, CallsTheLastHandlerWithSegmentationFaultsBlockedAndExitsWithStatusZero) {
    LoggedChild const child = RunLogged([] {
        Trap(SIGUSR1);
        Trap(SIGUSR1, [](siginfo* info) {
            sigset_t blocked;
            sigprocmask(SIG_BLOCK, nullptr, &blocked);
            std::string text;
            for (int number = 1; number <= SIGRTMAX; ++number)
                if (sigismember(&blocked, number) == 1)
                    text += " " + std::to_string(number);
            LogMessage(4, "Net", (std::to_string(info->si_code) + ":" + text).c_str());
        });
        Queue(SIGUSR1, 7);
        std::_Exit(EXIT_FAILURE);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, "Net:  7: 10 11" + closing);
}

TEST(SignalTrap, EndsAProcessThatHasNoLogYet) {
    ChildResult const child = RunInChild([] {
        Trap(SIGSEGV);
        WriteToNull();
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.output + child.errors, "");
}

TEST(SignalTrap, AsksTheAllocatorForNothing) {
    std::atexit([] { forbidden = false; });  // runs when the log has been closed
    LoggedChild const child = RunLogged([] {
        Trap(SIGUSR1);
        std::string().swap(LogMessageBuffer);  // even if the shared text has no room
        forbidden = true;
        raise(SIGUSR1);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, Report("SIGUSR1 (10)", ""));
}

TEST(SignalTrap, ReportsWithinTheConversionOfATime) {
    std::atexit([] { forbidden = false; });
    LoggedChild const child = RunLogged([] {
        Trap(SIGUSR1);
        interruption = [] {
            forbidden = true;
            raise(SIGUSR1);
        };
        LogMessage(4, "Net", "interrupted");
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, Report("SIGUSR1 (10)", ""));
}

TEST(SignalTrap, ReportsWhileTheSharedTextChanges) {
    LoggedChild const child = RunLogged([] {
        Trap(SIGUSR1);
        [[maybe_unused]] static char* volatile storage;
        storage = LogMessageBuffer.data();  // or it would count as leaked
        // What a text looks like between its old storage and its new one.
        std::memset(static_cast<void*>(&LogMessageBuffer), 0x11, sizeof(char*));
        raise(SIGUSR1);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.log, Report("SIGUSR1 (10)", ""));
}

}  // namespace
