#include <cerrno>

#include "fuzz/target.h"
#include "types/converter.h"

/// One call of the converter: nothing if it refuses, else all up to the first zero.
template <class Character>
static std::basic_string<Character> Converted(char const* bytes, std::size_t count,
                                              std::size_t room) {
    using namespace CommonAPI::internal;
    static Converter const converter = sizeof(Character) == 1 ? OpenConverter("UTF-8", "WCHAR_T")
                                                              : OpenConverter("WCHAR_T", "UTF-8");
    std::basic_string<Character> result(room / sizeof(Character) + 1, 0);
    auto to = reinterpret_cast<char*>(result.data());
    bool const failed = Convert(converter, &bytes, &count, &to, &room) == -1;
    return failed && errno == EILSEQ ? std::basic_string<Character>() : result.c_str();
}

/// Both forms, as the header says.
struct Model {
    std::string narrow;
    std::wstring wide;

    void deriveNarrow(bool wanted, std::size_t bytes) {
        if (wanted)
            narrow = Converted<char>(reinterpret_cast<char const*>(wide.c_str()), bytes, bytes + 1);
    }
    /// The length in characters serves as a count of bytes.
    void deriveQuarter(bool wanted) { deriveNarrow(wanted, wide.size()); }
    void deriveWide(bool wanted) {
        if (!wanted)
            return;
        wide = Converted<wchar_t>(narrow.c_str(), narrow.size(), 4 * narrow.size());
        narrow = narrow.c_str();
    }
    void fillNarrow() { deriveNarrow(narrow.empty(), 4 * wide.size()); }
    void fillWide() { deriveWide(wide.empty()); }
};

/// Whether a conversion would wait for the rest of a text, or of its part in front of a zero.
static bool Waits(std::string const& text) {
    return EndsInsideCharacter(text) || EndsInsideCharacter(text.c_str());
}

static bool SameSign(int a, int b) {
    return (a < 0) == (b < 0) && (a > 0) == (b > 0);
}

static void CheckForms(UnicodeString real, Model const& m) {
    long const length = m.wide.empty() ? m.narrow.size() : m.wide.size();
    Check(real.length() == (length ? length : -1));
    Check(real.compare(m.wide.c_str(), true) == (m.wide.empty() ? -1 : 0));
    real = L"";
    Check(real.substr(0, -1) == m.narrow);
}

static void CheckAgainst(char const* text, long at, long count, UnicodeString real, Model m) {
    Check(real.find(text, at) == static_cast<long>(m.narrow.find(text, at)));
    Check(real.find(*text, at) == static_cast<long>(m.narrow.find(*text, at)));
    Check(real.find(L"bc") == static_cast<long>(m.wide.find(L"bc")));
    Check(real.find(L'b') == static_cast<long>(m.wide.find(L'b')));
    m.fillNarrow();
    std::string const all = m.narrow.c_str(),
                      from = all.substr(std::min<std::size_t>(at, all.size()));
    std::size_t const most = count ? count : std::string::npos;
    for (bool const exact : {true, false}) {
        auto const compare = exact ? std::strncmp : strncasecmp;
        Check(SameSign(real.compare(text, exact), compare(all.c_str(), text, std::string::npos)));
        Check(SameSign(real.compare(text, all.size() - from.size(), count, exact),
                       compare(from.c_str(), text, most)));
    }
    UnicodeString pattern(text);
    Model other = {text, L""};
    m.fillWide();
    other.fillWide();
    Check((real == pattern) == (m.wide == other.wide));
    Check(real.find(pattern) == static_cast<long>(m.wide.find(other.wide)));
}

/// Lines of a letter, a position and a count as digits, and a text.
static void Try(std::string const& input) {
    UnicodeString real;
    Model m;
    std::string text;
    std::wstring wide;  // of each byte of the text a character, some of them illegal
    int at, count;
    std::map<char, std::function<void()>> const operations = {
        {'n', [&] { real = text, m.narrow = text.c_str(); }},
        {'w', [&] { real = wide.c_str(), m.wide = wide.c_str(); }},
        {'x', [&] { real.clear(), m = Model(); }},
        {'c', [&] { real.c_str(), m.fillNarrow(); }},
        {'C', [&] { real.wc_str(), m.fillWide(); }},
        {'a', [&] { real += text, m.narrow += text.c_str(), m.deriveWide(!m.wide.empty()); }},
        {'A',
         [&] { real += wide.c_str(), m.wide += wide.c_str(), m.deriveQuarter(!m.narrow.empty()); }},
        {'i', [&] { real.insert(text, at, count), m.narrow.insert(at, text, 0, count); }},
        {'s',
         [&] { real = real.substr(at, count), m.narrow = m.narrow.substr(at, count).c_str(); }},
        {'e',
         [&] {
             real.erase(at, count), m.wide.erase(at, count), m.deriveQuarter(!m.narrow.empty());
         }},
        {'t',
         [&] {
             real.transcodeMessage(text.c_str(), count);
             m.narrow = text.substr(0, count), m.deriveWide(true), m.narrow = text.c_str();
         }},
        {'T', [&] {
             real.transcodeMessage(wide.c_str(), count);
             m.narrow =
                 Converted<char>(reinterpret_cast<char const*>(wide.c_str()), count, count + 1);
         }}};
    std::istringstream lines(input);
    for (std::string line; std::getline(lines, line) && line.size() > 2;) {
        text = line.substr(3);
        wide.clear();
        for (char const c : text)
            wide += (c & 0x80) == 0 ? c : (c & 0xFF) << (c & 1 ? 8 : 13);
        char const letter = line[0];
        m.deriveQuarter((letter == 'i' || letter == 's') && m.narrow.empty());
        at = std::min<std::size_t>(line[1] - '0', letter == 'e' ? m.wide.size() : m.narrow.size());
        count = std::min<std::size_t>(line[2] - '0', text.size());
        if (Waits(text) || Waits(text.substr(0, count)))
            return;
        if (operations.count(letter))
            operations.at(letter)();
        CheckForms(real, m);
        if (Waits(m.narrow))
            return;
        CheckAgainst(text.c_str(), at, count, real, m);
    }
}
