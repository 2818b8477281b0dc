#include "signals/signal_report.h"

#include <CommonAPI/logging.h>
#include <CommonAPI/text_utilities.h>

#include <cstdlib>
#include <memory>
#include <utility>

#include "logging/signal_clock.h"
#include "signals/signal_texts.h"
#include "types/standard_streams.h"

namespace {

constexpr int fatal = 1;
constexpr std::size_t longestReport = 512;

/// Room for the report. Never destroyed: when it has changed places with the shared text, it holds
/// what the program was building there, perhaps in the middle of a change.
std::string* reserve = nullptr;
bool reserveUsed = false;

/// Gives the shared text storage that is sound and large enough, without touching its old one.
void UseReserve() {
    if (reserve && !std::exchange(reserveUsed, true))
        LogMessageBuffer.swap(*reserve);
}

void LogReport() {
    LogStringMessage(fatal, "ExceptionSignalHandler", LogMessageBuffer);
}

}  // namespace

void CommonAPI::internal::PrepareSignalReport() {
    if (reserve)
        return;
    PrepareSignalClock();
    StandardError();  // made now, not in a handler
    auto text = std::make_unique<std::string>();
    text->reserve(longestReport);
    reserve = text.release();
}

void CommonAPI::internal::ReportSignal(siginfo* info) {
    UseReserve();
    std::string& report = LogMessageBuffer;
    report = "\n\n*******************************\n";
    report += "  UNEXPECTED APPLICATION EXIT  \n";
    report += "*******************************\n";
    if (!info) {
        report += "Exception Signal:  Unknown";
        return LogReport();
    }
    report += "Exception Signal:  ";
    AppendSignalName(report, info->si_signo);
    report.append(" (").append(itoa(info->si_signo)).append(")\n");
    report += "Signal Code:       ";
    AppendSignalCode(report, info->si_signo, info->si_code);
    LogReport();
    std::exit(EXIT_SUCCESS);  // status 0 however it ends: callers tell crashes by the report
}
