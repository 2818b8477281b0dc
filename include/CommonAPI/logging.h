/// @file
/// The process-wide log file with numeric levels and a threshold per module.
///
/// Levels: 1 fatal ("FATAL/"), 2 error ("ERROR/"), 3 warning ("WARNING/"), 4 information (no
/// prefix). Any other level is allowed and has no prefix.
///
/// A message is written when `level <= threshold` and the threshold is not 5, which means off. The
/// threshold of a module is its value in the settings, read as `atoi` does, so 0 for text that is
/// no number; a module without one has the global threshold, which is 5 until `InitializeLogger`
/// sets it.
///
/// A line is the time ("%X"), " - ", the prefix, the module, ":  ", the text and a newline. It is
/// written to the log file with one write and flushed; failures to write are not reported. While
/// the logger is not initialised, lines go to standard error, each followed by an empty one. Module
/// and text are written as they are: a newline in them begins what looks like another line.
///
/// Threads: none of this is protected by locks; callers serialise their calls. Objects may log from
/// their destructors at process exit, before or after the log file is closed, and after the library
/// itself has ended. Every text may lie in `LogMessageBuffer`.
#ifndef COMMONAPI_LOGGING_H
#define COMMONAPI_LOGGING_H

#include <CommonAPI/attribute_map.h>
#include <CommonAPI/export.h>

#include <string>

/// Shared scratch text in which multi-line messages are built, and handed to `LogStringMessage`.
extern COMMONAPI_EXPORT std::string LogMessageBuffer;

/// Opens the log, truncating the file, and writes its header. The logger takes a copy of
/// `settings`: module names, or "Global", to levels. Without settings, or without "Global" among
/// them, the global threshold is 1; settings of an earlier initialisation stay in force if none are
/// given.
///
/// @param logFilePath as `fopen` takes it.
/// @param settings may be null.
/// @param applicationName is named in the header; may be null.
/// @param redirectStderr makes descriptor 2 write into the log file from then on.
/// @return false when the file cannot be opened; true, with nothing changed, when the logger was
/// already initialised.
COMMONAPI_EXPORT bool InitializeLogger(std::string logFilePath, AttributeMap* settings,
                                       char const* applicationName, bool redirectStderr);

/// Logs `text` for `module`. REQUIRES: neither is null.
COMMONAPI_EXPORT void LogMessage(int level, char const* module, char const* text);

/// Logs `text.c_str()` as `LogMessage` does, then empties `text`, whether it was written or not.
COMMONAPI_EXPORT void LogStringMessage(int level, char const* module, std::string& text);

/// Writes a closing line, which stays in `LogMessageBuffer`, and closes the file. The settings and
/// thresholds stay in force for what is logged later, to standard error. Runs by itself at process
/// exit, once for each initialisation; does nothing when the logger is not initialised.
COMMONAPI_EXPORT void TerminateLogger();

#endif
