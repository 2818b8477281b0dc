/// @file
/// Reports fatal signals to the log, or to a function of the client, and ends the process.
#ifndef COMMONAPI_SIGNAL_TRAP_H
#define COMMONAPI_SIGNAL_TRAP_H

#include <CommonAPI/export.h>
#include <signal.h>

/// What a handler is told of a signal. Some systems call the structure itself `siginfo`, all have
/// the type `siginfo_t`.
typedef siginfo_t siginfo;

extern "C" {

/// Has `handler` called when the signal arrives; the process then exits with status 0, as by
/// `exit(0)`, even if the handler returns. While the handler runs, `SIGSEGV` and the signal itself
/// are blocked. A later call for the same signal replaces the handler.
///
/// Without a handler, the signal is reported: at level 1 for "ExceptionSignalHandler", under the
/// banner "UNEXPECTED APPLICATION EXIT", with its name, its number and the meaning of its code.
///
/// Handlers run on the stack of the thread that the signal interrupted and may log, though nothing
/// that logging does is safe there: it is done because the process is ending. See
/// [Fatal signals](docs/fatal_signals.md) for what that leaves undone. What a report needs is set
/// aside by the first call, so that it asks the allocator for nothing.
///
/// @param signalNumber from 1 to 63.
/// @param handler may be null.
/// @return false for 0; false, with "Couldn't trap Signal " and the number on standard output, for
/// any other number, and when the system refuses it.
///
/// Threads: not protected by a lock; callers serialise their calls.
COMMONAPI_EXPORT bool TrapExceptionSignal(int signalNumber, void (*handler)(siginfo*));
}

#endif
