#include <sys/utsname.h>

#include "support/child_process.h"

static void Perform(std::string const& step, std::string const& path) {
    std::istringstream words(step);
    std::string verb;
    words >> verb;
    if (verb == "log") {
        int level;
        std::string module;
        words >> level >> module;
        LogMessage(level, module.c_str(), "text");
    } else if (verb == "print") {
        dprintf(STDERR_FILENO, "printed\n");
    } else if (verb == "terminate") {
        TerminateLogger();
    } else {  // open, redirect or fail
        Levels levels;
        for (std::string module; words >> module;)
            words >> levels[module];
        bool const fails = verb == "fail";
        EXPECT_EQ(OpenLog(fails ? "/no/such" : path, levels, verb == "redirect"), !fails) << step;
    }
}

/// What a process writes that performs these steps.
static std::string Transcript(std::vector<std::string> const& steps) {
    TemporaryFile const log;
    std::string const errors = RunInChild([&] {
                                   for (std::string const& step : steps)
                                       Perform(step, log.path());
                               }).errors;
    std::string const lines = LinesAfterHeader(ContentOf(log.path()));
    return errors.empty() ? lines : lines + "on standard error:\n" + LinesAfterHeader(errors);
}

TEST(Logger, WritesWhatTheSessionsShow) {
    std::ifstream file(TESTS "/logging/data/sessions.txt");
    for (std::string name, line; std::getline(file, name, '\n');) {
        std::vector<std::string> steps;
        std::string expected;
        while (file.peek() != '=' && std::getline(file, line)) {
            if (line[0] == '>')
                steps.push_back(line.substr(1));
            else
                expected += line + "\n";
        }
        EXPECT_EQ(Transcript(steps), expected) << name;
    }
}

TEST(Logger, WritesALineOfAnyLengthWhole) {
    std::string const around = "12:34:56 - Net:  \n";
    for (std::size_t const length : {1023u, 1024u, 1025u, 5000u}) {
        std::string const text(length - around.size(), 'x');
        ChildResult const child = RunLogged([&] { LogMessage(4, "Net", text.c_str()); });
        EXPECT_EQ(child.log, "Net:  " + text + "\n" + closingLine) << length;
    }
}

TEST(Logger, LogsATextUpToItsFirstZeroAndEmptiesIt) {
    ChildResult const child = RunLogged([] {
        std::string text("cut\0off", 7);
        LogStringMessage(4, "Net", text);
        EXPECT_EQ(text, "");
        text = "filtered";
        LogStringMessage(5, "Net", text);
        EXPECT_EQ(text, "") << "though nothing was written";
    });
    EXPECT_EQ(child.log, "Net:  cut\n" + closingLine);
}

TEST(Logger, ClosesItsFile) {
    ExpectInChild([] {
        int const descriptor = dup(STDOUT_FILENO);
        close(descriptor);
        OpenLog("/dev/null", {});
        TerminateLogger();
        EXPECT_EQ(dup(STDOUT_FILENO), descriptor);
    });
}

TEST(Logger, HeaderNamesApplicationProcessSystemAndSettings) {
    ExpectInChild([] {
        TemporaryFile const log;
        dprintf(log.descriptor(), "what an earlier log left");
        OpenLog(log.path(), {{"Global", "1"}, {"Encryption", "4"}});
        std::string const header = ContentOf(log.path());
        EXPECT_THAT(header, testing::MatchesRegex(ContentOf(TESTS "/logging/data/header.txt")));
        utsname host;
        uname(&host);
        std::string const names = std::to_string(getpid()) + "\nSystem name:\t" + host.sysname +
                                  "\nNode name:\t" + host.nodename + "\nRelease:\t" + host.release +
                                  "\nVersion:\t" + host.version + "\nMachine:\t" + host.machine +
                                  "\nLog level";
        EXPECT_THAT(header, testing::HasSubstr("\nProcess ID:\t" + names));
        EXPECT_EQ(LogMessageBuffer, header);
    });
}

TEST(Logger, HeaderLeavesOutWhatIsNotGiven) {
    ExpectInChild([] {
        LogMessageBuffer = "what was built before";
        InitializeLogger("/dev/null", nullptr, nullptr, false);
        EXPECT_THAT(LogMessageBuffer, testing::StartsWith("Time Stamp:\t"));
        EXPECT_THAT(LogMessageBuffer, testing::Not(testing::HasSubstr("Log level")));
    });
}

struct LogsFromItsDestructor {
    int level;
    ~LogsFromItsDestructor() {
        LogMessageBuffer = "level " + std::to_string(level);
        LogStringMessage(level, "Static", LogMessageBuffer);
    }
};

// As if linked before the library, whose own static objects must come first all the same; heard at
// level 9 only.
[[gnu::init_priority(200)]] LogsFromItsDestructor outlivesTheTests{9};

TEST(Logger, ServesDestructorsBeforeAndAfterItsTermination) {
    TemporaryFile const log;
    ChildResult const child = RunInChild([&] {
        static LogsFromItsDestructor outlivesTheLog{8};
        OpenLog(log.path(), {{"Static", "9"}});
        static LogsFromItsDestructor goesBeforeTheLog{7};
    });
    EXPECT_EQ(LinesAfterHeader(ContentOf(log.path())), "Static:  level 7\n" + closingLine);
    EXPECT_EQ(LinesAfterHeader(child.errors), "Static:  level 8\n\nStatic:  level 9\n\n");
}
