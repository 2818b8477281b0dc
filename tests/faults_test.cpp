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
static long allocationsLeft = -1;  // until one fails
static int freedWithName = 0;

[[gnu::noinline]] void* operator new(std::size_t size) {  // inlined, gcc sees a mismatch
    return allocationsLeft-- == 0 ? throw std::bad_alloc() : std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    if (memory && memmem(memory, malloc_usable_size(memory), name, sizeof name - 1))
        ++freedWithName;
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

/// Uses every class and service, and tells whether all is right.
static bool AllWorks(AttributeMap& settings) {
    static PaperSizeData const paper = {name, 1, 2, 3, 4};
    static EncryptionAPI api;  // keyed by an earlier call, or without a cipher
    bool right = InitializeLogger("/dev/stdout", &settings, name, false);
    UnicodeString narrow("ISO-8859-1", name), wide(narrow.wc_str());
    ByteArray key(wide.c_str()), bytes;
    PaperSize sizes;
    sizes.addPaperSizeToList(&paper);
    std::string before, after, value;
    EncryptionAPI().initializeAPI(key, 4);
    api.encryptString(name, before), api.initializeAPI(key, 3), api.encryptString(name, after);
    right &= (before == after || before.size() < 40) && api.decryptString(after, after);
    bytes = after, bytes.getASCIIHex(value), bytes.loadASCIIHex(value);
    LogMessage(4, name, std::string(3000, 'x').c_str());
    GetCurrentTime(value, name);
    right &= value == bytes.c_str() && sizes.findMediaDataByKey(name) == &paper &&
             OpenSharedLibrary(nullptr, RTLD_NOW) && TrapExceptionSignal(SIGUSR1, nullptr);
    return TerminateLogger(), right && std::ifstream("/dev/stdout").get() == '-';  // of a header
}

TEST(Faults, AnAllocationThatFailsPassesAndBreaksNothing) {
    ChildResult const child = RunInChild([] {
        auto const written = [] { return lseek(1, 0, SEEK_END) + lseek(2, 0, SEEK_END); };
        AttributeMap settings;
        settings[name] = "4";
        InitializeLogger("/dev/stdout", &settings, name, false);
        bool failed = true;
        for (int count = 0; failed; ++count) {
            bool threw = false;
            allocationsLeft = count;
            try {
                AllWorks(settings);
            } catch (std::bad_alloc const&) {
                threw = true;
            }
            failed = std::exchange(allocationsLeft, -1) < 0;
            off_t const before = written();
            LogMessage(4, name, "passes");
            if (failed != threw || written() == before || !AllWorks(settings))
                std::exit(count + 1);
        }
    });
    EXPECT_EQ(child.status, 0) << "after so many allocations";
}

TEST(Faults, OnlyWhatCannotBeWrittenIsLost) {
    auto const open = [] { return InitializeLogger("/dev/full", nullptr, nullptr, false); };
    ChildResult const full = RunInChild([&] {
        rlimit limit = {0, 1024};
        setrlimit(RLIMIT_NOFILE, &limit);
        std::printf("%d%ls", open(), UnicodeString("abc").wc_str());
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
        std::printf("%d", open());
        LogMessage(1, "Net", "lost");
    });
    EXPECT_EQ(std::to_string(full.status) + full.output + full.errors, "00abc1");
    ChildResult const child = RunLogged([] {
        signal(SIGXFSZ, SIG_IGN);
        if (fchmod(loggedFile, 0400) + ftruncate(loggedFile, 0) == 0)  // and it has no name
            LogMessage(4, "Net", "goes on");
        rlim_t const end = rlim_t(lseek(loggedFile, 0, SEEK_END));
        for (rlimit const& limit :
             {rlimit{end + 5, RLIM_INFINITY}, {RLIM_INFINITY, RLIM_INFINITY}}) {
            setrlimit(RLIMIT_FSIZE, &limit);
            LogMessage(4, "Net", "cut, then whole");
        }
    });
    std::size_t const gap = child.log.rfind('\0');  // in place of what was cut off
    EXPECT_TRUE(gap > 100 && gap < child.log.size());
    EXPECT_THAT(child.log.substr(gap + 1),
                testing::MatchesRegex("[0-9:]+ - Net:  goes on\n[0-9:]{13}"
                                      " - Net:  cut, then whole\nTerm.*\n"));
}

/// The number of lines before a report, of which each process has numbered its own.
static int CountLines(std::string const& log) {
    std::istringstream lines(log.substr(0, log.find("FATAL/")));
    int next[4] = {}, total = 0;
    for (std::string line; std::getline(lines, line); ++total)
        if (line + "\n" != closingLine) {
            EXPECT_EQ(line.substr(1), ":  " + std::to_string(next[line[0] % 4]++));
        }
    return total;
}

TEST(Faults, FourProcessesWriteAMillionLinesIntoOneLog) {
    ChildResult const child = RunLogged([] {
        std::string const process = std::to_string((fork() == 0) + 2 * (fork() == 0));
        for (int line = 0; line < 250000; ++line)
            LogMessage(4, process.c_str(), std::to_string(line).c_str());
        while (wait(nullptr) > 0)
            continue;
    });
    EXPECT_EQ(CountLines(child.log), 4 * (250000 + 1));
}

TEST(Faults, LinesBeforeASignalAreWhole) {
    for (int const signal : {SIGKILL, SIGUSR1}) {
        ChildResult const child = RunLogged([signal] {
            TrapExceptionSignal(SIGUSR1, nullptr);
            if (fork() == 0)
                usleep(20000), kill(getppid(), signal), _exit(0);
            for (int line = 0;; ++line)
                LogMessage(4, "0", std::to_string(line).c_str());
        });
        bool const reported = child.log.find("FATAL/") != std::string::npos;
        EXPECT_TRUE(CountLines(child.log) > 10 && reported == (signal == SIGUSR1));
        EXPECT_EQ(child.status, reported ? 0 : -SIGKILL);
    }
}

// The finished library's optimiser must not have dropped what nobody reads.
TEST(Wiping, LeavesNeitherKeyedTablesNorAnOpenedPassword) {
    alignas(Blowfish) char used[sizeof(Blowfish)];
    Blowfish const unkeyed;
    Blowfish* const cipher = new (used) Blowfish;
    cipher->setPassword(name), cipher->~Blowfish();
    char const* const initial = reinterpret_cast<char const*>(&unkeyed) + sizeof(std::string);
    EXPECT_TRUE(std::equal(used + sizeof(std::string), std::end(used), initial));

    EncryptionAPI api;
    ByteArray builtIn("Tq8-Lm2vZr5-Kx9wPn3-Hc7yJd4-Fs6uBg1-We0R"), sealed;
    api.initializeAPI(builtIn, 3), api.encryptData(name, sealed);
    freedWithName = 0, api.initializeAPI(sealed, 4);
    EXPECT_EQ(freedWithName, 0);
    api.encryptData(name, sealed);  // whose buffer is not wiped
    EXPECT_EQ(freedWithName, 1) << "the check itself";
}
