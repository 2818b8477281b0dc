// What happens when the system fails the library, or ends the program in the middle of a line.
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/signal_trap.h>
#include <malloc.h>
#include <sys/resource.h>

#include "support/child_process.h"

static char const name[] = "a name that needs storage of its own";
static long allocationsLeft = -1;  // until one fails; negative for no end
static int freedWithName = 0;

[[gnu::noinline]] void* operator new(std::size_t size) {  // inlined, gcc sees a mismatch
    if (allocationsLeft-- == 0)
        throw std::bad_alloc();
    return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    if (memory && memmem(memory, malloc_usable_size(memory), name, sizeof name - 1))
        ++freedWithName;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

static void Limit(decltype(RLIMIT_FSIZE) resource, rlim_t value) {
    rlimit limit;
    getrlimit(resource, &limit);
    limit.rlim_cur = std::min(value, limit.rlim_max);
    setrlimit(resource, &limit);
}

/// Has each allocation fail once, until none does.
static void FailEveryAllocation() {
    bool failed = true;
    for (int count = 0; failed; ++count) {
        EncryptionAPI api;
        std::string encrypted;
        failed = false;
        allocationsLeft = count;
        try {
            OpenLog(logPath, {{name, "4"}});
            LogMessage(4, name, std::string(3000, 'x').c_str());
            TrapExceptionSignal(SIGUSR1, nullptr);
            ByteArray key(UnicodeString(name).c_str());
            api.initializeAPI(key, 3);
        } catch (std::bad_alloc const&) {
            failed = true;
        }
        allocationsLeft = -1;
        EXPECT_TRUE(OpenLog(logPath, {{name, "4"}})) << "after " << count << " allocations";
        TerminateLogger();
        EXPECT_THAT(ContentOf(logPath), testing::EndsWith(closingLine)) << count;
        api.encryptString(name, encrypted);
        EXPECT_EQ(encrypted.size() <= sizeof name, failed) << "a cipher without its key";
    }
}

TEST(Faults, AnAllocationThatFailsPassesAndBreaksNothing) {
    ExpectInChild([] {
        Limit(RLIMIT_NOFILE, rlim_t(dup(STDIN_FILENO)) + 8);  // no room for files left open
        FailEveryAllocation();
        FailEveryAllocation();                // also of those behind what is made only once
        Limit(RLIMIT_NOFILE, RLIM_INFINITY);  // sanitizers name leaks with the help of a program
    });
}

TEST(Faults, OnlyWhatCannotBeWrittenIsLost) {
    ChildResult const child = RunLogged([] {
        signal(SIGXFSZ, SIG_IGN);
        Limit(RLIMIT_FSIZE, 0);
        LogMessage(4, "Net", "lost");
        Limit(RLIMIT_FSIZE, RLIM_INFINITY);
        LogMessage(4, "Net", "whole");
        TerminateLogger();
        LogMessage(1, "Net", "told");  // sanitizers need descriptors to judge a stream's first use
        Limit(RLIMIT_NOFILE, 0);
        EXPECT_FALSE(OpenLog("/dev/null", {}));
        EXPECT_STREQ(UnicodeString("abc").wc_str(), L"abc") << "which needs no descriptor";
        Limit(RLIMIT_NOFILE, RLIM_INFINITY);
        EXPECT_TRUE(OpenLog("/dev/full", {}));
        LogMessage(1, "Net", "lost");
    });
    EXPECT_EQ(child.log, "Net:  whole\n" + closingLine);
    EXPECT_EQ(child.status, 0) << child.errors;
}

/// How many lines there are, of which each process must have numbered its own.
static int CountLines(std::string const& log) {
    std::istringstream lines(log);
    std::map<std::string, int> next;
    int count = 0;
    for (std::string process, number; lines >> process >> number; ++count)
        if (number != std::to_string(next[process]++))
            return -count;  // cut, lost or out of order
    return count;
}

static void SendOften(decltype(ITIMER_REAL) timer, suseconds_t microseconds) {
    itimerval const often = {{0, microseconds}, {0, microseconds}};
    setitimer(timer, &often, nullptr);
}

TEST(Faults, FourInterruptedProcessesWriteIntoOnePipe) {
    constexpr int linesOfEach = 20000;  // more than a pipe holds
    ChildResult const child = RunInChild([] {
        std::FILE* const slowReader = popen("sleep 0.1; cat", "w");
        struct sigaction action = {};
        action.sa_handler = [](int) {};  // without a restart of what is interrupted
        sigaction(SIGALRM, &action, nullptr);
        OpenLog("/dev/fd/" + std::to_string(fileno(slowReader)), {{"Global", "4"}});
        std::string const process = std::to_string((fork() == 0) + 2 * (fork() == 0));
        SendOften(ITIMER_REAL, 500);
        for (int line = 0; line < linesOfEach; ++line)
            LogMessage(4, process.c_str(), std::to_string(line).c_str());
        if (process != "0")
            _exit(EXIT_SUCCESS);
        TerminateLogger();
        pclose(slowReader);  // at whose end the other writers have ended, too
    });
    std::string log = LinesAfterHeader(child.output);
    log.erase(log.find(closingLine), closingLine.size());  // of the first, maybe before the others
    EXPECT_EQ(CountLines(log), 4 * linesOfEach);
}

TEST(Faults, LinesBeforeASignalAreWhole) {
#ifdef _GLIBCXX_DEBUG
    GTEST_SKIP() << "iterators take a lock, which the signal may find taken";
#endif
    ChildResult const child = RunLogged([] {
        TrapExceptionSignal(SIGPROF, nullptr);
        SendOften(ITIMER_PROF, 20000);  // of its own time, however busy the machine
        for (int line = 0;; ++line)
            LogMessage(4, "Net", std::to_string(line).c_str());
    });
    std::size_t const report = child.log.find("FATAL/ExceptionSignalHandler");
    ASSERT_NE(report, std::string::npos);
    EXPECT_GT(CountLines(child.log.substr(0, report)), 100);
}

// The finished library's optimiser must not have dropped what nobody reads.
TEST(Wiping, LeavesNoKeyedTables) {
    alignas(Blowfish) char used[sizeof(Blowfish)];
    Blowfish* const cipher = new (used) Blowfish;
    cipher->setPassword(name);
    cipher->~Blowfish();
    Blowfish const unkeyed;
    std::string const left(used + sizeof(std::string), std::end(used));
    char const* const initial = reinterpret_cast<char const*>(&unkeyed) + sizeof(std::string);
    EXPECT_TRUE(left == std::string(initial, left.size())) << "the tables are still keyed";
}

TEST(Wiping, LeavesNoPasswordAndNoPlainText) {
    EncryptionAPI api;
    ByteArray builtIn("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R");
    ByteArray key(name);
    ByteArray sealed;
    std::string bySealed;
    std::string encrypted;
    std::string plain;
    api.initializeAPI(builtIn, 3);
    api.encryptData(name, sealed);
    freedWithName = 0;
    api.initializeAPI(sealed, 4);
    EXPECT_EQ(freedWithName, 0) << "blocks were freed that hold the opened password";
    api.encryptString(name, bySealed);
    freedWithName = 0;
    api.initializeAPI(key, 3);
    EXPECT_EQ(freedWithName, 0) << "blocks were freed that hold the key";
    api.encryptString(name, encrypted);
    EXPECT_EQ(bySealed, encrypted) << "the sealed key was opened with another passphrase";
    freedWithName = 0;
    api.decryptString(encrypted, plain);
    EXPECT_EQ(freedWithName, 0) << "blocks were freed that hold the plain text";

    api.encryptData(name, sealed);
    EXPECT_EQ(freedWithName, 1) << "the check itself, on a buffer that is not wiped";
}
