#include <CommonAPI/logging.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "support/child_process.h"

namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using Settings = std::map<std::string, char const*>;

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
    AttributeMap map;
    for (auto const& [key, value] : settings)
        map[key] = value;
    return InitializeLogger(path, &map, "sample", redirectStderr);
}

void Expect(bool held) {
    if (!held)
        std::_Exit(EXIT_FAILURE);
}

TEST(Logger, WritesALinePerMessageWithThePrefixOfItsLevel) {
    Logged const log = Log([](std::string const& path) {
        Open(path, {{"Net", "6"}});
        for (int level = -1; level <= 6; ++level)
            LogMessage(level, "Net", "text");
        LogMessage(1, "Net", std::string(2000, 'x').c_str());
    });
    std::string expected = "--\n";
    for (char const* const prefix : {"", "", "FATAL/", "ERROR/", "WARNING/", "", "", ""})
        expected += std::string("[0-9:]+ - ") + prefix + "Net:  text\n";
    EXPECT_THAT(log.file, ContainsRegex(expected + "[0-9:]+ - FATAL/Net:  x+\nTerminating logging "
                                                   "facility\n$"));
    EXPECT_THAT(log.file, HasSubstr(std::string(2000, 'x')));
}

TEST(Logger, FiltersByTheThresholdOfTheModule) {
    // The highest level that is written of those from -3 to 7.
    for (auto const& [settings, highest] :
         std::vector<std::pair<Settings, int>>{{{{"Global", "3"}}, 3},
                                               {{{"Global", "1"}, {"Net", "4"}}, 4},
                                               {{{"Global", "1"}, {"Other", "4"}}, 1},
                                               {{{"Global", "4"}, {"Net", "5"}}, -4},
                                               {{{"Global", "5"}}, -4},
                                               {{{"Global", "5"}, {"Net", "2"}}, 2},
                                               {{{"Global", "4"}, {"Net", "6"}}, 6},
                                               {{{"Global", "4"}, {"Net", "none"}}, 0},
                                               {{{"Global", "-2"}, {"Other", "2"}}, -2},
                                               {{{"Other", "4"}}, 1},
                                               {{}, 1}}) {
        Logged const log = Log([&settings = settings](std::string const& path) {
            Open(path, settings);
            for (int level = -3; level <= 7; ++level) {
                std::string text = std::to_string(level);
                LogStringMessage(level, "Net", text);
                Expect(text.empty());
            }
        });
        for (int level = -3; level <= 7; ++level)
            EXPECT_EQ(log.file.find("Net:  " + std::to_string(level)) != std::string::npos,
                      level <= highest)
                << testing::PrintToString(settings) << " level " << level;
    }
}

TEST(Logger, WarnsOfMissingSettingsByTheThresholdsUntilThen) {
    auto const errors = [](Settings const& settings) {
        return Log([&](std::string const& path) { Open(path, settings); }).errors;
    };
    EXPECT_EQ(errors({}) + errors({{"Net", "4"}}) + errors({{"LoggingAPI", "5"}}), "");
    EXPECT_THAT(errors({{"LoggingAPI", "3"}}),
                EndsWith(" - WARNING/LoggingAPI:  Global logging setting missing, using default "
                         "global setting\n\n"));
    Logged const again = Log([](std::string const& path) {
        Open(path, {{"Global", "3"}, {"Net", "4"}});
        TerminateLogger();
        InitializeLogger(path, nullptr, nullptr, false);
        LogMessage(4, "Net", "settings stay");
        LogMessage(2, "Other", "filtered");
    });
    EXPECT_THAT(again.errors, EndsWith(" - WARNING/LoggingAPI:  Logging settings missing, using "
                                       "default global setting\n\n"));
    EXPECT_THAT(again.file, ContainsRegex("^Time Stamp:\t(.|\n)*--\n[0-9:]+ - Net:  settings stay\n"
                                          "Terminating"));
}

TEST(Logger, GoesToStandardErrorWhileNotInitialised) {
    Logged const log = Log([](std::string const& path) {
        LogMessage(1, "Net", "dropped");
        Expect(!Open("/no/such/folder/log", {}));
        Expect(Open(path, {{"Global", "3"}, {"LoggingAPI", "4"}}, true));
        dprintf(STDERR_FILENO, "redirected\n");
        Expect(Open("/no/such/folder/log", {{"Global", "1"}}));  // it is open already
        TerminateLogger();
        TerminateLogger();
        LogMessage(3, "Net", "passes");
        LogMessage(4, "Net", "dropped");
        Expect(!Open("/no/such/folder/log", {}));
        Expect(LogMessageBuffer == "Terminating logging facility\n");
    });
    EXPECT_EQ(log.errors, "");
    EXPECT_THAT(log.file,
                ContainsRegex("--\nredirected\n[0-9:]+ - LoggingAPI:  Logger already "
                              "initialized\nTerminating logging facility\n"
                              "[0-9:]+ - WARNING/Net:  passes\n\n"
                              "[0-9:]+ - ERROR/LoggingAPI:  Logger couldn't open log file\n\n$"));
}

TEST(Logger, HeaderNamesApplicationProcessSystemAndSettings) {
    Logged const log = Log([](std::string const& path) {
        Open(path, {{"Global", "1"}, {"Encryption", "4"}});
        std::printf("%s\nProcess ID:\t%d\n", LogMessageBuffer.c_str(), getpid());
    });
    std::string const dashes = std::string(32, '-') + "\n";
    std::string const header =
        dashes + "Application:  sample\n" + dashes +
        "Time Stamp:\t[0-9/]+ [0-9:]+\nProcess ID:\t([0-9]+)\nSystem name:\t[^\n]+\n"
        "Node name:\t[^\n]+\nRelease:\t[^\n]+\nVersion:\t[^\n]+\nMachine:\t[^\n]+\n"
        "Log level for module Encryption is 4\nLog level for module Global is 1\n" +
        dashes;
    EXPECT_THAT(log.file, MatchesRegex(header + "Terminating logging facility\n"));
    EXPECT_THAT(log.output, MatchesRegex(header + "\nProcess ID:\t[0-9]+\n"));  // the text stays
    EXPECT_THAT(log.file, HasSubstr(log.output.substr(log.output.rfind("Process ID"))));
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
