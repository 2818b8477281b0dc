#include <CommonAPI/unicode_string.h>

#include <cerrno>
#include <clocale>
#include <cwctype>

#include "fuzz/model.h"
#include "types/converter.h"

static char const* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");

/// One call of the converter: nothing for illegal text, else what it has written up to a zero.
template <class Character>
std::basic_string<Character> Converted(void const* text, std::size_t bytes) {
    using namespace CommonAPI::internal;
    static Converter const converter = sizeof(Character) == 1 ? OpenConverter("UTF-8", "WCHAR_T")
                                                              : OpenConverter("WCHAR_T", "UTF-8");
    std::size_t room = sizeof(Character) * bytes + 1;
    std::basic_string<Character> result(room, 0);
    auto from = static_cast<char const*>(text);
    auto to = reinterpret_cast<char*>(result.data());
    errno = 0;
    Convert(converter, &from, &bytes, &to, &room);
    if (sizeof(Character) != 1 && errno == EINVAL)
        throw std::invalid_argument("the rest of the last character would be waited for");
    return errno == EILSEQ ? std::basic_string<Character>() : result.c_str();
}

/// A form without a character is not held.
struct UnicodeStringModel {
    std::wstring wide;
    std::string narrow;

    UnicodeStringModel() = default;
    explicit UnicodeStringModel(std::string const& text) : narrow(text.c_str()) {}
    explicit UnicodeStringModel(std::wstring const& text) : wide(text) {}
    UnicodeStringModel(char const*, char const* text) : narrow(text) {}

    void toNarrow(std::size_t bytes) { narrow = Converted<char>(wide.data(), bytes); }
    void toWide() {
        wide = Converted<wchar_t>(narrow.data(), narrow.size());
        narrow = narrow.c_str();
    }
    /// The length in characters is taken for a count of bytes.
    void narrowFromQuarter() { toNarrow(wide.size()); }

    void operator=(std::string const& text) { narrow = text.c_str(); }
    void operator=(std::wstring const& text) { wide = text; }
    void operator=(long number) {
        narrow = std::to_string(number);
        narrow.insert(0, 511 - narrow.size(), ' ');
    }
    void operator+=(char const* text) {
        if (!text)
            return;
        narrow += text;
        if (!wide.empty())
            toWide();
    }
    void operator+=(wchar_t const* text) {
        if (!text)
            return;
        wide += text;
        if (!narrow.empty())
            narrowFromQuarter();
    }
    void operator+=(std::string const& text) { *this += text.c_str(); }
    void operator+=(float number) { *this += std::to_string(number); }
    void operator+=(UnicodeStringModel other) {
        if (!other.wide.empty())
            return *this += other.wide.c_str();
        *this += other.narrow;
    }
    void insert(std::string const& text, long position, long count) {
        if (narrow.empty())
            narrowFromQuarter();
        narrow.insert(position, text, 0, count);
    }
    void erase(int position, int count) {
        wide.erase(position, count);
        if (!narrow.empty())
            narrowFromQuarter();
    }
    void clear() { *this = UnicodeStringModel(); }

    char const* c_str() {
        if (narrow.empty() && !wide.empty())
            toNarrow(wide.size() * sizeof(wchar_t));
        return narrow.c_str();
    }
    wchar_t const* wc_str() {
        if (wide.empty() && !narrow.empty())
            toWide();
        return wide.c_str();
    }
    char const* operator*() { return c_str(); }
    char operator[](int index) { return c_str()[index]; }
    bool operator!() const { return empty(); }
    bool empty() const { return wide.empty() && narrow.empty(); }
    long length() const { return empty() ? -1 : wide.empty() ? narrow.size() : wide.size(); }
    std::string substr(long position, long count) {
        if (narrow.empty())
            narrowFromQuarter();
        return narrow.substr(position, count);
    }
    bool operator==(char const* text) { return std::string(c_str()) == text; }
    bool operator==(UnicodeStringModel& other) {
        std::wstring const otherText = other.wc_str();
        return otherText == wc_str() || this == &other;  // whose second conversion may succeed
    }
    int compare(char const* text, bool exact) { return compare(text, 0, 0, exact); }
    int compare(char const* text, long position, long count, bool exact) {
        std::size_t const most = count == 0 ? 1 << 20 : count;
        char const* const from = c_str() + position;
        return exact ? std::strncmp(from, text, most) : strncasecmp(from, text, most);
    }
    int compare(wchar_t const* text, bool exact) {
        if (wide.empty())
            return text ? -1 : 0;
        if (!text)
            return 1;
        std::wstring a = wide;
        std::wstring b = text;
        if (!exact) {
            b = b.substr(0, a.size());
            std::transform(a.begin(), a.end(), a.begin(), std::towupper);
            std::transform(b.begin(), b.end(), b.begin(), std::towupper);
        }
        return a.compare(b);
    }
    long find(auto text, long position) { return narrow.find(text, position); }
    long find(auto text) { return wide.find(text); }
    long find(UnicodeStringModel& other) { return wide.find(other.wc_str()); }

    wchar_t const* transcodeMessage(char const* text, unsigned int count) {
        std::string const all = text;
        narrow = all.substr(0, count);
        toWide();
        narrow = all;
        return wide.c_str();
    }
    char const* transcodeMessage(wchar_t const* text, unsigned int count) {
        narrow = Converted<char>(text, count);
        return narrow.c_str();
    }
};

/// A character for each byte: of each length in UTF-8, and some illegal.
static std::wstring Widened(std::string const& text) {
    std::wstring wide;
    for (unsigned char const c : text)
        wide += static_cast<wchar_t>(c < 0x80 ? c : c << c % 16);
    return wide;
}

template <class Character>
Character const* Part(Character const* text, int at) {
    return text + Within(at, std::char_traits<Character>::length(text));
}

template <class Text>
std::string State(Text const& text) {
    return Forms(text) + Described(text.length(), text.empty());
}

template <class Text>
std::string Apply(Text& it, Text& other, Line const& line) {
    std::string const& text = line.text;
    std::wstring const wide = Widened(text);
    bool const null = line.count == 0;
    bool const exact = line.own == 0;
    if (line.is("assignText"))
        it = text;
    if (line.is("assignWide"))
        it = wide.c_str();
    if (line.is("assignNumber"))
        it = 10007L * line.at * line.count;
    if (line.is("assignOther"))
        it = other;
    if (line.is("assignPart"))
        it = Part(other.c_str(), line.at);
    if (line.is("assignWidePart"))
        it = Part(other.wc_str(), line.at);
    if (line.is("make"))
        return State(Text(text)) + State(Text("ISO-8859-1", text.c_str())) +
               State(Text(wide.c_str()));
    if (line.is("appendNumber"))
        it += line.count / 2.0f;
    if (line.is("appendOther"))
        it += other;
    if (line.is("appendPart"))
        it += null ? nullptr : Part(other.c_str(), line.at);
    if (line.is("appendString"))
        it += text;
    if (line.is("appendWidePart"))
        it += null ? nullptr : Part(other.wc_str(), line.at);
    if (line.is("insert"))
        it.insert(text, line.at, line.count == -1 ? -1 : Within(line.count, text.size()));
    if (line.is("erase"))
        it.erase(line.at, line.count);
    if (line.is("substr"))
        return it.substr(line.at, line.count);
    if (line.is("clear"))
        it.clear();
    if (line.is("read"))
        return Described(*it, it[0], !it, it.wc_str());
    if (line.is("equal"))
        return Described(it == other, it == text.c_str());
    if (line.is("compare"))
        return Described(std::clamp(it.compare(text.c_str(), exact), -1, 1),
                         std::clamp(it.compare(text.c_str(), Part(it.c_str(), line.at) - *it,
                                               Within(line.count, 9), exact),
                                    -1, 1),
                         std::clamp(it.compare(null ? nullptr : wide.c_str(), exact), -1, 1));
    if (line.is("find"))
        return Described(it.find(other), it.find(text.c_str(), line.at), it.find(text[0], line.at),
                         it.find(wide.c_str()), it.find(wide[0]));
    if (line.is("transcodePart")) {
        char const* const part = Part(other.c_str(), line.at);
        bool const all = line.count < 0;
        return Described(
            it.transcodeMessage(part, all ? -1 : Within(line.count, strlen(part) + 1)));
    }
    if (line.is("transcodeWidePart")) {
        wchar_t const* const part = Part(other.wc_str(), line.at);
        return Described(it.transcodeMessage(part, Within(line.count, 4 * std::wcslen(part) + 4)));
    }
    return "";
}

void Try(std::string const& input) {
    CompareWithModel<UnicodeString, UnicodeStringModel>(input);
}
