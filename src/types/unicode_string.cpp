#include <CommonAPI/unicode_string.h>

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <ostream>

#include "types/requirement.h"

using CommonAPI::internal::NotNull;

namespace {

constexpr std::size_t numberTextSize = 512;

std::size_t Index(long position) {
    return static_cast<std::size_t>(position);
}

}  // namespace

UnicodeString::UnicodeString() : targetTranscoder(nullptr) {}

UnicodeString::UnicodeString(char const* encoding, char const* text) : targetTranscoder(nullptr) {
    instantiateTargetTranscoder(NotNull(encoding, "UnicodeString"), "WCHAR_T");
    *this = text;
}

UnicodeString::UnicodeString(char const* text)
    : narrowString(NotNull(text, "UnicodeString")), targetTranscoder(nullptr) {}

UnicodeString::UnicodeString(std::string const& text) : UnicodeString(text.c_str()) {}

UnicodeString::UnicodeString(wchar_t const* text)
    : wideString(NotNull(text, "UnicodeString")), targetTranscoder(nullptr) {}

UnicodeString::UnicodeString(UnicodeString const& other) = default;

UnicodeString::~UnicodeString() = default;

UnicodeString& UnicodeString::operator=(char const* text) {
    narrowString = NotNull(text, "UnicodeString::operator=");
    return *this;
}

UnicodeString& UnicodeString::operator=(std::string const& text) {
    return *this = text.c_str();
}

UnicodeString& UnicodeString::operator=(wchar_t const* text) {
    wideString = NotNull(text, "UnicodeString::operator=");
    return *this;
}

UnicodeString& UnicodeString::operator=(UnicodeString& other) {
    wideString = other.wideString;
    narrowString = other.narrowString;
    return *this;
}

UnicodeString& UnicodeString::operator=(long const& value) {
    char number[numberTextSize];
    std::snprintf(number, sizeof number, "%511ld", value);  // a width: leading blanks fill it
    narrowString = number;
    return *this;
}

UnicodeString& UnicodeString::operator+=(char const* text) {
    if (!text)
        return *this;
    narrowString += text;
    if (!wideString.empty())
        deriveWide();
    return *this;
}

UnicodeString& UnicodeString::operator+=(wchar_t const* text) {
    if (!text)
        return *this;
    wideString += text;
    if (!narrowString.empty())
        narrowFromFirstQuarter();
    return *this;
}

UnicodeString& UnicodeString::operator+=(std::string const& text) {
    return *this += text.c_str();
}

UnicodeString& UnicodeString::operator+=(UnicodeString const& other) {
    return other.wideString.empty() ? *this += other.narrowString.c_str()
                                    : *this += other.wideString.c_str();
}

UnicodeString& UnicodeString::operator+=(float const& value) {
    char number[numberTextSize];
    std::snprintf(number, sizeof number, "%f", static_cast<double>(value));
    return *this += number;
}

void UnicodeString::insert(std::string const& text, long const& position, long const& count) {
    if (narrowString.empty())
        narrowFromFirstQuarter();
    if (count == -1)
        narrowString.insert(Index(position), text);
    else
        narrowString.insert(Index(position), text.c_str(), Index(count));
}

void UnicodeString::erase(int position, int count) {
    wideString.erase(Index(position), Index(count));
    if (!narrowString.empty())
        narrowFromFirstQuarter();
}

void UnicodeString::clear() {
    wideString.clear();
    narrowString.clear();
}

char const* UnicodeString::c_str() {
    if (!wideString.empty() && narrowString.empty())
        deriveNarrow(wideString.c_str(), wideString.size() * sizeof(wchar_t));
    return narrowString.c_str();
}

wchar_t const* UnicodeString::wc_str() {
    if (!narrowString.empty() && wideString.empty())
        deriveWide();
    return wideString.c_str();
}

char const* UnicodeString::operator*() {
    return c_str();
}

char UnicodeString::operator[](int index) {
    return c_str()[index];
}

bool UnicodeString::operator!() const {
    return empty();
}

bool UnicodeString::empty() const {
    return wideString.empty() && narrowString.empty();
}

long UnicodeString::length() const {
    if (!wideString.empty())
        return static_cast<long>(wideString.length());
    return narrowString.empty() ? -1 : static_cast<long>(narrowString.length());
}

std::string UnicodeString::substr(long const& position, long const& count) {
    if (narrowString.empty())
        narrowFromFirstQuarter();
    return narrowString.substr(Index(position), Index(count));
}

bool UnicodeString::operator==(char const* text) {
    return std::strcmp(c_str(), NotNull(text, "UnicodeString::operator==")) == 0;
}

bool UnicodeString::operator==(UnicodeString& other) {
    wchar_t const* const otherText = other.wc_str();
    return std::wcscmp(wc_str(), otherText) == 0;
}

int UnicodeString::compare(char const* text, bool caseSensitive) {
    NotNull(text, "UnicodeString::compare");
    return caseSensitive ? std::strcmp(c_str(), text) : strcasecmp(c_str(), text);
}

int UnicodeString::compare(char const* text, long const& position, long const& count,
                           bool caseSensitive) {
    NotNull(text, "UnicodeString::compare");
    char const* const start = c_str() + position;
    if (count == 0)
        return caseSensitive ? std::strcmp(start, text) : strcasecmp(start, text);
    return caseSensitive ? std::strncmp(start, text, Index(count))
                         : strncasecmp(start, text, Index(count));
}

int UnicodeString::compare(wchar_t const* text, bool caseSensitive) {
    if (wideString.empty())
        return text ? -1 : 0;
    if (!text)
        return 1;
    return caseSensitive ? std::wcscmp(wideString.c_str(), text)
                         : CommonAPI::wcscasecmp(wideString.c_str(), text);
}

long UnicodeString::find(char c, long const& position) {
    return static_cast<long>(narrowString.find(c, Index(position)));
}

long UnicodeString::find(char const* text, long const& position) {
    return static_cast<long>(
        narrowString.find(NotNull(text, "UnicodeString::find"), Index(position)));
}

long UnicodeString::find(wchar_t c) {
    return static_cast<long>(wideString.find(c));
}

long UnicodeString::find(wchar_t const* text) {
    return static_cast<long>(wideString.find(NotNull(text, "UnicodeString::find")));
}

long UnicodeString::find(UnicodeString& other) {
    return find(other.wc_str());
}

// The length in characters is handed over as the count of bytes, so a quarter of the text arrives.
void UnicodeString::narrowFromFirstQuarter() {
    deriveNarrow(wideString.c_str(), wideString.length());
}

std::ostream& operator<<(std::ostream& stream, UnicodeString& text) {
    return stream << text.c_str();
}

int CommonAPI::wcscasecmp(wchar_t const* a, wchar_t const* b) {
    NotNull(a, "wcscasecmp");
    NotNull(b, "wcscasecmp");
    // Only as far as the first text goes; the second one's terminator is a difference before that.
    for (; *a != L'\0'; ++a, ++b) {
        auto const upperA = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(*a)));
        auto const upperB = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(*b)));
        if (upperA != upperB)
            return upperA < upperB ? -1 : 1;
    }
    return 0;
}
