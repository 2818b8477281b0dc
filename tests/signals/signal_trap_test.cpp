#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <sys/syscall.h>

#include <iostream>
#include <thread>

#include "signals/signal_report.h"
#include "support/child_process.h"

#define UNCHECKED __attribute__((no_sanitize("undefined")))

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

static void ExpectReport(int number, std::string const& name, std::string const& code,
                         std::function<void()> const& body) {
    ChildResult const child = RunLogged([&] { TrapExceptionSignal(number, nullptr), body(); });
    EXPECT_EQ(child.status, 0) << number;
    EXPECT_EQ(child.log,
              "FATAL/ExceptionSignalHandler:  \n\n*******************************\n"
              "  UNEXPECTED APPLICATION EXIT  \n*******************************\n"
              "Exception Signal:  " +
                  name + " (" + std::to_string(number) + ")\nSignal Code:       " + code + "\n" +
                  closingLine);
}

TEST(SignalTrap, ReportsFaults) {
    static int volatile zero = 0, * volatile nowhere = nullptr;
    ExpectReport(11, "SIGSEGV", "Address not mapped to object\n", []() UNCHECKED { *nowhere = 7; });
    ExpectReport(8, "SIGFPE", "Integer divide by zero\n", []() UNCHECKED { zero = 7 / zero; });
    ExpectReport(6, "SIGABRT", "Unknown Code:  -6\n", std::abort);
    EXPECT_EQ(RunInChild([] { TrapExceptionSignal(6, nullptr), std::abort(); }).status, 0);
    std::string const log = RunLogged([] { CommonAPI::internal::ReportSignal(nullptr); }).log;
    EXPECT_EQ(log.substr(log.find("Exception S")), "Exception Signal:  Unknown\n" + closingLine);
}

TEST(SignalTrap, TellsEverySignalAndTheMeaningOfItsCodes) {
    // Signals by number and name, and the meanings of their codes from 1 on, empty for none.
    std::ifstream file(TESTS "/signals/data/codes.txt");
    for (std::string signals, name, text; std::getline(file, signals);) {
        std::vector<std::string> meanings;
        while (std::getline(file, text) && (meanings.push_back(text), !text.empty()))
            continue;
        int number;
        for (std::istringstream words(signals); words >> number >> name;) {
            siginfo_t info = {};
            info.si_signo = number;
            for (std::string const& meaning : meanings) {
                ++info.si_code;
                ExpectReport(number, name, meaning.empty() ? "" : meaning + "\n", [&] {
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
    EXPECT_EQ(child.output,
              "0Couldn't trap Signal -1\n0Couldn't trap Signal 64\n0Couldn't trap Signal 1073741824\n"
              "0Couldn't trap Signal 9\n0110");
}

TEST(SignalTrap, ReportsWhateverWasInterrupted) {
    ExpectReport(SIGUSR1, "SIGUSR1", "", [] {
        std::string().swap(LogMessageBuffer);  // or its storage would count as leaked
        std::memset(static_cast<void*>(&LogMessageBuffer), 0x11, sizeof(char*));  // half changed
        alarm(10);  // instead of a wait without end
        std::thread([] {
            std::string time;
            forbidden = 1, GetCurrentTime(time, "a format that was not used before");
        }).join();
    });
}
