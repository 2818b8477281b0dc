// Without identification; links the library and logs while it is loaded and unloaded.
#include <CommonAPI/logging.h>

struct Logs {
    Logs() { LogMessage(4, "Plugin", "constructed"); }
    ~Logs() { LogMessage(4, "Plugin", "destroyed"); }
} const logs;
