#ifndef COMMONAPI_TYPES_BYTE_ARRAY_ACCESS_H
#define COMMONAPI_TYPES_BYTE_ARRAY_ACCESS_H

#include <CommonAPI/byte_array.h>

/// The bytes of a `ByteArray`, for the library's own use.
struct ByteArrayAccess {
    static std::vector<unsigned char>& bytes(ByteArray& array) { return array.bytes; }
    static std::vector<unsigned char> const& bytes(ByteArray const& array) { return array.bytes; }
};

#endif
