#ifndef COMMONAPI_LOGGING_SIGNAL_CLOCK_H
#define COMMONAPI_LOGGING_SIGNAL_CLOCK_H

#include <ctime>
#include <string_view>

// The C library's conversions of a time take locks, of the zone and of the locale, and memory. A
// signal may interrupt code that holds them, so all that a handler needs is kept for it beforehand.

namespace CommonAPI::internal {

/// From now on, keeps what `TimeOfDayInSignal` needs.
void PrepareSignalClock();

/// Keeps up with the zone and the locale, if anything is kept. `local` is the local time `now`.
void RefreshSignalClock(std::time_t now, std::tm const& local);

/// The local time of day as "%X" formats it, by the rules of the zone and the locale when the clock
/// was last refreshed. Waits for no lock, and needs no memory. REQUIRES: the clock is prepared.
std::string_view TimeOfDayInSignal();

}  // namespace CommonAPI::internal

#endif
