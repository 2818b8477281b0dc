#include <CommonAPI/shared_object_loader.h>
#include <dlfcn.h>

#include "support/child_process.h"

static void Perform(std::string const& step) {
    std::istringstream words(step);
    std::string verb;
    Levels levels;
    words >> verb;
    for (std::string module; words >> module;)
        words >> levels[module];
    std::string const path = verb == "fail" ? "/no/such" : logPath;
    if (verb == "log")
        for (auto const& [module, level] : levels)
            LogMessage(std::stoi(level), module.c_str(), "text");
    else if (verb == "print")
        dprintf(STDERR_FILENO, "printed\n");
    else if (verb == "terminate")
        TerminateLogger();
    else  // open, redirect or fail
        EXPECT_EQ(OpenLog(path, levels, verb == "redirect"), verb != "fail") << step;
}

TEST(Logger, WritesWhatTheSessionsShow) {
    std::ifstream file(TESTS "/logging/data/sessions.txt");
    for (std::string name, line; std::getline(file, name);) {
        std::vector<std::string> steps;
        std::string expected;
        while (file.peek() == '>' && std::getline(file, line))
            steps.push_back(line.substr(1));
        while (file.peek() != '=' && std::getline(file, line))
            expected += line + "\n";
        ChildResult const child =
            RunInChild([&] { std::for_each(steps.begin(), steps.end(), Perform); });
        std::string const errors = child.errors.empty() ? "" : "on standard error:\n";
        EXPECT_EQ(child.log + errors + child.errors, expected) << name;
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

TEST(Logger, HeaderNamesApplicationProcessSystemAndSettings) {
    ExpectInChild([] {
        std::ofstream(logPath) << "what an earlier log left";
        OpenLog(logPath, {{"Global", "1"}, {"Encryption", "4"}});
        std::string const header = ContentOf(logPath);
        EXPECT_THAT(header, testing::MatchesRegex(ContentOf(TESTS "/logging/data/header.txt")));
        std::string const process = "Process ID:\t" + std::to_string(getpid()) + "\n";
        EXPECT_THAT(header, testing::HasSubstr(process));
        EXPECT_EQ(LogMessageBuffer, header);
    });
}

TEST(Logger, TakesItsSharedTextAsItWasAtTheCall) {
    static std::string const text = "/a/text/that/needs/memory";
    ChildResult const child = RunInChild([] {
        AttributeMap settings;
        settings["Global"] = "4";
        LogMessageBuffer = text;
        InitializeLogger(logPath, &settings, LogMessageBuffer.c_str(), false);
        EXPECT_THAT(LogMessageBuffer, testing::HasSubstr("Application:  " + text + "\n"));
        LogMessageBuffer = text;
        EXPECT_EQ(OpenSharedLibrary(LogMessageBuffer.c_str(), RTLD_NOW), nullptr);
        LogMessageBuffer = text;
        LogStringMessage(4, LogMessageBuffer.c_str(), LogMessageBuffer);
        LogMessageBuffer = text;
        LogStringMessage(5, "Net", LogMessageBuffer);
        EXPECT_EQ(LogMessageBuffer, "") << "though nothing is written";
        TerminateLogger();
        EXPECT_EQ(LogMessageBuffer, closingLine);
    });
    EXPECT_EQ(child.log, "FATAL/SharedObjectResource::loadResource():  Failed to load library (" +
                             text + "):  " + text +
                             ": cannot open shared object file: No such file or directory\n" +
                             text + ":  " + text + "\n" + closingLine);
}
