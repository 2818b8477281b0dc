#include <CommonAPI/unicode_string.h>
#include <gmock/gmock.h>

#include <clocale>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <vector>

TEST(UnicodeString, DerivesTheMissingForm) {
    UnicodeString narrow("a\u00e9\u20ac\U0001F600"), wide(L"a\u00e9\u20ac\U0001F600"), none;
    EXPECT_EQ(narrow.length(), 10);
    EXPECT_EQ(narrow.compare(L"", true), -1);  // no wide form is held yet
    EXPECT_TRUE(narrow == wide);
    EXPECT_EQ(narrow.length(), 4);
    EXPECT_EQ(wide[1], '\xc3');
    EXPECT_TRUE(wide == *narrow);
    EXPECT_FALSE(wide == "a");
    std::ostringstream stream;
    stream << wide;
    EXPECT_EQ(stream.str(), narrow.c_str());
    EXPECT_TRUE(none.empty() && !none);
    EXPECT_EQ(none.length(), -1);
    EXPECT_EQ(std::string(none.c_str()) + UnicodeString("ISO-8859-1", "\xe9").c_str(), "\xe9");
}

static void Throw(UnicodeString& text) {
    EXPECT_THROW(text.erase(3, 1), std::out_of_range);
    EXPECT_THROW(text.insert("q", 3, -1), std::out_of_range);
    EXPECT_THROW(text.substr(3, 1), std::out_of_range);
}

TEST(UnicodeString, ChangesTheFormsAsStated) {
    static char const* const null = nullptr;
    static wchar_t const* const noWide = nullptr;
    static std::string const zero("c\0d", 3);
    static std::string const blanks(509, ' ');
    // The forms, null where not held, the change, and the forms after it.
    using Row = std::tuple<char const*, wchar_t const*, void (*)(UnicodeString&), std::string,
                           wchar_t const*>;
    std::vector<Row> const rows = {
        {"ab", L"xy", [](auto& t) { t = "q"; }, "q", L"xy"},
        {"ab", L"xy", [](auto& t) { t = zero; }, "c", L"xy"},
        {"ab", L"xy", [](auto& t) { t = L"q"; }, "ab", L"q"},
        {"ab", L"xy", [](auto& t) { t = 42L; }, blanks + "42", L"xy"},
        {null, L"xy", [](auto& t) { t = -5L; }, blanks + "-5", L"xy"},
        {"ab", L"xy", [](auto& t) { t.clear(); }, "", nullptr},
        {"ab", L"xy", [](auto& t) { (t += null) += noWide; }, "ab", L"xy"},
        {"ab", nullptr, [](auto& t) { t += "cd"; }, "abcd", nullptr},
        {"ab", L"xy", [](auto& t) { t += "\u20ac"; }, "ab\u20ac", L"ab\u20ac"},
        {"ab", nullptr, [](auto& t) { t += zero; }, "abc", nullptr},
        {"ab", nullptr, [](auto& t) { t += 1.5f; }, "ab1.500000", nullptr},
        {null, L"abcd", [](auto& t) { t += L"efgh"; }, "abcdefgh", L"abcdefgh"},
        {"q", L"abcd", [](auto& t) { t += L"efgh"; }, "ab", L"abcdefgh"},
        {"q", L"abc", [](auto& t) { t += UnicodeString(L"d"); }, "a", L"abcd"},
        {"q", L"abcd", [](auto& t) { t += UnicodeString("z"); }, "qz", L"qz"},
        {null, L"abcd", [](auto& t) { t.insert("XYZ", 1, 2); }, "aXY", L"abcd"},
        {"ab", L"xy", [](auto& t) { t.insert("XYZ", 2, -1); }, "abXYZ", L"xy"},
        {null, L"abcdefgh", [](auto& t) { t += t.substr(1, 9); }, "abb", L"abb"},
        {"q", L"abcdefghij", [](auto& t) { t.erase(1, 2); }, "ad", L"adefghij"},
        {null, L"abcd", [](auto& t) { t.erase(1, -1); }, "a", L"a"},
        {"hello", nullptr, [](auto& t) { t.erase(0, 1); }, "", nullptr},
        {"ab", L"xy", Throw, "ab", L"xy"},
    };
    for (auto const& [narrow, wide, change, expectedNarrow, expectedWide] : rows) {
        UnicodeString text;
        if (narrow)
            text = narrow;
        if (wide)
            text = wide;
        change(text);
        UnicodeString copy(text);
        text.clear();
        text = copy;
        EXPECT_EQ(text.compare(expectedWide, true), 0) << expectedNarrow;
        EXPECT_EQ(text.c_str(), expectedNarrow);
    }
}

TEST(UnicodeString, Compares) {
    UnicodeString text(L"abc");
    using Row = std::tuple<char const*, long, long, bool, int>;
    for (auto const& [other, position, count, caseSensitive, sign] :
         {Row{"ABC", 0, 0, false, 0}, Row{"ABC", 0, 0, true, 1}, Row{"abX", 0, 2, true, 0},
          Row{"aBX", 0, 2, false, 0}, Row{"bc", 1, 0, true, 0}, Row{"bd", 1, 0, true, -1}}) {
        int const order = text.compare(other, position, count, caseSensitive);
        EXPECT_EQ((order > 0) - (order < 0), sign) << other << " at " << position;
    }
    EXPECT_EQ(text.compare("ABC", false), 0);
    EXPECT_GT(text.compare("ABC", true), 0);
    EXPECT_EQ(text.compare(L"ABCDEF", false), 0);
    EXPECT_NE(text.compare(L"ABC", true), 0);
    EXPECT_EQ(text.compare(static_cast<wchar_t const*>(nullptr), false), 1);
}

TEST(UnicodeString, FindsInOneFormOnly) {
    UnicodeString wide(L"abcabc"), narrow("abcabc"), pattern("ca");
    long const found[] = {wide.find('b', 0),    wide.find(L'b'),     wide.find(L"ca"),
                          wide.find(pattern),   narrow.find('b', 2), narrow.find("ca", 0),
                          narrow.find("ca", 3), narrow.find(L'b')};
    EXPECT_THAT(found, testing::ElementsAre(-1, 1, 2, 2, 4, 2, -1, -1));
}

TEST(UnicodeString, FoldedComparisonStopsAtTheFirstTextsLength) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    using Row = std::tuple<wchar_t const*, wchar_t const*, int>;
    for (auto const& [a, b, expected] :
         {Row{L"abc", L"ABC", 0}, Row{L"ab", L"ABC", 0}, Row{L"", L"x", 0}, Row{L"abc", L"ab", 1},
          Row{L"b", L"A", 1}, Row{L"A", L"b", -1}, Row{L"\u00e9", L"\u00c9", 0}})
        EXPECT_EQ(CommonAPI::wcscasecmp(a, b), expected) << a << " / " << b;
}
