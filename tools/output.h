#ifndef COMMONAPI_TOOLS_OUTPUT_H
#define COMMONAPI_TOOLS_OUTPUT_H

#include <string>
#include <string_view>

/// Writes a line to standard error, after "commonapi: " and with control characters escaped.
void Report(std::string_view message);

/// Throws `std::runtime_error` if standard output cannot be written.
void FinishOutput();

/// What the system says about the last failure of one of its calls.
std::string SystemError();

#endif
