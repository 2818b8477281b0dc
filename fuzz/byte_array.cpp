#include <CommonAPI/byte_array.h>

#include "fuzz/target.h"

struct ByteArrayModel : std::string {
    std::string cache;

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
    char const* operator*() {
        cache = *this;
        return cache.c_str();
    }
    void erase(long first, long last) { std::string::erase(first, last - first); }
    long find(std::string const& pattern, long start) const {
        return start < long(size()) ? long(std::string::find(pattern, start)) : -1;
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

template <class Array>
std::string Apply(Array& it, Array& other, Line const& line) {
    std::string const& text = line.text;
    auto const at = Within(line.at, it.length());
    if (it.length() > 3000)
        throw NotAllowed();  // or it would double without end
    if (line.is("assignText"))
        it = line.count == 0 ? nullptr : text.c_str();
    if (line.is("assignOwnText"))
        it = *it;
    if (line.is("assignOther"))
        it = other;
    if (line.is("appendOther"))
        it += other;
    if (line.is("insert"))
        it.insert(at, text.data(), Within(line.count, text.size()));
    if (line.is("insertOwnText"))
        it.insert(at, *it, it.length());
    if (line.is("erase"))
        it.erase(at, at + Within(line.count, it.length() - at));
    if (line.is("clear")) {
        char const* const kept = *it;
        it.clear();
        return kept;
    }
    if (line.is("find"))
        return Described(it.find(other, Within(line.count, 200)));
    if (line.is("loadOther"))
        it.loadASCIIHex(other);
    return text;
}

template <class Array>
std::string State(Array& array) {
    return Described(array.length(), array.empty(), std::string(*array, array.length() + 1));
}

static void Try(std::string const& input) {
    CompareWithModel<ByteArray, ByteArrayModel>(input);
}
