#include <CommonAPI/logging.h>
#include <CommonAPI/shared_object_loader.h>

extern "C" {
char const* _KeldaSODisplayName = "Sample Filter";
char const* _KeldaSOVersion = "2.1";

/// Not left by a jump: the search could take it for the one who asks.
void* FindOwnSymbol() {
    void* volatile found = FetchSymbol("FindOwnSymbol");
    return found;
}
}

struct Logs {
    Logs() { LogMessage(4, "Plugin", "constructed"); }
    ~Logs() { LogMessage(4, "Plugin", "destroyed"); }
} const logs;
