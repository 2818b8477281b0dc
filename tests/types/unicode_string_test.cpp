#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

#include <clocale>
#include <sstream>
#include <stdexcept>
#include <tuple>

namespace {

template <class Body>
void Throws(Body const& body) {
    EXPECT_THROW(body(), std::out_of_range);
}

void Copy(UnicodeString& text) {
    UnicodeString copy(text);
    text.clear();
    text = copy;
}

void Part(UnicodeString& text) {
    EXPECT_EQ(text.substr(1, 9), "b");
}

TEST(UnicodeString, DerivesTheMissingForm) {
    UnicodeString narrow("a\u00e9\u20ac\U0001F600");
    UnicodeString wide(L"a\u00e9\u20ac\U0001F600");
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
    UnicodeString none;
    EXPECT_TRUE(none.empty() && !none);
    EXPECT_EQ(none.length(), -1);
    EXPECT_EQ(std::string(none.c_str()) + UnicodeString("ISO-8859-1", "\xe9").c_str(), "\xe9");
}

TEST(UnicodeString, ChangesTheFormsAsStated) {
    static char const* const none = nullptr;
    static wchar_t const* const noWide = nullptr;
    struct {
        char const* what;
        char const* narrow;   // null: not held
        wchar_t const* wide;  // null: not held
        void (*change)(UnicodeString&);
        std::string expectedNarrow;
        wchar_t const* expectedWide;
    } const rows[] = {
        {"copied", "ab", L"xy", [](auto& t) { Copy(t); }, "ab", L"xy"},
        {"=, narrow", "ab", L"xy", [](auto& t) { t = "q"; }, "q", L"xy"},
        {"=, string", "ab", L"xy", [](auto& t) { t = std::string("q\0r", 3); }, "q", L"xy"},
        {"=, wide", "ab", L"xy", [](auto& t) { t = L"q"; }, "ab", L"q"},
        {"=, 42", "ab", L"xy", [](auto& t) { t = 42L; }, std::string(509, ' ') + "42", L"xy"},
        {"=, -5", nullptr, L"xy", [](auto& t) { t = -5L; }, std::string(509, ' ') + "-5", L"xy"},
        {"clear", "ab", L"xy", [](auto& t) { t.clear(); }, "", nullptr},
        {"+= null", "ab", L"xy", [](auto& t) { (t += none) += noWide; }, "ab", L"xy"},
        {"+= narrow, no wide form", "ab", nullptr, [](auto& t) { t += "cd"; }, "abcd", nullptr},
        {"+= both", "ab", L"xy", [](auto& t) { t += "\u20ac"; }, "ab\u20ac", L"ab\u20ac"},
        {"+= string", "ab", nullptr, [](auto& t) { t += std::string("c\0d", 3); }, "abc", nullptr},
        {"+= float", "ab", nullptr, [](auto& t) { t += 1.5f; }, "ab1.500000", nullptr},
        {"+= wide", nullptr, L"abcd", [](auto& t) { t += L"efgh"; }, "abcdefgh", L"abcdefgh"},
        {"+= wide, both forms", "q", L"abcd", [](auto& t) { t += L"efgh"; }, "ab", L"abcdefgh"},
        {"+= wide text", "q", L"abc", [](auto& t) { t += UnicodeString(L"d"); }, "a", L"abcd"},
        {"+= text without", "q", L"abcd", [](auto& t) { t += UnicodeString("z"); }, "qz", L"qz"},
        {"insert some", nullptr, L"abcd", [](auto& t) { t.insert("XYZ", 1, 2); }, "aXY", L"abcd"},
        {"insert all", "ab", L"xy", [](auto& t) { t.insert("XYZ", 2, -1); }, "abXYZ", L"xy"},
        {"substr", nullptr, L"abcdefgh", [](auto& t) { Part(t); }, "ab", L"abcdefgh"},
        {"erase", "q", L"abcdefghij", [](auto& t) { t.erase(1, 2); }, "ad", L"adefghij"},
        {"erase to the end", nullptr, L"abcd", [](auto& t) { t.erase(1, -1); }, "a", L"a"},
        {"erase, no wide form", "hello", nullptr, [](auto& t) { t.erase(0, 1); }, "", nullptr},
        {"throw", "ab", L"xy", [](auto& t) { Throws([&] { t.erase(3, 1); }); }, "ab", L"xy"},
        {"throw", "ab", L"xy", [](auto& t) { Throws([&] { t.insert("q", 3, -1); }); }, "ab", L"xy"},
        {"throw", "ab", L"xy", [](auto& t) { Throws([&] { t.substr(3, 1); }); }, "ab", L"xy"},
    };
    for (auto const& row : rows) {
        UnicodeString text;
        if (row.narrow)
            text = row.narrow;
        if (row.wide)
            text = row.wide;
        row.change(text);
        EXPECT_EQ(text.compare(row.expectedWide, true), 0) << row.what;  // the form as it stands
        EXPECT_EQ(text.c_str(), row.expectedNarrow) << row.what;
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
    UnicodeString wide(L"abcabc");
    UnicodeString narrow("abcabc");
    UnicodeString pattern("ca");
    EXPECT_EQ(wide.find('b', 0), -1);
    EXPECT_EQ(wide.find(L'b'), 1);
    EXPECT_EQ(wide.find(L"ca"), 2);
    EXPECT_EQ(wide.find(pattern), 2);
    EXPECT_EQ(narrow.find('b', 2), 4);
    EXPECT_EQ(narrow.find("ca", 0), 2);
    EXPECT_EQ(narrow.find("ca", 3), -1);
    EXPECT_EQ(narrow.find(L'b'), -1);
}

TEST(UnicodeString, FoldedComparisonStopsAtTheFirstTextsLength) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    using Row = std::tuple<wchar_t const*, wchar_t const*, int>;
    for (auto const& [a, b, expected] :
         {Row{L"abc", L"ABC", 0}, Row{L"ab", L"ABC", 0}, Row{L"", L"x", 0}, Row{L"abc", L"ab", 1},
          Row{L"b", L"A", 1}, Row{L"A", L"b", -1}, Row{L"\u00e9", L"\u00c9", 0}})
        EXPECT_EQ(CommonAPI::wcscasecmp(a, b), expected) << a << " / " << b;
}

}  // namespace
