#ifndef COMMONAPI_LOGGING_SIGNAL_CONTEXT_H
#define COMMONAPI_LOGGING_SIGNAL_CONTEXT_H

namespace CommonAPI::internal {

/// The handler of a trapped signal, which blocks SIGSEGV, runs from here on.
void EnterSignalContext();

/// Whether this thread is in such a handler. One that was left by a jump has ended, as far as the
/// jump restored the signals that were blocked.
bool InSignalContext();

}  // namespace CommonAPI::internal

#endif
