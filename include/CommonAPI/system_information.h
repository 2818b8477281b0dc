/// @file
/// Queries of time, user and host, and the header of the log file.
///
/// Threads: the functions use static buffers, their own or the C library's; callers serialise them.
#ifndef COMMONAPI_SYSTEM_INFORMATION_H
#define COMMONAPI_SYSTEM_INFORMATION_H

#include <CommonAPI/export.h>

#include <string>

/// Writes the header to the open log file: application (left out if null), time, process, system
/// and the logger's settings. `InitializeLogger` calls it; its text stays in `LogMessageBuffer`,
/// which the name may lie in.
/// With no log file open, nothing is written.
COMMONAPI_EXPORT void CaptureInitialLogInfo(char const* applicationName);

/// The local time as `strftime` formats it; empty if that is longer than 511 bytes.
COMMONAPI_EXPORT void GetCurrentTime(std::string& out, char const* format);

/// The user's login name, or with `useRealName` the full text of the real-name field of the user's
/// password entry, if there is one. Without a login name the value of the variable USER as it
/// stands, without that, if `allowNumericUid`, the user id in decimal. Otherwise false, with `out`
/// unchanged.
COMMONAPI_EXPORT bool GetCurrentUserName(std::string& out, bool useRealName, bool allowNumericUid);

/// The host's name.
COMMONAPI_EXPORT void GetLocalHostname(std::string& out);

/// Sets the variable `name` of the process's environment. False for a null `name`, or when the C
/// library refuses it. The entry made is never freed: it belongs to the environment.
/// REQUIRES: `value` is not null.
COMMONAPI_EXPORT bool SetEnvironmentVariable(char* name, char* value);

#endif
