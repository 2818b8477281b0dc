#include "signals/report_deadline.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "logging/signal_context.h"

namespace {

constexpr unsigned int secondsForReport = 30;

/// The thread that is in the handler; SIGALRM may reach another one.
volatile pid_t reporter;

pid_t ThisThread() {
    return static_cast<pid_t>(syscall(SYS_gettid));
}

void EndStuckReport(int) {
    int const interruptedError = errno;
    if (ThisThread() != reporter)
        syscall(SYS_tgkill, getpid(), reporter, SIGALRM);
    else if (CommonAPI::internal::InSignalContext())  // and not left by a jump
        _exit(EXIT_SUCCESS);
    errno = interruptedError;
}

}  // namespace

void CommonAPI::internal::SetReportDeadline() {
    reporter = ThisThread();
    struct sigaction action = {};
    action.sa_handler = EndStuckReport;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
    sigset_t alarmOnly;
    sigemptyset(&alarmOnly);
    sigaddset(&alarmOnly, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarmOnly, nullptr);
    alarm(secondsForReport);
}
