#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

#include <clocale>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char const* mixed = "a\u00e9\u20ac\U0001F600";
constexpr wchar_t const* mixedWide = L"a\u00e9\u20ac\U0001F600";

TEST(UnicodeString, StartsEmptyWithLengthMinusOne) {
    UnicodeString text;
    EXPECT_TRUE(text.empty() && !text);
    EXPECT_EQ(text.length(), -1);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_STREQ(text.wc_str(), L"");
}

TEST(UnicodeString, DerivesTheMissingForm) {
    UnicodeString narrow(mixed);
    EXPECT_EQ(narrow.length(), 10);
    EXPECT_STREQ(narrow.wc_str(), mixedWide);
    EXPECT_EQ(narrow.length(), 4);
    UnicodeString wide(mixedWide);
    EXPECT_EQ(wide.length(), 4);
    EXPECT_STREQ(*wide, mixed);
    EXPECT_EQ(wide[0], 'a');
    std::ostringstream stream;
    stream << wide;
    EXPECT_EQ(stream.str(), mixed);
}

TEST(UnicodeString, ChangesTheFormsAsStated) {
    static wchar_t const* const noText = nullptr;
    struct {
        char const* what;
        char const* narrow;   // null: not held
        wchar_t const* wide;  // null: not held
        void (*change)(UnicodeString&);
        std::string expectedNarrow;
        wchar_t const* expectedWide;
    } const rows[] = {
        {"=, narrow", "ab", L"xy", [](auto& t) { t = "q"; }, "q", L"xy"},
        {"=, string", "ab", L"xy", [](auto& t) { t = std::string("q\0r", 3); }, "q", L"xy"},
        {"=, wide", "ab", L"xy", [](auto& t) { t = L"q"; }, "ab", L"q"},
        {"=, 42", "ab", L"xy", [](auto& t) { t = 42L; }, std::string(509, ' ') + "42", L"xy"},
        {"=, -5", nullptr, L"xy", [](auto& t) { t = -5L; }, std::string(509, ' ') + "-5", L"xy"},
        {"clear", "ab", L"xy", [](auto& t) { t.clear(); }, "", nullptr},
        {"+= null", "ab", L"xy", [](auto& t) { t += static_cast<char const*>(nullptr); }, "ab",
         L"xy"},
        {"+= wide null", "ab", L"xy", [](auto& t) { t += noText; }, "ab", L"xy"},
        {"+= narrow, no wide form", "ab", nullptr, [](auto& t) { t += "cd"; }, "abcd", nullptr},
        {"+= narrow, both forms", "ab", L"xy", [](auto& t) { t += "\u20ac"; }, "ab\u20ac",
         L"ab\u20ac"},
        {"+= string", "ab", nullptr, [](auto& t) { t += std::string("c\0d", 3); }, "abc", nullptr},
        {"+= float", "ab", nullptr, [](auto& t) { t += 1.5f; }, "ab1.500000", nullptr},
        {"+= wide, no narrow form", nullptr, L"abcd", [](auto& t) { t += L"efgh"; }, "abcdefgh",
         L"abcdefgh"},
        {"+= wide, both forms", "q", L"abcd", [](auto& t) { t += L"efgh"; }, "ab", L"abcdefgh"},
        {"+= text with wide form", "q", L"abcd", [](auto& t) { t += UnicodeString(L"efgh"); }, "ab",
         L"abcdefgh"},
        {"+= text without", "q", L"abcd", [](auto& t) { t += UnicodeString("z"); }, "qz", L"qz"},
        {"insert some", nullptr, L"abcdefgh", [](auto& t) { t.insert("XYZ", 1, 2); }, "aXYb",
         L"abcdefgh"},
        {"insert all", "ab", L"xy", [](auto& t) { t.insert("XYZ", 2, -1); }, "abXYZ", L"xy"},
        {"substr", nullptr, L"abcdefgh", [](auto& t) { EXPECT_EQ(t.substr(1, 9), "b"); }, "ab",
         L"abcdefgh"},
        {"erase, both forms", "q", L"abcdefghij", [](auto& t) { t.erase(1, 2); }, "ad",
         L"adefghij"},
        {"erase to the end", nullptr, L"abcd", [](auto& t) { t.erase(1, -1); }, "a", L"a"},
        {"erase, no wide form", "hello", nullptr, [](auto& t) { t.erase(0, 1); }, "", nullptr},
        {"erase past the end", "ab", L"xy",
         [](auto& t) { EXPECT_THROW(t.erase(3, 1), std::out_of_range); }, "ab", L"xy"},
        {"insert past the end", "ab", L"xy",
         [](auto& t) { EXPECT_THROW(t.insert("q", 3, -1), std::out_of_range); }, "ab", L"xy"},
        {"substr past the end", "ab", L"xy",
         [](auto& t) { EXPECT_THROW(t.substr(3, 1), std::out_of_range); }, "ab", L"xy"},
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

TEST(UnicodeString, CopiesBothForms) {
    UnicodeString text("narrow");
    text = L"wide";
    UnicodeString assigned;
    assigned = text;
    UnicodeString constructed(text);
    for (UnicodeString* copy : {&assigned, &constructed}) {
        EXPECT_STREQ(copy->c_str(), "narrow");
        EXPECT_STREQ(copy->wc_str(), L"wide");
    }
    EXPECT_STREQ(UnicodeString("ISO-8859-1", "\xe9").c_str(), "\xe9");  // stored, not converted
}

TEST(UnicodeString, Compares) {
    struct {
        char const* text;
        long position;
        long count;
        bool caseSensitive;
        int sign;
    } const rows[] = {
        {"ABC", 0, 0, false, 0}, {"ABC", 0, 0, true, 1}, {"abX", 0, 2, true, 0},
        {"aBX", 0, 2, false, 0}, {"bc", 1, 0, true, 0},  {"bd", 1, 0, true, -1},
    };
    UnicodeString text(L"abc");
    auto const sign = [](int order) { return (order > 0) - (order < 0); };
    for (auto const& row : rows)
        EXPECT_EQ(sign(text.compare(row.text, row.position, row.count, row.caseSensitive)),
                  row.sign)
            << row.text << " at " << row.position << " for " << row.count;
    EXPECT_EQ(text.compare("ABC", false), 0);
    EXPECT_GT(text.compare("ABC", true), 0);
    EXPECT_EQ(text.compare(L"ABCDEF", false), 0);
    EXPECT_EQ(text.compare(static_cast<wchar_t const*>(nullptr), false), 1);
    EXPECT_TRUE(text == "abc");
    EXPECT_FALSE(text == "ab");
    UnicodeString narrow("abc");
    EXPECT_EQ(narrow.compare(L"", true), -1);  // no wide form is held
    EXPECT_TRUE(narrow == text);
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
    struct {
        wchar_t const* a;
        wchar_t const* b;
        int expected;
    } const rows[] = {
        {L"abc", L"ABC", 0},       {L"ab", L"ABC", 0}, {L"", L"x", 0},
        {L"abc", L"ab", 1},        {L"b", L"A", 1},    {L"A", L"b", -1},
        {L"\u00e9", L"\u00c9", 0},
    };
    std::setlocale(LC_CTYPE, "C.UTF-8");
    for (auto const& row : rows)
        EXPECT_EQ(CommonAPI::wcscasecmp(row.a, row.b), row.expected) << row.a << " / " << row.b;
}

}  // namespace
