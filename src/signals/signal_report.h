#ifndef COMMONAPI_SIGNALS_SIGNAL_REPORT_H
#define COMMONAPI_SIGNALS_SIGNAL_REPORT_H

#include <CommonAPI/signal_trap.h>

namespace CommonAPI::internal {

/// Sets aside what a report needs, so that it asks the allocator for nothing. The first call
/// counts.
void PrepareSignalReport();

/// The default handler: logs the report and exits with status 0. Returns only if `info` is null.
void ReportSignal(siginfo* info);

}  // namespace CommonAPI::internal

#endif
