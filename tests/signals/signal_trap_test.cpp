#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <sys/syscall.h>

#include <ctime>
#include <thread>

#include "support/child_process.h"

#define UNCHECKED __attribute__((no_sanitize("undefined")))

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

/// The report without a handler, when `body` has the signal arrive.
static void ExpectReport(int number, std::string const& signal, std::string const& code,
                         std::function<void()> const& body) {
    ChildResult const child = RunLogged([&] {
        TrapExceptionSignal(number, nullptr);
        body();
    });
    std::string const banner =
        "FATAL/ExceptionSignalHandler:  \n\n*******************************\n"
        "  UNEXPECTED APPLICATION EXIT  \n*******************************\n";
    EXPECT_EQ(child.log, banner + "Exception Signal:  " + signal + "\nSignal Code:       " + code +
                             "\n" + closingLine);
    EXPECT_EQ(child.status, 0) << signal << child.errors;
}

/// Calls what is installed for SIGUSR1.
static void Deliver(siginfo_t* info) {
    struct sigaction installed;
    sigaction(SIGUSR1, nullptr, &installed);
    installed.sa_sigaction(SIGUSR1, info, nullptr);
}

static void SayHandled(siginfo*) {
    std::cout << "handled";
}

static int volatile zero = 0;
static int* volatile nowhere = nullptr;

TEST(SignalTrap, ReportsFaults) {
    ExpectReport(SIGSEGV, "SIGSEGV (11)", "Address not mapped to object\n",
                 []() UNCHECKED { *nowhere = 7; });
#ifdef __arm__  // which divides by a function that raises the signal
    char const* const byZero = "";
#else
    char const* const byZero = "Integer divide by zero\n";
#endif
    ExpectReport(SIGFPE, "SIGFPE (8)", byZero, []() UNCHECKED { zero = 7 / zero; });
    ExpectReport(SIGABRT, "SIGABRT (6)", "Unknown Code:  -6\n", std::abort);
}

TEST(SignalTrap, TellsEverySignalAndTheMeaningOfItsCodes) {
    // Signals by number and name, and the meanings of their codes from 1 on, empty for none.
    std::ifstream file(TESTS "/signals/data/codes.txt");
    for (std::string signals, name, text; std::getline(file, signals);) {
        std::vector<std::string> meanings;
        while (std::getline(file, text) && !text.empty())
            meanings.push_back(text + "\n");
        if (file)
            meanings.emplace_back("");
        std::istringstream words(signals);
        for (siginfo_t info = {}; words >> info.si_signo >> name;) {
            std::string const signal = name + " (" + std::to_string(info.si_signo) + ")";
            info.si_code = 0;
            for (std::string const& meaning : meanings) {
                ++info.si_code;
                ExpectReport(info.si_signo, signal, meaning,
                             [&] { syscall(SYS_rt_sigqueueinfo, getpid(), info.si_signo, &info); });
            }
        }
    }
}

TEST(SignalTrap, ReportsWhatIsNoSignal) {
    ExpectReport(SIGUSR1, "Unknown (99)", "Unknown Code:  0\n", [] {
        siginfo_t info = {};
        info.si_signo = 99;
        Deliver(&info);
    });
    ChildResult const child = RunLogged([] {
        TrapExceptionSignal(SIGUSR1, nullptr);
        Deliver(nullptr);
    });
    EXPECT_THAT(child.log, testing::EndsWith("*\nException Signal:  Unknown\n" + closingLine));
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
            EXPECT_EQ(info->si_pid, getpid());
            EXPECT_EQ(info->si_value.sival_int, 42);
            SayHandled(info);
        });
        sigqueue(getpid(), SIGUSR1, {42});
    });
    EXPECT_EQ(child.output, "handled");
    EXPECT_EQ(child.status, 0) << "as after every handler";
}

TEST(SignalTrap, ReportsAgainWhenTheHandlerIsTakenBack) {
    ExpectReport(SIGUSR1, "SIGUSR1 (10)", "", [] {
        TrapExceptionSignal(SIGUSR1, SayHandled);
        TrapExceptionSignal(SIGUSR1, nullptr);
        raise(SIGUSR1);
    });
}

static int signalInHandler;  // or a fault, if 0

UNCHECKED static void InterruptedHandler(siginfo*) {
    if (signalInHandler == 0)
        *nowhere = 7;
    raise(signalInHandler);
    std::cout << "goes on";
}

TEST(SignalTrap, SignalsInAHandlerWaitIfTheyAreTheSameOrSegmentationFaults) {
    using Row = std::tuple<int, std::string, int>;
    for (auto const& [signal, output, status] :
         {Row{SIGUSR1, "goes on", 0}, Row{SIGSEGV, "goes on", 0}, Row{SIGUSR2, "handled", 0},
          Row{0, "", -SIGSEGV}}) {
        signalInHandler = signal;
        ChildResult const child = RunInChild([] {
            TrapExceptionSignal(SIGSEGV, SayHandled);
            TrapExceptionSignal(SIGUSR2, SayHandled);
            TrapExceptionSignal(SIGUSR1, nullptr);
            TrapExceptionSignal(SIGUSR1, InterruptedHandler);
            raise(SIGUSR1);
        });
        EXPECT_EQ(child.output, output) << signal;
        EXPECT_EQ(child.status, status) << signal;
    }
}

// Beside a second thread the C library's locks are real.
TEST(SignalTrap, ReportsWithoutMemoryWhateverWasInterrupted) {
    ExpectReport(SIGTERM, "SIGTERM (15)", "Unknown Code:  -6\n", [] {
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
