#ifndef COMMONAPI_TYPES_REQUIREMENT_H
#define COMMONAPI_TYPES_REQUIREMENT_H

// What callers must see to. Only the hardened library looks: it ends the process with one line that
// names the call.

namespace CommonAPI::internal {

#ifdef COMMONAPI_HARDENED
constexpr bool hardened = true;
#else
constexpr bool hardened = false;
#endif

[[noreturn]] void RefuseCall(char const* call, char const* reason);

inline void Require(bool condition, char const* call, char const* reason) {
    if constexpr (hardened)
        if (!condition)
            RefuseCall(call, reason);
}

template <class Type>
Type* NotNull(Type* pointer, char const* call) {
    Require(pointer != nullptr, call, "null pointer");
    return pointer;
}

}  // namespace CommonAPI::internal

#endif
