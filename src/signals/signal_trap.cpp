#include <CommonAPI/signal_trap.h>

#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "logging/signal_context.h"
#include "signals/report_deadline.h"
#include "signals/signal_report.h"
#include "types/requirement.h"

using namespace CommonAPI::internal;

namespace {

using Handler = void (*)(siginfo*);

Handler handlers[64];

/// A trapped signal ends the process with status 0, even if the client's handler returns.
void Dispatch(int signalNumber, siginfo* info, void*) {
    EnterSignalContext();
    if constexpr (hardened)
        SetReportDeadline();
    Handler const handler = handlers[signalNumber];
    (handler ? handler : ReportSignal)(info);
    std::exit(EXIT_SUCCESS);
}

}  // namespace

bool TrapExceptionSignal(int signalNumber, Handler handler) {
    if (signalNumber == 0)
        return false;
    bool const hasRoom = signalNumber > 0 && signalNumber < std::ssize(handlers);
    if (hasRoom) {
        PrepareSignalReport();
        handlers[signalNumber] = handler ? handler : ReportSignal;
    }

    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    sigaddset(&action.sa_mask, SIGSEGV);
    action.sa_flags = SA_SIGINFO;  // no stack of its own: the overflow of a stack goes unreported
    action.sa_sigaction = Dispatch;
    if (hasRoom && sigaction(signalNumber, &action, nullptr) == 0)
        return true;
    std::fprintf(stdout, "Couldn't trap Signal %d\n", signalNumber);  // not standard error
    return false;
}
