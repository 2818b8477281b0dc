#include <CommonAPI/unicode_string.h>

#include <cerrno>
#include <clocale>
#include <cwctype>

#include "fuzz/target.h"
#include "types/converter.h"
#include "types/requirement.h"

static char const* const locale = std::setlocale(LC_CTYPE, "C.UTF-8");

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

static int Sign(int difference) {
    return (difference > 0) - (difference < 0);
}

/// A form without a character is not held.
struct UnicodeStringModel {
    std::wstring wide;
    std::string narrow;

    UnicodeStringModel() = default;
    explicit UnicodeStringModel(std::string const& text) : narrow(text.c_str()) {}
    explicit UnicodeStringModel(std::wstring const& text) : wide(text) {}
    UnicodeStringModel(char const*, char const* text) : narrow(text) {}

    void toNarrow(std::size_t bytes) { narrow = Converted<char>(wide.data(), bytes, bytes + 1); }
    void toWide() {
        wide = Converted<wchar_t>(narrow.data(), narrow.size(), narrow.size() * sizeof(wchar_t));
        narrow = narrow.c_str();
    }
    /// The length in characters is taken for a count of bytes.
    void narrowFromQuarter() { toNarrow(wide.size()); }

    UnicodeStringModel& operator=(std::string const& text) {
        narrow = text.c_str();
        return *this;
    }
    UnicodeStringModel& operator=(std::wstring const& text) {
        wide = text;
        return *this;
    }
    UnicodeStringModel& operator=(long number) {
        narrow = std::to_string(number);
        narrow.insert(0, 511 - narrow.size(), ' ');
        return *this;
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
        if (other.wide.empty())
            *this += other.narrow;
        else
            *this += other.wide.c_str();
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
    long length() const {
        return !wide.empty() ? wide.size() : !narrow.empty() ? long(narrow.size()) : -1;
    }
    std::string substr(long position, long count) {
        if (narrow.empty())
            narrowFromQuarter();
        return narrow.substr(position, count);
    }
    bool operator==(char const* text) { return std::string(c_str()) == text; }
    bool operator==(UnicodeStringModel& other) {
        other.wc_str();
        return std::wstring(wc_str()) == other.wc_str();
    }
    int compare(char const* text, bool exact) { return compare(text, 0, 0, exact); }
    int compare(char const* text, long position, long count, bool exact) {
        std::size_t const most = count == 0 ? 1 << 20 : count;
        char const* const from = c_str() + position;
        return exact ? std::strncmp(from, text, most) : strncasecmp(from, text, most);
    }
    int compare(wchar_t const* text, bool exact) {
        if (wide.empty() || !text)
            return wide.empty() ? text ? -1 : 0 : 1;
        std::wstring a = wide;
        std::wstring b = text;
        if (exact)
            return a.compare(b);
        b.resize(a.size());  // read as far as the first one's length
        for (std::wstring* const folded : {&a, &b})
            for (wchar_t& c : *folded)
                c = static_cast<wchar_t>(std::towupper(c));
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
        narrow = Converted<char>(text, count, count + 1);
        return narrow.c_str();
    }
};

/// A character for each byte: of each length in UTF-8, and some illegal.
static std::wstring Widened(std::string const& text) {
    std::wstring wide;
    for (unsigned char const c : text)
        wide += static_cast<wchar_t>(c < 0x80 ? c : c << (c % 4 == 0 ? 13 : c % 2 == 0 ? 3 : 8));
    return wide.c_str();
}

template <class Text>
std::string State(Text& text) {
    Text wide(text);
    Text narrow(text);
    wide = "";
    narrow = L"";
    return Described(wide.wc_str(), narrow.substr(0, -1), text.length(), text.empty());
}

template <class Text>
char const* Part(Text& text, int at) {
    auto const position = Within(at, std::strlen(text.c_str()));
    return text.c_str() + position;
}

template <class Text>
wchar_t const* WidePart(Text& text, int at) {
    text.wc_str();  // which may cut the narrow form, so that the next one succeeds
    auto const position = Within(at, std::wcslen(text.wc_str()));
    return text.wc_str() + position;
}

template <class Text>
std::string Apply(Text& it, Text& other, Line const& line) {
    std::string const& text = line.text;
    std::wstring const wide = Widened(text);
    bool const exact = line.number(1) % 2 == 0;
    if (it.length() > 3000)
        throw NotAllowed();  // or it would double without end
    if (line.is("assignText"))
        it = text;
    if (line.is("assignWide"))
        it = wide.c_str();
    if (line.is("assignNumber"))
        it = 10007L * line.at * line.count;
    if (line.is("assignOther"))
        it = other;
    if (line.is("assignPart"))
        it = Part(other, line.at);
    if (line.is("assignWidePart"))
        it = WidePart(other, line.at);
    if (line.is("make")) {
        Text made[] = {Text(text), Text("ISO-8859-1", text.c_str()), Text(wide.c_str())};
        return State(made[0]) + State(made[1]) + State(made[2]);
    }
    if (line.is("appendNumber"))
        it += line.count / 2.0f;
    if (line.is("appendOther"))
        it += other;
    if (line.is("appendPart"))
        it += line.count == 0 ? nullptr : Part(other, line.at);
    if (line.is("appendString"))
        it += text;
    if (line.is("appendWidePart"))
        it += line.count == 0 ? nullptr : WidePart(other, line.at);
    if (line.is("insert"))
        it.insert(text, line.at, line.count == -1 ? -1 : Within(line.count, text.size()));
    if (line.is("erase"))
        it.erase(line.at, line.count);
    if (line.is("substr"))
        return it.substr(line.at, line.count);
    if (line.is("clear"))
        it.clear();
    if (line.is("wc_str"))
        return Described(it.wc_str());
    if (line.is("equal"))
        return Described(it == other, it == text.c_str());
    if (line.is("compare"))
        return Described(
            Sign(it.compare(text.c_str(), exact)),
            Sign(it.compare(text.c_str(), Part(it, line.at) - *it, Within(line.count, 9), exact)));
    if (line.is("compareWide"))
        return Described(Sign(it.compare(line.count == 0 ? nullptr : wide.c_str(), exact)));
    if (line.is("find"))
        return Described(it.find(other), it.find(text.c_str(), line.at), it.find(text[0], line.at),
                         it.find(wide.c_str()), it.find(wide[0]));
    if (line.is("read"))
        return Described(*it, it[0], !it);
    if (line.is("transcodePart")) {
        char const* const part = Part(other, line.at);
        bool const all = line.count < 0;
        return Described(it.transcodeMessage(part, all ? -1 : Within(line.count, strlen(part))));
    }
    if (line.is("transcodeWidePart")) {
        wchar_t const* const part = WidePart(other, line.at);
        return Described(it.transcodeMessage(part, Within(line.count, 4 * std::wcslen(part))));
    }
    return "";
}

static void Try(std::string const& input) {
    CompareWithModel<UnicodeString, UnicodeStringModel>(input);
}
