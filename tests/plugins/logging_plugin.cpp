// A plug-in that links the library and logs while it is loaded and unloaded.
#include <CommonAPI/logging.h>

namespace {

struct Logs {
    Logs() { write("constructed"); }
    ~Logs() { write("destroyed"); }

    static void write(char const* text) {
        LogMessageBuffer = text;
        LogStringMessage(4, "Plugin", LogMessageBuffer);
    }
} const logs;

}  // namespace
