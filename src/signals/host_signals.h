#ifndef COMMONAPI_SIGNALS_HOST_SIGNALS_H
#define COMMONAPI_SIGNALS_HOST_SIGNALS_H

namespace CommonAPI::internal {

/// The name that this host gives to a signal which the list of names may have under another number,
/// or null.
char const* HostSignalName(int number);

/// The number under which the code tables have the meaning that `number` has on this host; the same
/// number if they have no other.
int CodeTableNumber(int number);

}  // namespace CommonAPI::internal

#endif
