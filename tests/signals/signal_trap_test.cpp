#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cstring>
#include <ctime>
#include <iostream>
#include <sstream>
#include <thread>

#include "signals/signal_report.h"
#include "support/logged_child.h"

#define UNSANITIZED __attribute__((no_sanitize("undefined")))

// The allocator and the conversion of times of this test stand in front of the C library's. When
// they are forbidden, a signal interrupts the first conversion, and nothing more may call them.
int forbidden = 0;

#ifdef OWN_MALLOC
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* malloc(std::size_t size) {
    return forbidden ? std::_Exit(EXIT_FAILURE), nullptr : __libc_malloc(size);
}
#endif

extern "C" std::tm* localtime(std::time_t const* time) {
    if (forbidden)
        raise(forbidden++ == 1 ? SIGUSR1 : SIGKILL);
    return std::gmtime(time);
}

namespace {

void ExpectReport(int number, std::string const& name, std::string const& code,
                  std::function<void()> const& body) {
    LoggedChild const child = RunLogged([&] { TrapExceptionSignal(number, nullptr), body(); });
    std::string const signal =
        (name == "Unknown" ? "" : "SIG") + name + " (" + std::to_string(number) + ")";
    EXPECT_EQ(child.status, 0) << signal;
    EXPECT_EQ(child.log,
              "FATAL/ExceptionSignalHandler:  \n\n*******************************\n"
              "  UNEXPECTED APPLICATION EXIT  \n*******************************\n"
              "Exception Signal:  " +
                  signal + "\nSignal Code:       " + code + "\nTerminating logging facility\n");
}

TEST(SignalTrap, ReportsFaults) {
    static int volatile zero = 0, * volatile nowhere = nullptr;
    ExpectReport(11, "SEGV", "Address not mapped to object\n", []() UNSANITIZED { *nowhere = 7; });
    ExpectReport(8, "FPE", "Integer divide by zero\n", []() UNSANITIZED { zero = 7 / zero; });
    ExpectReport(6, "ABRT", "Unknown Code:  -6\n", std::abort);
    EXPECT_EQ(RunInChild([] { TrapExceptionSignal(6, nullptr), std::abort(); }).status, 0);
    std::string const log = RunLogged([] { CommonAPI::internal::ReportSignal(nullptr); }).log;
    EXPECT_EQ(log.substr(log.find("Exception S")),
              "Exception Signal:  Unknown\nTerminating logging facility\n");
}

TEST(SignalTrap, TellsEverySignalAndTheMeaningOfItsCodes) {
    // Signals, by the literal number and by this host's, and the meanings of their codes from 1 on.
    std::string const rows[] = {
        "4 ILL\nIllegal opcode\nIllegal operand\nIllegal addressing mode\nIllegal trap\n"
        "Privileged opcode\nPrivileged register\nCoprocessor error\nInternal stack error\n",
        "5 TRAP\nProcess breakpoint\nProcess trace trap\n",
        "8 FPE\nInteger divide by zero\nInteger overflow\nFloating point divide by zero\n"
        "Floating point overflow\nFloating point underflow\nFloating point inexact result\n"
        "Floating point invalid operation\nSubscript out of range\n",
        "11 SEGV\nAddress not mapped to object\nInvalid permissions for mapped object\n",
        "10 USR1 7 BUS\nInvalid address alignment\nNon-existant physical address\n"
        "Object specific hardware error\n",
        "18 CONT 17 CHLD\nChild has exited\nChild was killed\nChild terminated abnormally\n"
        "Traced child has trapped\nChild has stopped\nStopped child has continued\n",
        "22 TTOU 29 IO\nData input available\nOutput buffers available\nInput message available\n"
        "I/O error\nHigh priority input available\nDevice disconnected\n",
        "1 HUP 2 INT 3 QUIT 6 ABRT 12 USR2 13 PIPE 14 ALRM 15 TERM 16 STKFLT 20 TSTP 21 TTIN "
        "23 URG 24 XCPU 25 XFSZ 26 VTALRM 27 PROF 28 WINCH 30 PWR 31 SYS 34 RTMIN+0 63 RTMIN+29 99 "
        "Unknown\n"
        "Unknown Code:  1"};
    for (std::string const& row : rows) {
        int number;
        std::string name, text;
        for (std::istringstream signals(row); signals >> number >> name;) {
            siginfo_t info = {};
            for (std::istringstream lines(row.substr(row.find('\n') + 1)); lines.good();) {
                std::getline(lines, text);
                ++info.si_code;
                info.si_signo = number;
                ExpectReport(number, name, text.empty() ? "" : text + "\n", [&] {
                    syscall(SYS_rt_sigqueueinfo, getpid(), number, &info);
                    CommonAPI::internal::ReportSignal(&info);  // for what is no signal
                });
            }
        }
    }
}

TEST(SignalTrap, RefusesNumbersAndCallsTheLastHandlerWithFaultsBlocked) {
    ChildResult const child = RunInChild([] {
        for (int const number : {0, -1, 64, 1 << 30, SIGKILL, SIGUSR1})
            std::cout << TrapExceptionSignal(number, nullptr);
        TrapExceptionSignal(SIGUSR1, [](siginfo* info) {
            raise(SIGSEGV);  // which has to wait
            std::cout << info->si_signo;
        });
        std::cout << raise(SIGUSR1);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.output, "0000Couldn't trap Signal 9\n0110");
}

TEST(SignalTrap, ReportsWhateverWasInterrupted) {
    ExpectReport(SIGUSR1, "USR1", "", [] {
        std::string().swap(LogMessageBuffer);  // or its storage would count as leaked
        std::memset(static_cast<void*>(&LogMessageBuffer), 0x11, sizeof(char*));  // half changed
        flockfile(*static_cast<FILE**>(dlsym(RTLD_DEFAULT, "_IO_list_all")));     // the log's
        alarm(10);  // instead of a wait without end
        std::thread([] {
            std::string time;
            forbidden = 1;
            GetCurrentTime(time, "a format that was not used before");
        }).join();
    });
}

}  // namespace
