/// Crashes a child process many times in each of several ways and prints, as the table of
/// docs/behaviour.md, how often the process ended with status 0, the log held a whole report,
/// and the log ended with the logger's closing line:
///     signal_reports [CRASHES [PART_OF_A_ROWS_NAME [SECONDS_UNTIL_STUCK]]]
#include <CommonAPI/logging.h>
#include <CommonAPI/paper_size.h>
#include <CommonAPI/signal_trap.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <regex>
#include <string>
#include <thread>

#include "temporary_folder.h"

namespace {

int secondsUntilStuck = 2;

struct Counts {
    int status;
    int report;
    int closing;
    int stuck;
};

void OpenLog(std::string const& path) {
    AttributeMap settings;
    settings["Global"] = "4";
    if (!InitializeLogger(path, &settings, "sample", false))
        _exit(EXIT_FAILURE);
}

int Random(int low, int high) {
    static std::minstd_rand engine(static_cast<unsigned int>(getpid()));
    return std::uniform_int_distribution(low, high)(engine);
}

/// Has `SIGUSR2` arrive once, after a random time.
void SignalWithin(int lowMicroseconds, int highMicroseconds) {
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGUSR2;
    timer_t timer;
    timer_create(CLOCK_MONOTONIC, &event, &timer);
    itimerspec const once = {{0, 0}, {0, 1000 * Random(lowMicroseconds, highMicroseconds)}};
    timer_settime(timer, 0, &once, nullptr);
}

int volatile zero = 0;
char* volatile nowhere = nullptr;
void* volatile kept;

void WriteToNull() {
    *nowhere = 'x';
}

void DivideByZero() {
    zero = 7 / zero;
}

int Recurse(int depth) {
    char volatile room[4096];
    room[0] = static_cast<char>(depth);
    return zero ? 0 : Recurse(depth + 1) + room[0];
}

void OverflowTheStack() {
    std::_Exit(Recurse(0));
}

/// The allocator finds that a block is freed twice, and aborts.
void FreeTwice() {
    void* const block = std::malloc(5000);
    void* const keepsItFromTheTop = std::malloc(5000);
    kept = block;
    std::free(block);
    std::free(kept);
    std::free(keepsItFromTheTop);
}

/// Makes the allocator's list of free blocks lead to an address without memory.
void FaultInTheAllocator() {
    void* const first = std::malloc(700);
    void* const second = std::malloc(700);
    kept = first;  // or the compiler would leave it out
    kept = second;
    std::free(first);
    std::free(second);
    void* const freed = kept;
    std::uintptr_t const link = (reinterpret_cast<std::uintptr_t>(freed) >> 12) ^ 0x10;
    std::memcpy(freed, &link, sizeof link);
    kept = std::malloc(700);
    kept = std::malloc(700);
}

[[noreturn]] void AllocateUntilTheSignal() {
    SignalWithin(50, 3000);
    void* blocks[64] = {};
    while (true) {
        void*& block = blocks[Random(0, 63)];
        std::free(block);
        block = std::malloc(static_cast<std::size_t>(Random(1, 5000)));
    }
}

/// With a second thread, the allocator and the C library lock what they leave unlocked without.
[[noreturn]] void AllocateBesideAThread() {
    std::thread([] { pause(); }).detach();
    AllocateUntilTheSignal();
}

[[noreturn]] void LogUntilTheSignal() {
    SignalWithin(50, 3000);
    PaperSize sizes;
    while (true)
        sizes.findMediaDataByKey("a name that is long enough for the allocator");
}

void RaiseTwoSignals() {
    SignalWithin(1, 250);
    raise(SIGUSR1);
}

void RaiseWhileAllIsWell() {
    raise(SIGUSR1);
}

struct Row {
    char const* name;
    void (*crash)();
    bool beforeTheLog = false;
};

constexpr Row rows[] = {
    {"write through a null pointer", WriteToNull},
    {"division by zero", DivideByZero},
    {"`abort`", std::abort},
    {"stack overflow", OverflowTheStack},
    {"block freed twice: the allocator aborts", FreeTwice},
    {"fault inside the allocator", FaultInTheAllocator},
    {"signal while the program allocates", AllocateUntilTheSignal},
    {"the same beside a second thread", AllocateBesideAThread},
    {"signal while a line is written", LogUntilTheSignal},
    {"second signal during the report", RaiseTwoSignals},
    {"signal before the log is open", RaiseWhileAllIsWell, true},
};

void TrapAll() {
    for (int const number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGUSR1, SIGUSR2})
        TrapExceptionSignal(number, nullptr);
}

[[noreturn]] void RunChild(Row const& row, std::string const& path) {
    int const sink = open("/dev/null", O_WRONLY);
    dup2(sink, STDERR_FILENO);
    TrapAll();
    if (!row.beforeTheLog)
        OpenLog(path);
    row.crash();
    _exit(EXIT_FAILURE);
}

int WaitForEnd(pid_t child, bool& stuck) {
    int status = 0;
    for (int i = 0; i < secondsUntilStuck * 1000; ++i) {
        if (waitpid(child, &status, WNOHANG) == child)
            return status;
        usleep(1000);
    }
    stuck = true;
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return status;
}

bool HasReport(std::string const& log) {
    std::regex const report(
        "FATAL/ExceptionSignalHandler:  \n\n\\*{31}\n  UNEXPECTED APPLICATION EXIT  \n\\*{31}\n"
        "Exception Signal:  SIG[A-Z0-9]+ \\([0-9]+\\)\nSignal Code:       [^\n]*\n");
    return std::regex_search(log, report);
}

Counts Measure(Row const& row, int crashes) {
    Counts counts = {};
    TemporaryFolder const folder;  // children end without leaving this function
    std::string const path = folder.file("log");
    for (int i = 0; i < crashes; ++i) {
        unlink(path.c_str());
        pid_t const child = fork();
        if (child == 0)
            RunChild(row, path);
        bool stuck = false;
        int const status = WaitForEnd(child, stuck);
        std::ifstream file(path);
        std::string const log(std::istreambuf_iterator<char>(file), {});
        counts.stuck += stuck;
        counts.status += !stuck && WIFEXITED(status) && WEXITSTATUS(status) == 0;
        counts.report += HasReport(log);
        counts.closing += log.find("\nTerminating logging facility\n") != std::string::npos;
    }
    return counts;
}

}  // namespace

int main(int count, char** arguments) {
    int const crashes = count > 1 ? std::atoi(arguments[1]) : 1000;
    std::string const only = count > 2 ? arguments[2] : "";
    if (count > 3)
        secondsUntilStuck = std::atoi(arguments[3]);
    std::printf(
        "| of %d | status 0 | whole report | closing line | stuck |\n|---|---|---|---|---|\n",
        crashes);
    std::fflush(stdout);  // or each child would write it again
    for (Row const& row : rows) {
        if (std::string(row.name).find(only) == std::string::npos)
            continue;
        Counts const counts = Measure(row, crashes);
        std::printf("| %s | %d | %d | %d | %d |\n", row.name, counts.status, counts.report,
                    counts.closing, counts.stuck);
        std::fflush(stdout);
    }
}
