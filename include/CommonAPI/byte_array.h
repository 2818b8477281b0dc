/// @file
/// `ByteArray`, the growable buffer of bytes in which binary data, cipher input and output and raw
/// copies of text travel.
#ifndef COMMONAPI_BYTE_ARRAY_H
#define COMMONAPI_BYTE_ARRAY_H

#include <CommonAPI/export.h>

#include <string>
#include <vector>

/// A growable buffer of unsigned bytes.
///
/// Positions and lengths are signed and counted in bytes from 0. No operation checks them, and none
/// reports an error: a position or count outside the buffer is a mistake of the caller, which ends
/// the process where the library was built with COMMONAPI_HARDENED.
///
/// Multi-byte access is big-endian: the word at position p takes the bytes p to p + 3, the most
/// significant first.
///
/// Ownership: the buffer owns its bytes; copies are deep. Nothing hands out their address, and the
/// text of `c_str()` is a copy, so that text may be given to any operation of the same buffer.
///
/// Threads: a plain value without locks. `c_str()` writes an internal cache, so one object must not
/// be used from two threads at once, not even for reading.
class COMMONAPI_EXPORT ByteArray {
public:
    /// Empty.
    ByteArray();
    /// The characters of `text` without its terminator; a null pointer gives an empty buffer.
    ByteArray(char const* text);
    /// A deep copy.
    ByteArray(ByteArray const& other) = default;

    /// Replaces the content by a copy of `other`. Assigning a buffer to itself leaves it empty.
    ByteArray& operator=(ByteArray const& other);
    /// Replaces the content by the characters of `text`; a null pointer empties the buffer.
    ByteArray& operator=(char const* text);
    /// Replaces the content by every character of `text`, zero characters included.
    ByteArray& operator=(std::string const& text);
    /// Replaces the content by the low 8 bits of each integer.
    ByteArray& operator=(std::vector<int> const& values);

    /// Appends one byte.
    ByteArray& operator+=(unsigned char const& byte);
    /// Appends every character of `text`, zero characters included.
    ByteArray& operator+=(std::string const& text);
    /// Appends the bytes of `other`; appending a buffer to itself doubles it.
    ByteArray& operator+=(ByteArray const& other);
    /// Appends the characters of `text` without its terminator; a null pointer changes nothing.
    ByteArray& operator+=(char const* text);
    /// Appends `count` bytes read from `data`.
    void append(void const* data, long const& count);

    /// The number of bytes.
    long size() const;
    /// The same as `size()`.
    long length() const;
    /// True when `size()` is 0.
    bool empty() const;

    /// The byte at `index`, by value: to change it use `assign`. REQUIRES: 0 <= index < size().
    unsigned char operator[](int index);
    /// The big-endian word at `pos`. REQUIRES: 0 <= pos and pos + 4 <= size().
    unsigned int at(long pos);

    /// A terminated copy of all bytes, zero bytes included, so a reader of C strings sees them up
    /// to the first zero. It belongs to the buffer and is valid until the next `c_str()`,
    /// assignment or destruction; it does not follow later changes.
    char const* c_str();
    /// The same as `c_str()`.
    char const* operator*();

    /// Replaces the content by `count` bytes read from `data`.
    void assign(void const* data, long const& count);
    /// Overwrites one byte. REQUIRES: 0 <= pos < size().
    void assign(int const& pos, unsigned char const& value);
    /// Overwrites four bytes with a big-endian word. REQUIRES: 0 <= pos and pos + 4 <= size().
    void assign(int const& pos, unsigned int const& value);
    /// Inserts `count` bytes read from `data` before `pos`. REQUIRES: 0 <= pos <= size().
    void insert(long pos, void const* data, long count);
    /// Removes the bytes from `first` up to, but not including, the position `last`.
    /// REQUIRES: 0 <= first <= last <= size().
    void erase(long first, long last);
    /// Sets the length; new bytes take the low 8 bits of `fill`. REQUIRES: 0 <= count.
    void resize(long count, int fill);
    /// The same for a length held in an `int` variable, which is only read.
    void resize(int& count, int fill);
    /// Removes all bytes. A text handed out by `c_str()` keeps its content.
    void clear();

    /// The first position at or after `start` where `pattern` occurs, or -1. An empty pattern
    /// occurs at `start` when that lies inside the buffer. Linear time. REQUIRES: 0 <= start.
    long find(ByteArray const& pattern, long start);

    /// Replaces `out` by the bytes as upper-case hexadecimal, two characters a byte.
    void getASCIIHex(std::string& out);
    /// Replaces the content by the bytes that hexadecimal text of either case stands for. Each pair
    /// of characters is read as `sscanf` reads "%02X", a lone last character by itself; the first
    /// pair that is no number ends the reading in silence, and the bytes before it stay.
    void loadASCIIHex(std::string const& text);
    /// The same for characters held in a buffer. Given the buffer itself, it becomes empty.
    void loadASCIIHex(ByteArray const& text);

    /// Stores in `*data` a copy of the bytes allocated with `new unsigned char[]`, which the caller
    /// frees with `delete[]`, and in `length` their number. Writes neither when the buffer is
    /// empty.
    void getRawData(unsigned char** data, long& length);

private:
    friend struct ByteArrayAccess;

    std::vector<unsigned char> bytes;
    std::string textCache;
};

#endif
