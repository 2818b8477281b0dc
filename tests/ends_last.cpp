// A library that knows nothing of ours, and ends after it.
#include "ends_last.h"

static struct Last {
    ~Last() {
        if (atTheEnd)
            atTheEnd();
    }
    void (*atTheEnd)() = nullptr;
} last;

void CallAtTheEnd(void (*function)()) {
    last.atTheEnd = function;
}
