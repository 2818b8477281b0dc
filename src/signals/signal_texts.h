#ifndef COMMONAPI_SIGNALS_SIGNAL_TEXTS_H
#define COMMONAPI_SIGNALS_SIGNAL_TEXTS_H

#include <string>

namespace CommonAPI::internal {

/// Appends the name of a signal, whatever its number.
void AppendSignalName(std::string& text, int number);

/// Appends what `si_code` means for a signal, with a newline; for a signal whose codes have
/// meanings, nothing if this code has none.
void AppendSignalCode(std::string& text, int number, int code);

}  // namespace CommonAPI::internal

#endif
