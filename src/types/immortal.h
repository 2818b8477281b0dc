#ifndef COMMONAPI_TYPES_IMMORTAL_H
#define COMMONAPI_TYPES_IMMORTAL_H

#include <cstddef>
#include <new>

namespace CommonAPI::internal {

/// An object that is never destroyed: code that ends after the library may still use it.
template <class Type>
class Immortal {
public:
    Immortal() { ::new (storage) Type(); }

    Type& operator*() { return *std::launder(reinterpret_cast<Type*>(storage)); }

private:
    alignas(Type) std::byte storage[sizeof(Type)];
};

}  // namespace CommonAPI::internal

#endif
