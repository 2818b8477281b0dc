// Linked with the static library, so its log and `LogMessageBuffer` are its own.
#include <CommonAPI/logging.h>

extern "C" [[gnu::visibility("default")]] void LogInThePlugin(char const* path) {
    AttributeMap settings;
    settings["Global"] = "4";
    InitializeLogger(path, &settings, "plug-in", false);
    LogMessageBuffer = "a text that needs storage in the plug-in";
    LogMessage(4, "Plugin", LogMessageBuffer.c_str());
}
