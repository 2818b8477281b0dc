#include <CommonAPI/logging.h>
#include <CommonAPI/signal_trap.h>

#include <cstdio>

int main(int count, char** arguments) {
    AttributeMap settings;
    settings["Global"] = "1";
    char const* const log = count > 1 ? arguments[1] : "fatal_signals.log";
    if (!InitializeLogger(log, &settings, "sample", false)) {
        std::perror(log);
        return 1;
    }

    for (int const signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        TrapExceptionSignal(signal, nullptr);
    TrapExceptionSignal(SIGTERM, [](siginfo* info) {
        if (info->si_code == SI_USER)
            LogMessage(1, "Sample", "ended on request");
    });

    std::printf("Crashes now, on purpose: %s tells how\n", log);
    int volatile* volatile nowhere = nullptr;
    *nowhere = 1;  // NOLINT: on purpose
    return 1;      // not reached: the report ends the process with status 0
}
