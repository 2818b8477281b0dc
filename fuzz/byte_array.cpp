#include <CommonAPI/byte_array.h>

#include "fuzz/model.h"
#include "types/byte_array_access.h"

/// As `sscanf` reads each pair, up to the first that is no number.
static std::string Parsed(std::string const& digits) {
    std::string bytes;
    unsigned int number;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        if (std::sscanf(digits.substr(i, 2).c_str(), "%02X", &number) != 1)
            break;
        bytes += static_cast<char>(number);
    }
    return bytes;
}

static std::string Digits(std::string const& bytes) {
    std::string digits;
    char pair[3];
    for (char const byte : bytes) {
        std::snprintf(pair, sizeof pair, "%02X", byte & 0xFF);
        digits += pair;
    }
    return digits;
}

struct Pair {
    ByteArray real;
    std::string bytes;

    void checkFind(ByteArray const& pattern, std::string const& text, std::size_t start) {
        bool const inside = start < bytes.size();
        Same(real.find(pattern, start), inside ? long(bytes.find(text, start)) : -1, "find");
    }

    void checkRawData() {
        unsigned char* data = nullptr;
        long length = -1;
        real.getRawData(&data, length);
        Same(length, bytes.empty() ? -1 : long(bytes.size()), "length of raw data");
        if (data)
            Same(std::string(data, data + length), bytes, "raw data");
        delete[] data;
    }

    void overwriteWord(int at, std::string const& text) {
        unsigned int word = 0;
        for (int i = 0; i < 4; ++i)
            word = word * 256 + static_cast<unsigned char>(text[i]);
        real.assign(at, word);
        bytes.replace(at, 4, text, 0, 4);
        Same(real.at(at), word, "word");
    }

    void apply(Pair& other, Line const& line) {
        std::string const& text = line.text;
        auto const at = Within(line.at, bytes.size());
        auto const count = Within(line.count, text.size());
        char const letter = static_cast<char>(line.count);
        char const* const null = nullptr;
        if (bytes.size() > 3000)
            throw NotAllowed();  // or it would double without end
        if (line.is("assignText")) {
            real = text.c_str();
            bytes = text.c_str();
        } else if (line.is("assignOwnText")) {
            real = real.c_str();
            bytes = std::string(bytes.c_str());
        } else if (line.is("assignNull")) {
            real = ByteArray(null) += null;
            real = null;
            bytes.clear();
        } else if (line.is("assignString")) {
            real = text;
            bytes = text;
        } else if (line.is("assignNumbers")) {
            real = std::vector<int>(3, 256 * line.at + line.count);
            bytes.assign(3, letter);
        } else if (line.is("assignOther")) {
            real = other.real;
            bytes = this == &other ? "" : other.bytes;
        } else if (line.is("assignData")) {
            real.assign(text.data(), count);
            bytes.assign(text, 0, count);
        } else if (line.is("appendByte")) {
            real += static_cast<unsigned char>(letter);
            bytes += letter;
        } else if (line.is("appendText")) {
            real += text.c_str();
            bytes += text.c_str();
        } else if (line.is("appendOther")) {
            real += other.real;
            bytes += std::string(other.bytes);
        } else if (line.is("appendData")) {
            real.append(text.data(), count);
            bytes.append(text, 0, count);
        } else if (line.is("insert")) {
            real.insert(at, text.data(), count);
            bytes.insert(at, text, 0, count);
        } else if (line.is("insertOwnText")) {
            real.insert(at, real.c_str(), bytes.size());
            bytes.insert(at, std::string(bytes));
        } else if (line.is("erase")) {
            auto const last = at + Within(line.count, bytes.size() - at);
            real.erase(at, last);
            bytes.erase(at, last - at);
        } else if (line.is("overwriteByte") && at < bytes.size()) {
            real.assign(at, static_cast<unsigned char>(letter));
            bytes[at] = letter;
            Same(real[at], static_cast<unsigned char>(letter), "byte");
        } else if (line.is("overwriteWord") && at + 4 <= bytes.size() && text.size() >= 4) {
            overwriteWord(at, text);
        } else if (line.is("resize")) {
            int size = Within(line.at, 99);
            real.resize(size, line.count);
            real.resize(5L * size, 256 + line.count);
            bytes.resize(size, letter);
            bytes.resize(5 * size, letter);
        } else if (line.is("clear")) {
            real.clear();
            bytes.clear();
        } else if (line.is("find")) {
            checkFind(ByteArray() += text, text, Within(line.count, 200));
            checkFind(other.real, other.bytes, Within(line.count, 200));
        } else if (line.is("getASCIIHex")) {
            std::string out = text;
            real.getASCIIHex(out);
            Same(out, Digits(bytes), "digits");
        } else if (line.is("loadText")) {
            real.loadASCIIHex(text);
            bytes = Parsed(text);
        } else if (line.is("loadOther")) {
            real.loadASCIIHex(other.real);
            bytes = Parsed(this == &other ? "" : other.bytes);
        } else if (line.is("getRawData")) {
            checkRawData();
        }
    }

    void compare() {
        auto const& content = ByteArrayAccess::bytes(real);
        Same(std::string(content.begin(), content.end()), bytes, "content");
        Same(real.length(), bytes.size(), "length");
        Same(real.empty(), bytes.empty(), "empty");
        Same(std::string(*real, bytes.size() + 1), bytes + '\0', "text");
    }
};

#include "fuzz/driver.h"
