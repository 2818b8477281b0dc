#include <CommonAPI/byte_array.h>

#include <memory>

#include "fuzz/target.h"

struct ByteArrayModel : std::string {
    std::string cache;

    using std::string::assign;
    using std::string::operator=;
    using std::string::operator+=;

    ByteArrayModel() = default;
    ByteArrayModel(ByteArrayModel const& other) = default;

    ByteArrayModel& operator=(ByteArrayModel const& other) {
        std::string::operator=(this == &other ? "" : std::string(other));
        return *this;
    }
    ByteArrayModel& operator=(char const* text) {
        std::string::operator=(std::string(text ? text : ""));
        return *this;
    }
    ByteArrayModel& operator=(std::vector<int> const& values) {
        assign(values.begin(), values.end());
        return *this;
    }
    ByteArrayModel& operator+=(char const* text) {
        append(text ? text : "");
        return *this;
    }
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
        char pair[3];
        out.clear();
        for (char const byte : *this) {
            std::snprintf(pair, sizeof pair, "%02X", byte & 0xFF);
            out += pair;
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
    auto const count = long(Within(line.count, text.size()));
    auto const byte = static_cast<unsigned char>(line.count);
    if (it.length() > 3000)
        throw NotAllowed();  // or it would double without end
    if (line.is("assignText"))
        it = line.count == 0 ? nullptr : text.c_str();
    if (line.is("assignOwnText"))
        it = *it;
    if (line.is("assignString"))
        it = text;
    if (line.is("assignNumbers"))
        it = std::vector<int>(3, 256 * line.at + line.count);
    if (line.is("assignOther"))
        it = other;
    if (line.is("assignData"))
        it.assign(text.data(), count);
    if (line.is("appendByte"))
        it += byte;
    if (line.is("appendText"))
        it += line.count == 0 ? nullptr : text.c_str();
    if (line.is("appendString"))
        it += text;
    if (line.is("appendOther"))
        it += other;
    if (line.is("insert"))
        it.insert(at, text.data(), count);
    if (line.is("insertOwnText"))
        it.insert(at, *it, it.length());
    if (line.is("erase"))
        it.erase(at, at + Within(line.count, it.length() - at));
    if (line.is("overwriteByte") && at < std::size_t(it.length()))
        it.assign(int(at), byte);
    if (line.is("overwriteWord") && at + 4 <= std::size_t(it.length()))
        it.assign(int(at), 0x01020304u * byte);
    if (line.is("readWord") && at + 4 <= std::size_t(it.length()))
        return Described(it[at] & 0xFF, it.at(at));
    if (line.is("resize")) {
        int size = Within(line.at, 99);
        it.resize(size, line.count);
        it.resize(5L * size, 256 + line.count);
    }
    if (line.is("clear")) {
        char const* const kept = *it;
        it.clear();
        return kept;
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

static void Try(std::string const& input) {
    CompareWithModel<ByteArray, ByteArrayModel>(input);
}
