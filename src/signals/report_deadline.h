#ifndef COMMONAPI_SIGNALS_REPORT_DEADLINE_H
#define COMMONAPI_SIGNALS_REPORT_DEADLINE_H

namespace CommonAPI::internal {

/// Ends the process with status 0, some seconds from now, if the handler of a trapped signal that
/// this thread is in has not ended it by then. Takes over SIGALRM.
void SetReportDeadline();

}  // namespace CommonAPI::internal

#endif
