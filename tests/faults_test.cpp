// What happens when the system fails the library, or ends the program in the middle of a line.
#include <CommonAPI/encryption_api.h>
#include <CommonAPI/paper_size.h>
#include <CommonAPI/shared_object_loader.h>
#include <CommonAPI/signal_trap.h>
#include <CommonAPI/system_information.h>
#include <dlfcn.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/stat.h>

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

static off_t Size(int descriptor) {
    struct stat status;
    fstat(descriptor, &status);
    return status.st_size;
}

/// Uses every class and service, and tells whether all is right.
static bool AllWorks(TemporaryFile const& log) {
    bool right = OpenLog(log.path(), {{name, "4"}});
    LogMessage(4, name, std::string(3000, 'x').c_str());
    UnicodeString narrow("ISO-8859-1", name);
    UnicodeString wide(narrow.wc_str());
    ByteArray bytes(wide.c_str());
    std::string text;
    bytes.getASCIIHex(text);
    bytes.loadASCIIHex(text);
    right &= std::strcmp(bytes.c_str(), name) == 0;

    static EncryptionAPI api;  // keyed by an earlier call, or without a cipher
    std::string before;
    std::string after;
    api.encryptString(name, before);
    EncryptionAPI().initializeAPI(bytes, 4);
    api.initializeAPI(bytes, 3);
    api.encryptString(name, after);
    right &= before == after || before.size() < after.size();  // never with a cipher without key
    right &= api.decryptString(after, text) && text == name;

    static PaperSizeData const paper = {name, 1, 2, 3, 4};
    PaperSize sizes;
    sizes.addPaperSizeToList(&paper);
    right &= sizes.findMediaDataByKey(name) == &paper;
    GetCurrentTime(text, name);
    right &= text == name;
    right &= OpenSharedLibrary(nullptr, RTLD_NOW) != nullptr;
    right &= TrapExceptionSignal(SIGUSR1, nullptr);
    TerminateLogger();
    return right && Size(log.descriptor()) > 3000;
}

static void Limit(decltype(RLIMIT_FSIZE) resource, rlim_t value) {
    rlimit limit;
    getrlimit(resource, &limit);
    limit.rlim_cur = std::min(value, limit.rlim_max);
    setrlimit(resource, &limit);
}

TEST(Faults, AnAllocationThatFailsPassesAndBreaksNothing) {
    ExpectInChild([] {
        TemporaryFile const log;
        Limit(RLIMIT_NOFILE, rlim_t(dup(STDIN_FILENO)) + 4);  // no room for files left open
        OpenLog(log.path(), {{name, "4"}});
        auto const written = [&] { return Size(log.descriptor()) + Size(STDERR_FILENO); };
        bool failed = true;
        for (int count = 0; failed && !testing::Test::HasFailure(); ++count) {
            bool threw = false;
            allocationsLeft = count;
            try {
                AllWorks(log);
            } catch (std::bad_alloc const&) {
                threw = true;
            }
            failed = std::exchange(allocationsLeft, -1) < 0;
            EXPECT_EQ(threw, failed) << "after " << count << " allocations";
            off_t const before = written();
            LogMessage(4, name, "passes");
            EXPECT_GT(written(), before) << "after " << count << " allocations";
            EXPECT_TRUE(AllWorks(log)) << "after " << count << " allocations";
        }
    });
}

TEST(Faults, AProgramGoesOnWithoutDescriptorsOrSpace) {
    ChildResult const child = RunInChild([] {
        Limit(RLIMIT_NOFILE, 0);
        EXPECT_FALSE(OpenLog("/dev/full", {}));
        EXPECT_STREQ(UnicodeString("abc").wc_str(), L"abc") << "which needs no descriptor";
        Limit(RLIMIT_NOFILE, RLIM_INFINITY);
        EXPECT_TRUE(OpenLog("/dev/full", {}));
        LogMessage(1, "Net", "lost");
    });
    EXPECT_EQ(child.errors, "");
    EXPECT_EQ(child.status, 0);
}

TEST(Faults, OnlyWhatCannotBeWrittenIsLost) {
    TemporaryFile const log;
    ExpectInChild([&log] {
        signal(SIGXFSZ, SIG_IGN);
        OpenLog(log.path(), {{"Global", "4"}});
        EXPECT_EQ(fchmod(log.descriptor(), 0400), 0);
        EXPECT_EQ(ftruncate(log.descriptor(), 0), 0);
        LogMessage(4, "Net", "goes on behind the gap");
        Limit(RLIMIT_FSIZE, rlim_t(Size(log.descriptor())) + 5);
        LogMessage(4, "Net", "cut");
        Limit(RLIMIT_FSIZE, RLIM_INFINITY);
        LogMessage(4, "Net", "whole");
    });
    std::string const content = ContentOf(log.path());
    EXPECT_EQ(content.rfind('\0'), content.find_first_not_of('\0') - 1) << "one gap, at the start";
    std::string const lines =
        "[0-9:]{8} - Net:  goes on behind the gap\n[0-9:]{13} - Net:  whole\n";
    EXPECT_THAT(content.c_str() + content.rfind('\0') + 1,
                testing::MatchesRegex(lines + closingLine));
}

/// How many lines there are, of which each process must have numbered its own.
static int CountLines(std::string const& log) {
    std::istringstream lines(log);
    std::map<std::string, int> next;
    int count = 0;
    for (std::string process, number; lines >> process >> number; ++count)
        if (number != std::to_string(next[process]++)) {
            ADD_FAILURE() << "cut, lost or out of order: " << process << ' ' << number;
            break;
        }
    return count;
}

TEST(Faults, FourProcessesWriteIntoOneLog) {
    constexpr int linesOfEach = 25000;
    ChildResult const child = RunLogged([] {
        std::string const process = std::to_string((fork() == 0) + 2 * (fork() == 0));
        for (int line = 0; line < linesOfEach; ++line)
            LogMessage(4, process.c_str(), std::to_string(line).c_str());
        while (wait(nullptr) > 0)
            continue;
        if (process != "0")
            _exit(EXIT_SUCCESS);
    });
    std::size_t const closing = child.log.find(closingLine);
    EXPECT_EQ(CountLines(child.log.substr(0, closing)), 4 * linesOfEach);
}

TEST(Faults, LinesBeforeASignalAreWhole) {
    for (int const signal : {SIGKILL, SIGUSR1}) {
        TemporaryFile const log;
        ChildResult const child = RunInChild([&] {
            OpenLog(log.path(), {{"Global", "4"}});
            TrapExceptionSignal(SIGUSR1, nullptr);
            if (fork() == 0) {
                while (Size(log.descriptor()) < 10000)
                    usleep(100);
                kill(getppid(), signal);
                _exit(EXIT_SUCCESS);
            }
            for (int line = 0;; ++line)
                LogMessage(4, "Net", std::to_string(line).c_str());
        });
        std::string const lines = LinesAfterHeader(ContentOf(log.path()));
        std::size_t const report = lines.find("FATAL/ExceptionSignalHandler");
        EXPECT_GT(CountLines(lines.substr(0, report)), 100) << signal;
        EXPECT_EQ(report != std::string::npos, signal == SIGUSR1) << signal;
        EXPECT_EQ(child.status, signal == SIGUSR1 ? EXIT_SUCCESS : -SIGKILL);
    }
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

TEST(Wiping, LeavesNoOpenedPassword) {
    EncryptionAPI api;
    ByteArray builtIn("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R");
    ByteArray sealed;
    api.initializeAPI(builtIn, 3);
    api.encryptData(name, sealed);
    freedWithName = 0;
    api.initializeAPI(sealed, 4);
    EXPECT_EQ(freedWithName, 0) << "blocks were freed that hold the password";

    api.encryptData(name, sealed);
    EXPECT_EQ(freedWithName, 1) << "the check itself, on a buffer that is not wiped";
}
