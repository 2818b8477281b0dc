#include "logging/signal_context.h"

#include <signal.h>

#include <atomic>

namespace {

std::atomic<bool> entered = false;

}  // namespace

void CommonAPI::internal::EnterSignalContext() {
    entered = true;
}

bool CommonAPI::internal::InSignalContext() {
    if (!entered)
        return false;
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, SIGSEGV) == 1;
}
