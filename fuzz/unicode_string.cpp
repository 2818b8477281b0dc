#include "fuzz/target.h"
#include "types/converter.h"

/// One call of the converter: nothing if it refuses, else all up to the first zero.
template <class Character>
static std::basic_string<Character> Converted(void const* text, size_t count, size_t room) {
    using namespace CommonAPI::internal;
    static Converter const converter = sizeof(Character) == 1 ? OpenConverter("UTF-8", "WCHAR_T")
                                                              : OpenConverter("WCHAR_T", "UTF-8");
    std::basic_string<Character> result(room / sizeof(Character) + 1, 0);
    auto from = static_cast<char const*>(text);
    auto to = reinterpret_cast<char*>(result.data());
    bool const failed = Convert(converter, &from, &count, &to, &room) == -1;
    return failed && errno == EILSEQ ? std::basic_string<Character>() : result.c_str();
}

/// Both forms, as the header says.
struct Model {
    std::string narrow;
    std::wstring wide;

    void toNarrow(bool wanted, std::size_t bytes) {
        if (wanted)
            narrow = Converted<char>(wide.c_str(), bytes, bytes + 1);
    }
    /// The length in characters serves as a count of bytes.
    void quarter(bool wanted) { toNarrow(wanted, wide.size()); }
    void toWide(bool wanted) {
        if (wanted)
            wide = Converted<wchar_t>(narrow.c_str(), narrow.size(), 4 * narrow.size()),
            narrow = narrow.c_str();
    }
    void fillNarrow() { toNarrow(narrow.empty(), 4 * wide.size()); }
    void fillWide() { toWide(wide.empty()); }
};

/// Whether a conversion would wait for the rest of a text, or of its part in front of a zero.
static bool Waits(std::string const& text) {
    return EndsInsideCharacter(text) || EndsInsideCharacter(text.c_str());
}

static int Sign(int difference) {
    return (difference > 0) - (difference < 0);
}

static void CheckForms(UnicodeString real, Model const& m) {
    long const length = m.wide.empty() ? m.narrow.size() : m.wide.size();
    Check(real.length() == (length ? length : -1));
    Check(real.compare(m.wide.c_str(), true) == (m.wide.empty() ? -1 : 0));
    Check((real = L"").substr(0, -1) == m.narrow);
}

static void CheckAgainst(char const* text, long at, long count, UnicodeString real, Model m) {
    Check(real.find(text, at) == static_cast<long>(m.narrow.find(text, at)));
    Check(real.find(*text, at) == static_cast<long>(m.narrow.find(*text, at)));
    Check(real.find(L"bc") == static_cast<long>(m.wide.find(L"bc")));
    Check(real.find(L'b') == static_cast<long>(m.wide.find(L'b')));
    m.fillNarrow();
    std::string const all = m.narrow.c_str();
    long const start = std::min<std::size_t>(at, all.size());
    for (bool const exact : {true, false}) {
        auto const compare = exact ? std::strncmp : strncasecmp;
        Check(Sign(real.compare(text, exact)) == Sign(compare(all.c_str(), text, SIZE_MAX)));
        Check(Sign(real.compare(text, start, count, exact)) ==
              Sign(compare(all.c_str() + start, text, count ? count : SIZE_MAX)));
    }
    UnicodeString pattern(text);
    Model other = {text, L""};
    m.fillWide(), other.fillWide();
    Check((real == pattern) == (m.wide == other.wide));
    Check(real.find(pattern) == static_cast<long>(m.wide.find(other.wide)));
}

/// Lines of a letter, a position and a count as digits, and a text.
static void Try(std::string const& input) {
    UnicodeString real;
    Model m;
    std::string text;
    std::wstring wide;  // of each byte of the text a character, some of them illegal
    int at, n;
    std::map<char, std::function<void()>> const operations = {
        {'n', [&] { real = text, m.narrow = text.c_str(); }},
        {'w', [&] { real = wide.c_str(), m.wide = wide.c_str(); }},
        {'x', [&] { real.clear(), m = Model(); }},
        {'c', [&] { real.c_str(), m.fillNarrow(); }},
        {'C', [&] { real.wc_str(), m.fillWide(); }},
        {'a', [&] { real += text, m.narrow += text.c_str(), m.toWide(!m.wide.empty()); }},
        {'A', [&] { real += wide.c_str(), m.wide += wide.c_str(), m.quarter(!m.narrow.empty()); }},
        {'i', [&] { real.insert(text, at, n), m.narrow.insert(at, text, 0, n); }},
        {'s', [&] { real = real.substr(at, n), m.narrow = m.narrow.substr(at, n).c_str(); }},
        {'e', [&] { real.erase(at, n), m.wide.erase(at, n), m.quarter(!m.narrow.empty()); }},
        {'t',
         [&] {
             real.transcodeMessage(text.c_str(), n);
             m.narrow = text.substr(0, n), m.toWide(true), m.narrow = text.c_str();
         }},
        {'T', [&] {
             real.transcodeMessage(wide.c_str(), n), m.wide.swap(wide);
             m.toNarrow(true, n), m.wide.swap(wide);
         }}};
    std::istringstream lines(input);
    for (std::string line; std::getline(lines, line) && line.size() > 2;) {
        text = line.substr(3);
        wide.clear();
        for (char const c : text)
            wide += (c & 0x80) == 0 ? c : (c & 0xFF) << (c & 1 ? 8 : 13);
        char const letter = line[0];
        m.quarter((letter == 'i' || letter == 's') && m.narrow.empty());
        at = std::min<std::size_t>(line[1] - '0', letter == 'e' ? m.wide.size() : m.narrow.size());
        n = std::min<std::size_t>(line[2] - '0', text.size());
        if (Waits(text) || Waits(text.substr(0, n)))
            return;
        if (operations.count(letter))
            operations.at(letter)();
        CheckForms(real, m);
        if (Waits(m.narrow))
            return;
        CheckAgainst(text.c_str(), at, n, real, m);
    }
}
