#include "support/child_process.h"

using testing::MatchesRegex;

/// Logs to the standard output. The settings are modules, each with its level behind it.
static bool Open(std::string const& settings, bool redirectStderr = false) {
    AttributeMap map;
    std::istringstream words(settings);
    for (std::string module, level; words >> module >> level;)
        map[module] = level.c_str();
    return InitializeLogger("/dev/stdout", &map, "sample", redirectStderr);
}

TEST(Logger, WritesWhatPassesTheThresholdOfItsModule) {
    std::map<int, std::string> prefixes = {{1, "FATAL/"}, {2, "ERROR/"}, {3, "WARNING/"}};
    auto const text = [](int level) { return std::string(std::size_t(500 * (level + 3)), 'x'); };
    // The highest level that is written of those from -3 to 7.
    using Row = std::pair<std::string, int>;
    for (auto const& [settings, highest] :
         {Row{"", 1}, Row{"Global 3", 3}, Row{"Global 1 Net 4", 4}, Row{"Global 1 Other 4", 1},
          Row{"Global 4 Net 5", -4}, Row{"Global 5", -4}, Row{"Global 5 Net 2", 2},
          Row{"Global 4 Net 6", 6}, Row{"Global 4 Net none", 0}, Row{"Global -2 Other 2", -2},
          Row{"Other 4", 1}}) {
        ChildResult const child = RunInChild([&settings = settings, &text] {
            Open(settings);
            for (int level = -3; level <= 7; ++level) {
                std::string message = text(level);
                LogStringMessage(level, "Net", message);
                std::printf("%s", message.c_str());  // nothing, for it was cleared
            }
        });
        std::string expected;
        for (int level = -3; level <= highest; ++level)
            expected += prefixes[level] + "Net:  " + text(level) + "\n";
        EXPECT_EQ(LinesAfterHeader(child.output), expected + closingLine) << settings;
    }
}

TEST(Logger, WarnsOfMissingSettingsByTheThresholdsUntilThen) {
    auto const errors = [](std::string const& settings) {
        return RunInChild([&] { Open(settings); }).errors;
    };
    std::string const warning = "[0-9:]+ - WARNING/LoggingAPI:  ";
    std::string const action = " missing, using default global setting\n\n";
    EXPECT_EQ(errors("") + errors("Net 4") + errors("LoggingAPI 5"), "");
    EXPECT_THAT(errors("LoggingAPI 3"), MatchesRegex(warning + "Global logging setting" + action));
    ChildResult const again = RunInChild([] {
        Open("Global 3 Net 4");
        TerminateLogger();
        InitializeLogger("/dev/stdout", nullptr, nullptr, false);
        LogMessage(4, "Net", "settings stay"), LogMessage(2, "Other", "filtered");
    });
    EXPECT_THAT(again.errors, MatchesRegex(warning + "Logging settings" + action));
    EXPECT_THAT(
        again.output,
        MatchesRegex("Time Stamp:\t(.|\n)*--\n[0-9:]+ - Net:  settings stay\n" + closingLine));
}

TEST(Logger, GoesToStandardErrorWhileNotInitialised) {
    ChildResult const child = RunInChild([] {
        auto const fails = [] { return !InitializeLogger("/no/such", nullptr, nullptr, false); };
        LogMessage(1, "Net", "dropped");
        bool success = fails() && Open("Global 3 LoggingAPI 4", true);
        dprintf(STDERR_FILENO, "redirected\n");
        success &= !fails();  // it is open already
        TerminateLogger(), TerminateLogger();
        LogMessage(3, "Net", "passes"), LogMessage(4, "Net", "dropped");
        success &= fails();
        std::printf("%d %s", success, LogMessageBuffer.c_str());
    });
    EXPECT_EQ(child.errors + LinesAfterHeader(child.output),
              "redirected\nLoggingAPI:  Logger already initialized\nTerminating logging facility\n"
              "WARNING/Net:  passes\n\nERROR/LoggingAPI:  Logger couldn't open log file\n\n"
              "1 Terminating logging facility\n");
}

TEST(Logger, HeaderNamesApplicationProcessSystemAndSettings) {
    ChildResult const child = RunInChild([] {
        Open("Global 1 Encryption 4");
        LogMessage(1, "Net", "");
        std::printf("%s%d", LogMessageBuffer.c_str(), getpid());  // the header stays in the buffer
    });
    std::string const header = Take(std::fopen(TESTS "/logging/data/header.txt", "r"));
    std::string const line = "..:..:.. - FATAL/Net:  \nTerminating logging facility\n";
    std::string const id = child.output.substr(child.output.rfind('\n') + 1);
    EXPECT_THAT(child.output, MatchesRegex(header + line + header + "[0-9]+"));
    EXPECT_THAT(child.output, testing::HasSubstr("Process ID:\t" + id + "\n"));
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
    ChildResult const child = RunInChild([] {
        static LogsFromItsDestructor outlivesTheLog{8};
        Open("Static 9");
        static LogsFromItsDestructor goesBeforeTheLog{7};
    });
    EXPECT_EQ(LinesAfterHeader(child.output),
              "Static:  level 7 from a destructor\nTerminating logging facility\n");
    EXPECT_THAT(child.errors, MatchesRegex("[0-9:]+ - Static:  level 8 from a destructor\n\n"
                                           "[0-9:]+ - Static:  level 9 from a destructor\n\n"));
}
