#include <CommonAPI/byte_array.h>

#include <cstdio>
#include <cstring>

#include "types/hexadecimal.h"
#include "types/requirement.h"

using CommonAPI::internal::Require;

namespace {

constexpr char const* outside = "position or count outside the buffer";

void RequireSource(void const* data, long count, char const* call) {
    Require(count >= 0, call, outside);
    Require(data != nullptr || count == 0, call, "null pointer");
}

/// Appends what hexadecimal text stands for. Clean pairs are decoded in runs; the C library is
/// asked about any other, because blanks, signs and prefixes count as numbers too.
void AppendHexadecimal(std::vector<unsigned char>& bytes, char const* text, std::size_t length) {
    using CommonAPI::internal::DecodeHexadecimal;

    bytes.resize((length + 1) / 2);
    std::size_t position = 0;
    std::size_t count = 0;
    while (position < length) {
        std::size_t const run =
            DecodeHexadecimal(text + position, (length - position) / 2, bytes.data() + count);
        position += 2 * run;
        count += run;
        if (position >= length)
            break;

        char const pair[] = {text[position], position + 1 < length ? text[position + 1] : '\0',
                             '\0'};
        unsigned int number;
        if (std::sscanf(pair, "%02X", &number) != 1)
            break;
        bytes[count++] = static_cast<unsigned char>(number);
        position += 2;
    }
    bytes.resize(count);
}

/// The first place of a pattern, or null. Its last byte is what the C library finds fastest; only
/// where that turns up too often for its worth does the search by the whole pattern take over,
/// which also keeps the time linear.
unsigned char const* FindPattern(unsigned char const* begin, unsigned char const* end,
                                 unsigned char const* pattern, std::size_t size) {
    std::size_t const costOfMismatch = 16 * size;
    std::size_t credit = 1 << 12;
    unsigned char const* start = begin;
    while (static_cast<std::size_t>(end - start) >= size) {
        auto const last = static_cast<unsigned char const*>(std::memchr(
            start + size - 1, pattern[size - 1], static_cast<std::size_t>(end - start) - size + 1));
        if (!last)
            return nullptr;
        unsigned char const* const candidate = last - size + 1;
        if (std::memcmp(candidate, pattern, size - 1) == 0)
            return candidate;
        credit += static_cast<std::size_t>(candidate - start) + 1;
        start = candidate + 1;
        if (credit < costOfMismatch)
            return static_cast<unsigned char const*>(
                memmem(start, static_cast<std::size_t>(end - start), pattern, size));
        credit -= costOfMismatch;
    }
    return nullptr;
}

}  // namespace

ByteArray::ByteArray() = default;

ByteArray::ByteArray(char const* text) {
    *this += text;
}

// Without a test for self-assignment: what is emptied first has nothing left to copy.
ByteArray& ByteArray::operator=(ByteArray const& other) {
    bytes.clear();
    textCache.clear();
    return *this += other;
}

ByteArray& ByteArray::operator=(char const* text) {
    bytes.clear();
    *this += text;  // before the cache is emptied, which may be what is read
    textCache.clear();
    return *this;
}

ByteArray& ByteArray::operator=(std::string const& text) {
    assign(text.data(), static_cast<long>(text.size()));
    textCache.clear();
    return *this;
}

ByteArray& ByteArray::operator=(std::vector<int> const& values) {
    bytes.clear();
    textCache.clear();
    bytes.reserve(values.size());
    for (int const value : values)
        bytes.push_back(static_cast<unsigned char>(value));
    return *this;
}

ByteArray& ByteArray::operator+=(unsigned char const& byte) {
    bytes.push_back(byte);
    return *this;
}

ByteArray& ByteArray::operator+=(std::string const& text) {
    append(text.data(), static_cast<long>(text.size()));
    return *this;
}

ByteArray& ByteArray::operator+=(ByteArray const& other) {
    if (&other == this)
        return *this += ByteArray(other);
    bytes.insert(bytes.end(), other.bytes.begin(), other.bytes.end());
    return *this;
}

ByteArray& ByteArray::operator+=(char const* text) {
    if (text)
        append(text, static_cast<long>(std::strlen(text)));
    return *this;
}

void ByteArray::append(void const* data, long const& count) {
    RequireSource(data, count, "ByteArray::append");
    insert(size(), data, count);
}

long ByteArray::size() const {
    return static_cast<long>(bytes.size());
}

long ByteArray::length() const {
    return size();
}

bool ByteArray::empty() const {
    return bytes.empty();
}

unsigned char ByteArray::operator[](int index) {
    Require(index >= 0 && index < size(), "ByteArray::operator[]", outside);
    return bytes.data()[index];
}

unsigned int ByteArray::at(long pos) {
    Require(pos >= 0 && pos <= size() - 4, "ByteArray::at", outside);
    unsigned char const* const from = bytes.data() + pos;
    return static_cast<unsigned int>(from[0]) << 24 | static_cast<unsigned int>(from[1]) << 16 |
           static_cast<unsigned int>(from[2]) << 8 | static_cast<unsigned int>(from[3]);
}

char const* ByteArray::c_str() {
    textCache.assign(reinterpret_cast<char const*>(bytes.data()), bytes.size());
    return textCache.c_str();
}

char const* ByteArray::operator*() {
    return c_str();
}

void ByteArray::assign(void const* data, long const& count) {
    RequireSource(data, count, "ByteArray::assign");
    auto const* const from = static_cast<unsigned char const*>(data);
    bytes.assign(from, from + count);
}

void ByteArray::assign(int const& pos, unsigned char const& value) {
    Require(pos >= 0 && pos < size(), "ByteArray::assign", outside);
    bytes.data()[pos] = value;
}

void ByteArray::assign(int const& pos, unsigned int const& value) {
    Require(pos >= 0 && pos <= size() - 4, "ByteArray::assign", outside);
    unsigned char* const to = bytes.data() + pos;
    to[0] = static_cast<unsigned char>(value >> 24);
    to[1] = static_cast<unsigned char>(value >> 16);
    to[2] = static_cast<unsigned char>(value >> 8);
    to[3] = static_cast<unsigned char>(value);
}

void ByteArray::insert(long pos, void const* data, long count) {
    Require(pos >= 0 && pos <= size(), "ByteArray::insert", outside);
    RequireSource(data, count, "ByteArray::insert");
    auto const* const from = static_cast<unsigned char const*>(data);
    bytes.insert(bytes.begin() + pos, from, from + count);
}

void ByteArray::erase(long first, long last) {
    Require(first >= 0 && first <= last && last <= size(), "ByteArray::erase", outside);
    bytes.erase(bytes.begin() + first, bytes.begin() + last);
}

void ByteArray::resize(long count, int fill) {
    Require(count >= 0, "ByteArray::resize", outside);
    bytes.resize(static_cast<std::size_t>(count), static_cast<unsigned char>(fill));
}

void ByteArray::resize(int& count, int fill) {
    resize(static_cast<long>(count), fill);
}

void ByteArray::clear() {
    bytes.clear();
}

long ByteArray::find(ByteArray const& pattern, long start) {
    Require(start >= 0, "ByteArray::find", outside);
    if (start >= size())
        return -1;
    if (pattern.empty())
        return start;
    unsigned char const* const begin = bytes.data();
    unsigned char const* const match = FindPattern(begin + start, begin + bytes.size(),
                                                   pattern.bytes.data(), pattern.bytes.size());
    return match ? match - begin : -1;
}

void ByteArray::getASCIIHex(std::string& out) {
    std::size_t const count = 2 * bytes.size();
#ifdef __cpp_lib_string_resize_and_overwrite
    if (count > out.size()) {
        out.clear();  // or it would be copied where it grows
        // What it is called with can be larger: GNU's library 12 passes the capacity.
        out.resize_and_overwrite(count, [count](char*, std::size_t) { return count; });
    }
#endif
    out.resize(count);
    CommonAPI::internal::EncodeHexadecimal(bytes.data(), bytes.size(), out.data());
}

// The buffer is emptied before the text is read, so given itself it reads nothing.
void ByteArray::loadASCIIHex(ByteArray const& text) {
    bytes.clear();
    if (&text != this)
        AppendHexadecimal(bytes, reinterpret_cast<char const*>(text.bytes.data()),
                          text.bytes.size());
}

void ByteArray::loadASCIIHex(std::string const& text) {
    bytes.clear();
    AppendHexadecimal(bytes, text.data(), text.size());
}

void ByteArray::getRawData(unsigned char** data, long& length) {
    if (bytes.empty())
        return;
    length = size();
    *data = new unsigned char[bytes.size()];
    std::memcpy(*data, bytes.data(), bytes.size());
}
