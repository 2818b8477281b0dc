// Linked with the static library, so its log and `LogMessageBuffer` are its own.
#include <CommonAPI/logging.h>

extern "C" [[gnu::visibility("default")]] void LogInThePlugin() {
    InitializeLogger("plugin.log", nullptr, "plug-in", false);
    LogMessageBuffer = "its text";
    LogMessage(1, "Plugin", LogMessageBuffer.c_str());
}
