#include <signal.h>
#include <sys/time.h>

#include "support/child_process.h"

TEST(LogFile, WritesToAPipeThatSignalsInterruptAreTriedAgain) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    constexpr int lines = 2000;
    std::string const text(100, 'x');
    pid_t const writer = fork();
    if (writer == 0) {
        struct sigaction action = {};
        action.sa_handler = [](int) {};  // without a restart of what is interrupted
        sigaction(SIGALRM, &action, nullptr);
        itimerval const often = {{0, 500}, {0, 500}};
        setitimer(ITIMER_REAL, &often, nullptr);
        close(ends[0]);
        AttributeMap settings;
        settings["Global"] = "4";
        InitializeLogger("/dev/fd/" + std::to_string(ends[1]), &settings, nullptr, false);
        for (int line = 0; line < lines; ++line)
            LogMessage(4, "Net", text.c_str());
        _exit(0);
    }
    close(ends[1]);
    std::string log;
    char part[1000];
    for (ssize_t count; (count = read(ends[0], part, sizeof part)) > 0;) {
        log.append(part, static_cast<std::size_t>(count));
        if (log.size() < 50000)
            usleep(1000);  // so that the pipe is full
    }
    waitpid(writer, nullptr, 0);
    std::string expected;
    for (int line = 0; line < lines; ++line)
        expected += "Net:  " + text + "\n";
    EXPECT_EQ(LinesAfterHeader(log), expected);
}
