#include <CommonAPI/logging.h>
#include <CommonAPI/shared_object_loader.h>

extern "C" {
char const* _KeldaSODisplayName = "Sample Filter";
char const* _KeldaSOVersion = "2.1";

/// The search is the last that it does, so that its optimiser may leave it by a jump.
void* FindOwnSymbol() {
    return FetchSymbol("FindOwnSymbol");
}
}

struct Logs {
    Logs() { LogMessage(4, "Plugin", "constructed"); }
    ~Logs() { LogMessage(4, "Plugin", "destroyed"); }
} const logs;
