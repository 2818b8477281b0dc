#include <CommonAPI/logging.h>

#include <new>

namespace {

/// Made before the buffer, and so destroyed after it: makes the buffer anew for code that ends
/// after the library and still logs.
struct Revival {
    ~Revival() { ::new (&LogMessageBuffer) std::string; }
};

// Early, so that in a static link, too, the buffer is there for constructors of clients.
[[gnu::init_priority(101)]] Revival const revival;

}  // namespace

[[gnu::init_priority(101)]] std::string LogMessageBuffer;
