// A plug-in: it says who it is, and describes a text.
#include <CommonAPI/text_utilities.h>
#include <CommonAPI/unicode_string.h>

#include <cwctype>
#include <string>
#include <string_view>

extern "C" {

COMMONAPI_EXPORT char const* _KeldaSODisplayName = "Text Statistics";
COMMONAPI_EXPORT char const* _KeldaSOVersion = "1.0";

/// Sets `description` to the number of characters and words in `text`.
COMMONAPI_EXPORT void DescribeText(UnicodeString& text, std::string& description) {
    std::wstring_view const characters = text.wc_str();
    long words = 0;
    bool inWord = false;
    for (wchar_t const character : characters) {
        bool const isBlank = std::iswspace(static_cast<std::wint_t>(character)) != 0;
        words += !isBlank && !inWord;
        inWord = !isBlank;
    }
    description = itoa(static_cast<long>(characters.size()));
    description.append(" characters, ").append(itoa(words)).append(" words");
}
}
