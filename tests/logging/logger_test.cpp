#include <CommonAPI/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "support/child_process.h"

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using Settings = std::map<std::string, char const*>;

AttributeMap Map(Settings const& settings) {
    AttributeMap map;
    for (auto const& [key, value] : settings)
        map[key] = value;
    return map;
}

/// What a child process that logs left behind.
struct Logged : ChildResult {
    std::string file;
};

Logged Log(std::function<void(std::string const& path)> const& body) {
    TemporaryFolder const folder;
    std::string const path = folder.file("log");
    ChildResult const child = RunInChild([&] { body(path); });
    EXPECT_EQ(child.status, 0);
    return {child, ReadFile(path)};
}

bool Open(std::string const& path, Settings const& settings, bool redirectStderr = false) {
    AttributeMap map = Map(settings);
    return InitializeLogger(path, &map, "sample", redirectStderr);
}

TEST(Logger, WritesALinePerMessage) {
    struct {
        int level;
        char const* prefix;
    } const rows[] = {{1, "FATAL/"}, {2, "ERROR/"}, {3, "WARNING/"}, {4, ""},
                      {0, ""},       {-3, ""},      {5, ""}};
    for (auto const& row : rows) {
        Logged const log = Log([&](std::string const& path) {
            Open(path, {{"Global", "1"}, {"Net", "6"}});
            LogMessage(row.level, "Net", "text");
        });
        EXPECT_THAT(log.file,
                    testing::ContainsRegex("\n[0-9:]+ - " + std::string(row.prefix) +
                                           "Net:  text\nTerminating logging facility\n$"));
        EXPECT_EQ(log.errors, "");
    }
}

TEST(Logger, FiltersByTheThresholdOfTheModule) {
    struct {
        Settings settings;
        int level;
        bool written;
    } const rows[] = {
        {{{"Global", "3"}}, 3, true},
        {{{"Global", "3"}}, 4, false},
        {{{"Global", "1"}, {"Net", "4"}}, 4, true},
        {{{"Global", "1"}, {"Other", "4"}}, 4, false},
        {{{"Global", "4"}, {"Net", "5"}}, 1, false},
        {{{"Global", "5"}}, 1, false},
        {{{"Global", "5"}, {"Net", "2"}}, 2, true},
        {{{"Global", "4"}, {"Net", "6"}}, 6, true},
        {{{"Global", "4"}, {"Net", "none"}}, 1, false},
        {{{"Global", "4"}, {"Net", "none"}}, 0, true},
        {{{"Global", "4"}, {"Net", "-2"}}, -1, false},
        {{{"Global", "-2"}, {"Net", "2x"}}, 2, true},
        {{{"Other", "4"}}, 1, true},
        {{{"Other", "4"}}, 2, false},
        {{}, 1, true},
        {{}, 2, false},
    };
    for (auto const& row : rows) {
        Logged const log = Log([&](std::string const& path) {
            Open(path, row.settings);
            std::string text = "text";
            LogStringMessage(row.level, "Net", text);
            if (!text.empty())
                std::exit(EXIT_FAILURE);
        });
        EXPECT_EQ(log.file.find("Net:  text\n") != std::string::npos, row.written)
            << testing::PrintToString(row.settings) << " level " << row.level;
    }
}

TEST(Logger, WarnsOfMissingSettingsByTheThresholdsUntilThen) {
    char const* const noGlobal =
        " - WARNING/LoggingAPI:  Global logging setting missing, using default global setting\n\n";
    char const* const noSettings =
        " - WARNING/LoggingAPI:  Logging settings missing, using default global setting\n\n";
    auto const errors = [](Settings const& settings) {
        return Log([&](std::string const& path) { Open(path, settings); }).errors;
    };
    EXPECT_EQ(errors({}), "");
    EXPECT_EQ(errors({{"Net", "4"}}), "");
    EXPECT_EQ(errors({{"LoggingAPI", "5"}}), "");
    EXPECT_THAT(errors({{"LoggingAPI", "3"}}), testing::EndsWith(noGlobal));

    Logged const again = Log([](std::string const& path) {
        Open(path, {{"Global", "3"}, {"Net", "4"}});
        TerminateLogger();
        InitializeLogger(path, nullptr, nullptr, false);
        LogMessage(4, "Net", "settings stay");
        LogMessage(3, "Other", "filtered");
    });
    EXPECT_THAT(again.errors, testing::EndsWith(noSettings));
    EXPECT_THAT(again.file, StartsWith("Time Stamp:\t"));
    EXPECT_THAT(again.file, HasSubstr("Net:  settings stay\n"));
    EXPECT_THAT(again.file, Not(HasSubstr("filtered")));
}

TEST(Logger, GoesToStandardErrorWhileNotInitialised) {
    Logged const log = Log([](std::string const& path) {
        LogMessage(1, "Net", "dropped");
        if (Open("/no/such/folder/log", {{"Global", "4"}}))
            std::exit(EXIT_FAILURE);
        Open(path, {{"Global", "3"}});
        TerminateLogger();
        TerminateLogger();
        LogMessage(3, "Net", "passes");
        LogMessage(4, "Net", "dropped");
        if (Open("/no/such/folder/log", {{"Global", "4"}}))
            std::exit(EXIT_FAILURE);
    });
    EXPECT_THAT(log.errors,
                MatchesRegex("[0-9:]+ - WARNING/Net:  passes\n\n"
                             "[0-9:]+ - ERROR/LoggingAPI:  Logger couldn't open log file\n\n"));
    EXPECT_THAT(log.file, testing::EndsWith("--\nTerminating logging facility\n"));
}

TEST(Logger, OpensOnlyOnce) {
    Logged const log = Log([](std::string const& path) {
        Open(path, {{"Global", "4"}}, true);
        dprintf(STDERR_FILENO, "redirected\n");
        if (!Open(path + "2", {{"Global", "1"}}))
            std::exit(EXIT_FAILURE);
        LogMessage(4, "Net", "text");
    });
    EXPECT_THAT(log.file,
                testing::ContainsRegex("redirected\n[0-9:]+ - LoggingAPI:  Logger already "
                                       "initialized\n[0-9:]+ - Net:  text\n"));
}

TEST(Logger, HeaderNamesApplicationProcessSystemAndSettings) {
    auto const header = [](char const* application, Settings const& settings) {
        return Log([&](std::string const& path) {
            AttributeMap map = Map(settings);
            InitializeLogger(path, &map, application, false);
            std::printf("%d\n%s", getpid(), LogMessageBuffer.c_str());
        });
    };
    Logged const named = header("sample", {{"Global", "1"}, {"Encryption", "4"}});
    std::string const dashes(32, '-');
    EXPECT_THAT(
        named.file,
        MatchesRegex(dashes + "\nApplication:  sample\n" + dashes +
                     "\nTime Stamp:\t[0-9/]+ [0-9:]+\nProcess ID:\t[0-9]+\nSystem name:\t[^\n]+\n"
                     "Node name:\t[^\n]+\nRelease:\t[^\n]+\nVersion:\t[^\n]+\nMachine:\t[^\n]+\n"
                     "Log level for module Encryption is 4\nLog level for module Global is 1\n" +
                     dashes + "\nTerminating logging facility\n"));
    // The header stays in the shared text; the closing line followed it into the file.
    std::string const text = named.output.substr(named.output.find('\n') + 1);
    EXPECT_EQ(named.file, text + "Terminating logging facility\n");
    EXPECT_THAT(text, HasSubstr("Process ID:\t" + named.output.substr(0, named.output.find('\n'))));

    Logged const bare = header(nullptr, {});
    EXPECT_THAT(bare.file, StartsWith("Time Stamp:\t"));
    EXPECT_THAT(bare.file, Not(HasSubstr("Log level")));
}

struct LogsFromItsDestructor {
    int level;
    ~LogsFromItsDestructor() {
        LogMessageBuffer = "level " + std::to_string(level) + " from a destructor";
        LogStringMessage(level, "Static", LogMessageBuffer);
    }
};

// As if linked before the library, whose own static objects must come first all the same; heard at
// level 9 only.
[[gnu::init_priority(200)]] LogsFromItsDestructor outlivesTheTests{9};

TEST(Logger, ServesDestructorsBeforeAndAfterItsTermination) {
    Logged const log = Log([](std::string const& path) {
        static LogsFromItsDestructor outlivesTheLog{8};
        Open(path, {{"Static", "9"}});
        static LogsFromItsDestructor goesBeforeTheLog{7};
    });
    EXPECT_THAT(log.file, HasSubstr("Static:  level 7 from a destructor\nTerminating"));
    EXPECT_THAT(log.errors, MatchesRegex("[0-9:]+ - Static:  level 8 from a destructor\n\n"
                                         "[0-9:]+ - Static:  level 9 from a destructor\n\n"));
}

}  // namespace
