#include "signals/signal_report.h"

#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <sys/syscall.h>

#include <thread>

#include "support/child_process.h"

// These stand in front of the C library's, which take locks that interrupted code may hold.
static bool volatile handling = false;

static void Forbid(char const* call) {
    if (!handling)
        return;
    dprintf(STDERR_FILENO, "%s in a handler", call);
    _exit(EXIT_FAILURE);
}

#ifdef OWN_MALLOC
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* malloc(std::size_t size) {
    Forbid("malloc");
    return __libc_malloc(size);
}
#endif
extern "C" std::tm* localtime(std::time_t const* time) noexcept {
    Forbid("localtime");
    return std::gmtime(time);
}

static void SayHandled(siginfo*) {
    std::cout << "handled";
}

/// The report when the handler has been taken away and `body` has the signal arrive.
static void ExpectReport(int number, std::string const& name, std::string const& code,
                         std::function<void()> const& body) {
    ChildResult const child = RunLogged([&] {
        TrapExceptionSignal(number, SayHandled);
        TrapExceptionSignal(number, nullptr);
        body();
    });
    std::string const banner =
        "FATAL/ExceptionSignalHandler:  \n\n*******************************\n"
        "  UNEXPECTED APPLICATION EXIT  \n*******************************\n";
    std::string const signal = name + " (" + std::to_string(number) + ")";
    EXPECT_EQ(child.log, banner + "Exception Signal:  " + signal + "\nSignal Code:       " + code +
                             "\n" + closingLine);
    EXPECT_EQ(child.status, 0) << signal << child.errors;
}

static int* volatile nowhere = nullptr;

__attribute__((no_sanitize("undefined"))) static void Fault() {
    *nowhere = 7;
}

TEST(SignalTrap, TellsEverySignalAndTheMeaningOfItsCodes) {
    std::ifstream file(TESTS "/signals/data/codes.txt");
    siginfo_t info = {};
    std::string signal;
    std::string code;
    while (file >> info.si_signo >> signal >> info.si_code && std::getline(file, code)) {
        std::string const meaning = code == " none" ? "" : code.substr(1) + "\n";
        ExpectReport(info.si_signo, signal, meaning,
                     [&] { syscall(SYS_rt_sigqueueinfo, getpid(), info.si_signo, &info); });
    }
    EXPECT_EQ(signal, "SIGRTMIN+29") << "the last row";
}

TEST(SignalTrap, ReportsASignalOfWhichNothingIsKnown) {
    ChildResult const child = RunLogged([] { CommonAPI::internal::ReportSignal(nullptr); });
    EXPECT_THAT(child.log, testing::EndsWith("\nException Signal:  Unknown\n" + closingLine));
}

TEST(SignalTrap, RefusesWhatCannotBeTrapped) {
    for (int const number : {0, -1, SIGKILL, 64, 1 << 30}) {
        std::string const told = "Couldn't trap Signal " + std::to_string(number) + "\n";
        ChildResult const child =
            RunInChild([number] { EXPECT_FALSE(TrapExceptionSignal(number, nullptr)); });
        EXPECT_EQ(child.output, number == 0 ? "" : told) << number;
    }
}

TEST(SignalTrap, HandsTheWholeInformationToTheHandler) {
    ChildResult const child = RunInChild([] {
        TrapExceptionSignal(SIGUSR1, [](siginfo* info) {
            EXPECT_EQ(info->si_signo, SIGUSR1);
            EXPECT_EQ(info->si_code, SI_QUEUE);
            EXPECT_EQ(info->si_value.sival_int, 42);
            SayHandled(info);
        });
        sigqueue(getpid(), SIGUSR1, {42});
    });
    EXPECT_EQ(child.output, "handled");
}

static void (*inHandler)();

TEST(SignalTrap, SignalsInAHandlerWaitIfTheyAreTheSameOrSegmentationFaults) {
    using Row = std::tuple<void (*)(), std::string, int>;
    for (auto const& [signal, output, status] : {
             Row{[] { raise(SIGUSR1); }, "goes on", 0},
             Row{[] { raise(SIGSEGV); }, "goes on", 0},
             Row{[] { raise(SIGUSR2); }, "handled", 0},
             Row{Fault, "", -SIGSEGV},
         }) {
        inHandler = signal;
        ChildResult const child = RunInChild([] {
            TrapExceptionSignal(SIGSEGV, SayHandled);
            TrapExceptionSignal(SIGUSR2, SayHandled);
            TrapExceptionSignal(SIGUSR1, [](siginfo*) {
                inHandler();
                std::cout << "goes on";
            });
            raise(SIGUSR1);
        });
        EXPECT_EQ(child.output, output) << status;
        EXPECT_EQ(child.status, status) << output;
    }
}

// Beside a second thread the C library's locks are real.
TEST(SignalTrap, ReportsWithoutMemoryWhateverWasInterrupted) {
    ExpectReport(SIGTERM, "SIGTERM", "Unknown Code:  -6\n", [] {
        std::string().swap(LogMessageBuffer);  // or its storage would count as leaked
        std::memset(static_cast<void*>(&LogMessageBuffer), 0x11, sizeof(char*));  // half changed
        std::thread([] {
            std::string time;
            GetCurrentTime(time, "a format that takes the place of that of the lines");
            handling = true;
            raise(SIGTERM);
        }).join();
    });
}

#ifdef COMMONAPI_HARDENED
/// The deadline, of which it tells, comes at once.
static void Stick(siginfo*) {
    LogMessage(1, "Deadline", std::to_string(alarm(0)).c_str());
    kill(getpid(), SIGALRM);
    sleep(10);
}

TEST(HardenedSignalTrap, AReportThatSticksEndsTheProcessInTheEnd) {
    ChildResult const child = RunLogged([] {
        TrapExceptionSignal(SIGUSR1, Stick);
        std::thread([] { raise(SIGUSR1); }).join();  // while the alarm reaches this one
    });
    EXPECT_EQ(child.log, "FATAL/Deadline:  30\n");
    EXPECT_EQ(child.status, 0);
}
#endif
