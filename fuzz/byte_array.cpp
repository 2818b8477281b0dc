#include <CommonAPI/byte_array.h>

#include "fuzz/model.h"
#include "types/byte_array_access.h"

static std::string Content(ByteArray const& array) {
    auto const& bytes = ByteArrayAccess::bytes(array);
    return {bytes.begin(), bytes.end()};
}

struct Buffer {
    ByteArray real;
    std::string bytes;
    std::string kept;  ///< the text that `c_str()` handed out
    char const* handedOut = nullptr;

    void becomes(std::string const& content) {
        bytes = content;
        kept.clear();
    }

    /// As `sscanf` reads each pair, up to the first that is no number.
    void load(std::string const& digits) {
        bytes.clear();
        unsigned int number;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            if (std::sscanf(digits.substr(i, 2).c_str(), "%02X", &number) != 1)
                break;
            bytes += static_cast<char>(number);
        }
    }

    std::string digits() const {
        std::string all;
        char pair[3];
        for (char const byte : bytes) {
            std::snprintf(pair, sizeof pair, "%02X", byte & 0xFF);
            all += pair;
        }
        return all;
    }

    void checkFind(ByteArray const& pattern, std::string const& text, std::size_t start) {
        bool const inside = start < bytes.size();
        Same(real.find(pattern, start), inside ? long(bytes.find(text, start)) : -1, "find");
    }

    void overwrite(int at, std::string const& text) {
        unsigned int word = 0;
        for (int i = 0; i < 4; ++i)
            word = word * 256 + static_cast<unsigned char>(text[i]);
        real.assign(at, word);
        Same(real.at(at), word, "word");
        real.assign(at + 1, static_cast<unsigned char>(text[4]));
        Same(real[at + 1], static_cast<unsigned char>(text[4]), "byte");
        bytes.replace(at, 4, {text[0], text[4], text[2], text[3]});
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

    void apply(Buffer& other, Line const& line) {
        std::string const& text = line.text;
        auto const at = Within(line.at, bytes.size());
        auto const count = Within(line.count, text.size());
        char const* const null = nullptr;
        if (bytes.size() > 3000)
            throw NotAllowed();  // or it would double without end
        if (line.is("assignText")) {
            real = text.c_str();
            becomes(text.c_str());
        } else if (line.is("assignNull")) {
            real = ByteArray(null) += null;
            real = null;
            becomes("");
        } else if (line.is("assignString")) {
            real = text;
            becomes(text);
        } else if (line.is("assignNumbers")) {
            real = std::vector<int>(3, 256 * line.at + line.count);
            becomes(std::string(3, static_cast<char>(line.count)));
        } else if (line.is("assignOther")) {
            real = other.real;
            becomes(this == &other ? "" : other.bytes);
        } else if (line.is("assignData")) {
            real.assign(text.data(), count);
            bytes = text.substr(0, count);
        } else if (line.is("copy")) {
            ByteArray copy(other.real);
            copy += text;
            Same(std::string(*copy), (other.bytes + text).c_str(), "copy");
        } else if (line.is("appendByte")) {
            real += static_cast<unsigned char>(line.count);
            bytes += static_cast<char>(line.count);
        } else if (line.is("appendText")) {
            real += text.c_str();
            bytes += text.c_str();
        } else if (line.is("appendData")) {
            real.append(text.data(), count);
            bytes += text.substr(0, count);
        } else if (line.is("appendOther")) {
            real += other.real;
            bytes += std::string(other.bytes);
        } else if (line.is("insert")) {
            real.insert(at, text.data(), count);
            bytes.insert(at, text, 0, count);
        } else if (line.is("erase")) {
            auto const last = at + Within(line.count, bytes.size() - at);
            real.erase(at, last);
            bytes.erase(at, last - at);
        } else if (line.is("overwrite") && bytes.size() >= 4 && text.size() > 4) {
            overwrite(std::min(at, bytes.size() - 4), text);
        } else if (line.is("resize")) {
            int size = Within(line.at, 99);
            real.resize(size, line.count);
            real.resize(5L * size, 256 + line.count);
            bytes.resize(size, static_cast<char>(line.count));
            bytes.resize(5 * size, static_cast<char>(line.count));
        } else if (line.is("clear")) {
            real.clear();
            bytes.clear();
        } else if (line.is("c_str")) {
            handedOut = real.c_str();
            kept = bytes;
        } else if (line.is("assignOwnText")) {
            handedOut = real.c_str();
            real = handedOut;
            becomes(bytes.c_str());
        } else if (line.is("useOwnText") && handedOut) {
            real += handedOut;
            bytes += kept.c_str();
            real.insert(at, handedOut, kept.size());
            bytes.insert(at, kept);
        } else if (line.is("find")) {
            checkFind(ByteArray() += text, text, Within(line.count, 200));
            checkFind(other.real, other.bytes, Within(line.count, 200));
        } else if (line.is("getASCIIHex")) {
            std::string out = text;
            real.getASCIIHex(out);
            Same(out, digits(), "digits");
        } else if (line.is("loadText")) {
            real.loadASCIIHex(text);
            load(text);
        } else if (line.is("loadOther")) {
            real.loadASCIIHex(other.real);
            load(this == &other ? "" : other.bytes);
        } else if (line.is("getRawData")) {
            checkRawData();
        }
    }

    void compare() {
        Same(Content(real), bytes, "content");
        Same(real.size(), bytes.size(), "size");
        Same(real.length(), bytes.size(), "length");
        Same(real.empty(), bytes.empty(), "empty");
        if (handedOut)
            Same(std::string(handedOut, kept.size() + 1), kept + '\0', "text handed out");
    }
};

void Try(std::string_view input) {
    Buffer buffers[3];
    ApplyTo(buffers, input);
}

std::vector<std::string> Names() {
    return NamesOf<Buffer>();
}
