// All that differs between hosts. The report's names and code tables are keyed by two older
// numberings; a host that has those numbers needs nothing of this.
#include "signals/host_signals.h"

#include <signal.h>

namespace {

struct HostSignal {
    int number;
    char const* name;
};

constexpr int firstNumberThatDiffers = 16;

constexpr HostSignal hostSignals[] = {
#ifdef SIGSTKFLT
    {SIGSTKFLT, "SIGSTKFLT"},
#endif
    {SIGCHLD, "SIGCHLD"},     {SIGCONT, "SIGCONT"},     {SIGSTOP, "SIGSTOP"}, {SIGTSTP, "SIGTSTP"},
    {SIGTTIN, "SIGTTIN"},     {SIGTTOU, "SIGTTOU"},     {SIGURG, "SIGURG"},   {SIGXCPU, "SIGXCPU"},
    {SIGXFSZ, "SIGXFSZ"},     {SIGVTALRM, "SIGVTALRM"}, {SIGPROF, "SIGPROF"}, {SIGIO, "SIGIO"},
#ifdef SIGWINCH
    {SIGWINCH, "SIGWINCH"},
#endif
#ifdef SIGPWR
    {SIGPWR, "SIGPWR"},
#endif
    {SIGSYS, "SIGSYS"},
};

}  // namespace

char const* CommonAPI::internal::HostSignalName(int number) {
    for (HostSignal const& signal : hostSignals)
        if (signal.number == number && number >= firstNumberThatDiffers)
            return signal.name;
    return nullptr;
}

int CommonAPI::internal::CodeTableNumber(int number) {
    switch (number) {
        case SIGBUS:
            return 10;
        case SIGCHLD:
            return 18;
        case SIGPOLL:
            return 22;
        default:
            return number;
    }
}
