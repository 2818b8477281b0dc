#include <CommonAPI/byte_array.h>

#include <memory>

#include "fuzz/model.h"

struct ByteArrayModel : std::string {
    std::string cache;

    using std::string::assign;
    using std::string::operator=;
    using std::string::operator+=;

    void operator=(ByteArrayModel const& other) {
        std::string::operator=(this == &other ? "" : std::string(other));
    }
    void operator=(char const* text) { *this = std::string(text ? text : ""); }
    void operator=(std::vector<int> const& values) { assign(values.begin(), values.end()); }
    void operator+=(char const* text) { append(text ? text : ""); }

    char const* operator*() {
        cache = *this;
        return cache.c_str();
    }
    unsigned int at(long pos) const {
        unsigned int word = 0;
        for (char const byte : substr(pos, 4))
            word = word * 256 + static_cast<unsigned char>(byte);
        return word;
    }
    void assign(int pos, unsigned char value) { (*this)[pos] = static_cast<char>(value); }
    void assign(int pos, unsigned int word) {
        for (int shift = 24; shift >= 0; shift -= 8)
            (*this)[pos++] = static_cast<char>(word >> shift);
    }
    void erase(long first, long last) { std::string::erase(first, last - first); }
    long find(std::string const& pattern, long start) const {
        return start < long(size()) ? long(std::string::find(pattern, start)) : -1;
    }
    void getASCIIHex(std::string& out) const {
        out.clear();
        for (unsigned char const byte : *this) {
            out += "0123456789ABCDEF"[byte / 16];
            out += "0123456789ABCDEF"[byte % 16];
        }
    }
    void loadASCIIHex(std::string const& digits) {
        unsigned int number;
        clear();
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            if (std::sscanf(digits.substr(i, 2).c_str(), "%02X", &number) != 1)
                break;
            push_back(static_cast<char>(number));
        }
    }
};

static std::string RawData(ByteArray& array) {
    unsigned char* data = nullptr;
    long length = -1;
    array.getRawData(&data, length);
    std::unique_ptr<unsigned char[]> const owner(data);
    return data ? std::string(data, data + length) : std::to_string(length);
}

static std::string RawData(ByteArrayModel const& model) {
    return model.empty() ? "-1" : std::string(model);
}

template <class Array>
std::string Apply(Array& it, Array& other, Line const& line) {
    std::string text = line.text;
    auto const at = Within(line.at, it.length());
    auto const byte = static_cast<unsigned char>(line.count);
    std::string_view source = text;
    if (line.count == 0)
        source = {};  // null
    if (line.count == 1)
        source = {*it, static_cast<std::size_t>(it.length())};
    if (line.is("assignText"))
        it = source.data();
    if (line.is("assignString"))
        it = text;
    if (line.is("assignNumbers"))
        it = std::vector<int>(3, 256 * line.at + line.count);
    if (line.is("assignOther"))
        it = other;
    if (line.is("assignData"))
        it.assign(source.data(), source.size());
    if (line.is("appendByte"))
        it += byte;
    if (line.is("appendText"))
        it += source.data();
    if (line.is("appendString"))
        it += text;
    if (line.is("appendOther"))
        it += other;
    if (line.is("insert"))
        it.insert(at, source.data(), source.size());
    if (line.is("erase"))
        it.erase(at, at + Within(line.count, it.length() - at));
    if (line.is("overwriteByte") && at < std::size_t(it.length()))
        it.assign(int(at), byte);
    if (line.is("overwriteWord") && at + 4 <= std::size_t(it.length()))
        it.assign(int(at), 0x01020304u * byte);
    if (line.is("readWord") && at + 4 <= std::size_t(it.length()))
        return Described(it[at] & 0xFF, it.at(at));
    if (line.is("resize")) {
        int length = Within(line.at, 99);
        it.resize(length, 256 + line.count);
        return Described(length);
    }
    if (line.is("clear")) {
        it.clear();
        return std::string(source);  // an own text is kept
    }
    if (line.is("find"))
        return Described(it.find(other, Within(line.count, 200)));
    if (line.is("getASCIIHex"))
        it.getASCIIHex(text);
    if (line.is("loadText"))
        it.loadASCIIHex(text);
    if (line.is("loadOther"))
        it.loadASCIIHex(other);
    if (line.is("getRawData"))
        return RawData(it);
    return text;
}

template <class Array>
std::string State(Array& array) {
    return Described(array.length(), array.empty(), std::string(*array, array.length() + 1));
}

void Try(std::string const& input) {
    CompareWithModel<ByteArray, ByteArrayModel>(input);
}
