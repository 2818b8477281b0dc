#ifndef COMMONAPI_LOGGING_LOG_FILE_H
#define COMMONAPI_LOGGING_LOG_FILE_H

#include <string_view>

namespace CommonAPI::internal {

/// Opens the log's file and empties it. REQUIRES: none is open.
bool OpenLogFile(char const* path);

void CloseLogFile();

/// Has the process's standard error go to the file.
void RedirectStandardErrorToLog();

/// Writes to the file, if one is open, with one write.
void WriteToLog(std::string_view text);

}  // namespace CommonAPI::internal

#endif
