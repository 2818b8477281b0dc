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
/// Without a handler, the signal is reported in one message: at level 1 for
/// "ExceptionSignalHandler", after two newlines, under the banner "UNEXPECTED APPLICATION EXIT",
/// with its name, its number and the meaning of its code.
///
/// Handlers run on the stack of the thread that the signal interrupted and may log: while the log
/// is open, a line of up to 1024 bytes waits for no lock and needs no memory. Whatever else they
/// do, and the exit that follows, may wait for what was interrupted:
/// [Fatal signals](docs/fatal_signals.md) tells what that leaves undone. What a report needs is set
/// aside by the first call, so that it asks the allocator for nothing.
///
/// @param signalNumber from 1 to 63.
/// @param handler may be null.
/// @return false for 0; false, with "Couldn't trap Signal " and the number on standard output, for
/// any other number, and when the system refuses it, though the handler is stored then.
///
/// Threads: not protected by a lock; callers serialise their calls.
COMMONAPI_EXPORT bool TrapExceptionSignal(int signalNumber, void (*handler)(siginfo*));
}

#endif
