#include "text.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t blockSize = 8;

struct Character {
    char32_t code;
    std::size_t length;
};

/// The first character of UTF-8 text; zero, which is never part of a text, if there is none.
Character First(std::string_view text) {
    constexpr Character malformed = {0, 1};
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    auto const lead = static_cast<unsigned char>(text[0]);
    auto const length = static_cast<std::size_t>(std::countl_one(lead));
    if (length == 0)
        return {lead, 1};
    if (length == 1 || length > 4 || length > text.size())
        return malformed;
    char32_t code = lead & (0x7F >> length);
    for (char const byte : text.substr(1, length - 1)) {
        if ((byte & 0xC0) != 0x80)
            return malformed;
        code = code << 6 | (byte & 0x3F);
    }
    bool const isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || isSurrogate)
        return malformed;
    return {code, length};
}

bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

bool IsLatinLetter(char32_t code) {
    return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
}

/// From the phonetic to the last before the Vietnamese letters; not Chinese, Japanese and Korean.
bool IsOtherAlphabet(char32_t code) {
    return code >= 0x250 && code < 0x1E00;
}

}  // namespace

bool IsText(std::string_view value) {
    auto const isPlain = [](char character) { return character >= ' ' && character <= '~'; };
    if (std::all_of(value.begin(), value.end(), isPlain))
        return true;
    bool latin = false;
    bool other = false;
    for (std::size_t position = 0; position < value.size();) {
        auto const [code, length] = First(value.substr(position));
        if (IsControl(code) && code != '\t')
            return false;
        latin = latin || IsLatinLetter(code);
        other = other || IsOtherAlphabet(code);
        position += length;
    }
    return value.size() > blockSize || !latin || !other;
}

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        auto const [code, length] = First(text);
        for (char const byte : text.substr(0, length)) {
            constexpr char const* hexadecimal = "0123456789ABCDEF";
            if (IsControl(code))
                printable += {'\\', 'x', hexadecimal[byte >> 4 & 0xF], hexadecimal[byte & 0xF]};
            else
                printable += byte;
        }
        text.remove_prefix(length);
    }
    return printable;
}

std::string_view WithoutFileMarks(std::string_view line) {
    if (line.starts_with(byteOrderMark))
        line.remove_prefix(byteOrderMark.size());
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}
