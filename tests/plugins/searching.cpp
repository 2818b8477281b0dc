#include <CommonAPI/shared_object_loader.h>

/// The search is the last that it does, so that its optimiser may leave it by a jump.
extern "C" __attribute__((visibility("default"))) void* FindOwnSymbol() {
    return FetchSymbol("FindOwnSymbol");
}
