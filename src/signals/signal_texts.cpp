#include "signals/signal_texts.h"

#include <CommonAPI/text_utilities.h>
#include <signal.h>

#include <iterator>
#include <span>

#include "signals/host_signals.h"

namespace {

using CommonAPI::internal::CodeTableNumber;
using CommonAPI::internal::HostSignalName;

// Indexed by the signal's number less one. Not the numbering of the code tables: both stay as they
// were when they came from different hosts.
constexpr char const* names[] = {
    "SIGHUP",    "SIGINT",  "SIGQUIT",  "SIGILL",  "SIGTRAP", "SIGABRT", "SIGBUS",  "SIGFPE",
    "SIGKILL",   "SIGUSR1", "SIGSEGV",  "SIGUSR2", "SIGPIPE", "SIGALRM", "SIGTERM", "SIGCHLD",
    "SIGCONT",   "SIGSTOP", "SIGTSTP",  "SIGTTIN", "SIGTTOU", "SIGURG",  "SIGXCPU", "SIGXFSZ",
    "SIGVTALRM", "SIGPROF", "SIGWINCH", "SIGIO",   "SIGPWR",  "SIGSYS",
};

// Indexed by the code less one.
constexpr char const* illegalInstruction[] = {
    "Illegal opcode\n",    "Illegal operand\n",     "Illegal addressing mode\n",
    "Illegal trap\n",      "Privileged opcode\n",   "Privileged register\n",
    "Coprocessor error\n", "Internal stack error\n"};
constexpr char const* traceTrap[] = {"Process breakpoint\n", "Process trace trap\n"};
constexpr char const* floatingPoint[] = {
    "Integer divide by zero\n",           "Integer overflow\n",
    "Floating point divide by zero\n",    "Floating point overflow\n",
    "Floating point underflow\n",         "Floating point inexact result\n",
    "Floating point invalid operation\n", "Subscript out of range\n"};
constexpr char const* busError[] = {
    "Invalid address alignment\n",
    "Non-existant physical address\n",  // spelt so in every log there is
    "Object specific hardware error\n"};
constexpr char const* segmentationFault[] = {"Address not mapped to object\n",
                                             "Invalid permissions for mapped object\n"};
constexpr char const* childStatus[] = {
    "Child has exited\n",         "Child was killed\n",  "Child terminated abnormally\n",
    "Traced child has trapped\n", "Child has stopped\n", "Stopped child has continued\n"};
constexpr char const* pollableEvent[] = {
    "Data input available\n",          "Output buffers available\n",
    "Input message available\n",       "I/O error\n",
    "High priority input available\n", "Device disconnected\n"};

using Codes = std::span<char const* const>;

Codes LiteralTable(int number) {
    switch (number) {
        case 4:
            return illegalInstruction;
        case 5:
            return traceTrap;
        case 8:
            return floatingPoint;
        case 10:
            return busError;
        case 11:
            return segmentationFault;
        case 18:
            return childStatus;
        case 22:
            return pollableEvent;
        default:
            return {};
    }
}

/// The literal number's table comes first even where that number is another signal on this host.
Codes Table(int number) {
    Codes const literal = LiteralTable(number);
    return literal.empty() ? LiteralTable(CodeTableNumber(number)) : literal;
}

}  // namespace

void CommonAPI::internal::AppendSignalName(std::string& text, int number) {
    if (char const* const name = HostSignalName(number))
        text += name;
    else if (number >= 1 && number <= std::ssize(names))
        text += names[number - 1];
    else if (number >= SIGRTMIN && number <= SIGRTMAX)
        text.append("SIGRTMIN+").append(itoa(number - SIGRTMIN));
    else
        text += "Unknown";
}

void CommonAPI::internal::AppendSignalCode(std::string& text, int number, int code) {
    Codes const table = Table(number);
    if (table.empty())
        text.append("Unknown Code:  ").append(itoa(code)).append("\n");
    else if (code >= 1 && code <= std::ssize(table))
        text += table[static_cast<std::size_t>(code - 1)];
}
