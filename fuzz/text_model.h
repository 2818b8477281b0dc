#pragma once

#include <CommonAPI/unicode_string.h>

#include <cerrno>

#include "fuzz/model.h"
#include "types/converter.h"
#include "types/requirement.h"

/// One call of the converter: nothing for illegal text, else what it has written up to a zero.
template <class Character>
std::basic_string<Character> Converted(void const* text, std::size_t bytes, std::size_t room) {
    using namespace CommonAPI::internal;
    static Converter const converter = sizeof(Character) == 1 ? OpenConverter("UTF-8", "WCHAR_T")
                                                              : OpenConverter("WCHAR_T", "UTF-8");
    std::basic_string<Character> result(room / sizeof(Character) + 1, 0);
    auto from = static_cast<char const*>(text);
    auto to = reinterpret_cast<char*>(result.data());
    errno = 0;
    Convert(converter, &from, &bytes, &to, &room);
    bool const cut = sizeof(Character) != 1 && errno == EINVAL;
    if (cut && !hardened)
        throw NotAllowed();  // the rest of the last character would be waited for
    return cut || errno == EILSEQ ? std::basic_string<Character>() : result.c_str();
}

/// The two forms of a `UnicodeString`; a form without a character is not held.
struct TextModel {
    std::wstring wide;
    std::string narrow;

    void toNarrow(std::size_t bytes) { narrow = Converted<char>(wide.data(), bytes, bytes + 1); }
    void toWide() {
        wide = Converted<wchar_t>(narrow.data(), narrow.size(), narrow.size() * sizeof(wchar_t));
        narrow = narrow.c_str();
    }
    /// The length in characters is taken for a count of bytes.
    void narrowFromQuarter() { toNarrow(wide.size()); }
    void fillNarrow() {
        if (narrow.empty() && !wide.empty())
            toNarrow(wide.size() * sizeof(wchar_t));
    }
    void fillWide() {
        if (wide.empty() && !narrow.empty())
            toWide();
    }
};

/// A character for each byte: of each length in UTF-8, and some illegal.
inline std::wstring Widened(std::string const& text) {
    std::wstring wide;
    for (unsigned char const c : text)
        wide += static_cast<wchar_t>(c < 0x80 ? c : c << (c % 4 == 0 ? 13 : c % 2 == 0 ? 3 : 8));
    return wide.c_str();
}

/// Compares the forms as they stand, without deriving one.
inline void SameForms(UnicodeString const& text, TextModel const& model) {
    UnicodeString wide(text);
    UnicodeString narrow(text);
    wide = "";
    narrow = L"";
    Same<std::wstring>(wide.wc_str(), model.wide, "wide form");
    Same(narrow.substr(0, -1), model.narrow, "narrow form");
}
