#ifndef COMMONAPI_TOOLS_SECRET_H
#define COMMONAPI_TOOLS_SECRET_H

#include <CommonAPI/byte_array.h>

#include <memory>
#include <vector>

#include "crypto/wipe.h"
#include "types/byte_array_access.h"

template <class T>
struct WipingAllocator : std::allocator<T> {
    void deallocate(T* memory, std::size_t count) {
        CommonAPI::internal::Wipe(memory, count * sizeof(T));
        std::allocator<T>::deallocate(memory, count);
    }
};

/// A password or sealed key, which leaves nothing behind in memory. No `std::string`, as that keeps
/// short texts in itself.
using Secret = std::vector<char, WipingAllocator<char>>;

/// A buffer for the library that leaves nothing behind, if it was filled at once.
struct SecretBuffer : ByteArray {
    ~SecretBuffer() {
        std::vector<unsigned char>& content = ByteArrayAccess::bytes(*this);
        if (content.empty())
            return;
        CommonAPI::internal::Wipe(content.data(), content.size());
        CommonAPI::internal::Wipe(const_cast<char*>(c_str()), content.size());
    }
};

#endif
