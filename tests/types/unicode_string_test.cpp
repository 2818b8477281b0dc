#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

#include <clocale>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char const* mixed = "a\u00e9\u20ac\U0001F600";
constexpr wchar_t const* mixedWide = L"a\u00e9\u20ac\U0001F600";

/// A text with both forms held.
UnicodeString Both(wchar_t const* text) {
    UnicodeString both(text);
    both.c_str();
    return both;
}

TEST(UnicodeString, StartsEmptyWithLengthMinusOne) {
    UnicodeString text;
    EXPECT_TRUE(text.empty());
    EXPECT_TRUE(!text);
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

TEST(UnicodeString, AssignsOneFormAndLeavesTheOther) {
    UnicodeString text;
    text = L"abc";
    text = "xyz";
    EXPECT_STREQ(text.wc_str(), L"abc");
    EXPECT_STREQ(text.c_str(), "xyz");
    text = std::string("q\0r", 3);
    EXPECT_STREQ(text.c_str(), "q");
    UnicodeString other;
    other = text;
    EXPECT_STREQ(other.wc_str(), L"abc");
    EXPECT_STREQ(other.c_str(), "q");
    EXPECT_STREQ(UnicodeString("ISO-8859-1", "\xe9").c_str(), "\xe9");
}

TEST(UnicodeString, RightAlignsANumberIn511Characters) {
    for (long const number : {42L, -5L}) {
        UnicodeString text(L"kept");
        text = number;
        std::string const digits = std::to_string(number);
        EXPECT_EQ(text.c_str(), std::string(511 - digits.size(), ' ') + digits);
        EXPECT_STREQ(text.wc_str(), L"kept");
    }
}

TEST(UnicodeString, AppendingDerivesOnlyAFormThatIsHeld) {
    UnicodeString narrow("ab");
    narrow += "cd";
    narrow += std::string("e");
    narrow += 1.5f;
    narrow += static_cast<char const*>(nullptr);
    EXPECT_EQ(narrow.compare(static_cast<wchar_t const*>(nullptr), true), 0);  // no wide form
    EXPECT_STREQ(narrow.c_str(), "abcde1.500000");

    UnicodeString both = Both(L"ab");
    both += "\u20ac";
    EXPECT_STREQ(both.wc_str(), L"ab\u20ac");

    UnicodeString wide(L"abcd");
    wide += static_cast<wchar_t const*>(nullptr);
    wide += L"efgh";
    EXPECT_STREQ(wide.c_str(), "abcdefgh");
    wide += UnicodeString(L"ijkl");
    EXPECT_STREQ(wide.wc_str(), L"abcdefghijkl");
    EXPECT_STREQ(wide.c_str(), "abc");  // 12 characters taken for 12 bytes
    wide += UnicodeString("z");
    EXPECT_STREQ(wide.wc_str(), L"abcz");
}

TEST(UnicodeString, EditsTakeTheFirstQuarterOfAWideText) {
    UnicodeString inserted(L"abcdefgh");
    inserted.insert("XYZ", 1, 2);
    EXPECT_STREQ(inserted.c_str(), "aXYb");
    EXPECT_STREQ(inserted.wc_str(), L"abcdefgh");
    inserted.insert("XYZ", 4, -1);
    EXPECT_STREQ(inserted.c_str(), "aXYbXYZ");

    UnicodeString wide(L"abcdefghijkl");
    EXPECT_EQ(wide.substr(1, 9), "bc");
    EXPECT_STREQ(wide.c_str(), "abc");

    UnicodeString erased = Both(L"abcdefghij");
    erased.erase(1, 2);
    EXPECT_STREQ(erased.wc_str(), L"adefghij");
    EXPECT_STREQ(erased.c_str(), "ad");
    erased.erase(1, -1);
    EXPECT_STREQ(erased.wc_str(), L"a");

    UnicodeString narrow("hello");  // no wide form, so the narrow one is derived from nothing
    EXPECT_THROW(narrow.erase(6, 1), std::out_of_range);
    narrow.erase(0, 1);
    EXPECT_TRUE(narrow.empty());
    EXPECT_THROW(narrow.insert("x", 1, -1), std::out_of_range);
    EXPECT_THROW(narrow.substr(1, 1), std::out_of_range);
}

TEST(UnicodeString, ComparesNarrowTexts) {
    struct {
        char const* text;
        long position;
        long count;
        bool caseSensitive;
        int sign;
    } const rows[] = {
        {"ABC", 0, 0, false, 0}, {"ABC", 0, 0, true, 1}, {"abX", 0, 2, true, 0},
        {"aBX", 0, 2, false, 0}, {"bc", 1, 0, true, 0},  {"bd", 1, 0, true, -1},
        {"Bd", 1, 2, false, -1},
    };
    UnicodeString text(L"abc");
    auto const sign = [](int order) { return (order > 0) - (order < 0); };
    for (auto const& row : rows)
        EXPECT_EQ(sign(text.compare(row.text, row.position, row.count, row.caseSensitive)),
                  row.sign)
            << row.text << " at " << row.position << " for " << row.count;
    EXPECT_EQ(text.compare("ABC", false), 0);
    EXPECT_GT(text.compare("ABC", true), 0);
    EXPECT_TRUE(text == "abc");
    EXPECT_FALSE(text == "ab");
    UnicodeString narrow("abc");
    EXPECT_TRUE(narrow == text);
}

TEST(UnicodeString, ComparesTheWideFormAsItStands) {
    UnicodeString text("abc");
    EXPECT_EQ(text.compare(L"abc", true), -1);
    EXPECT_EQ(text.compare(L"", true), -1);
    EXPECT_EQ(text.compare(static_cast<wchar_t const*>(nullptr), true), 0);
    text.wc_str();
    EXPECT_EQ(text.compare(L"abc", true), 0);
    EXPECT_EQ(text.compare(L"ABCDEF", false), 0);
    EXPECT_EQ(text.compare(static_cast<wchar_t const*>(nullptr), false), 1);
}

TEST(UnicodeString, FindsInOneFormOnly) {
    UnicodeString wide(L"abcabc");
    EXPECT_EQ(wide.find('b', 0), -1);  // no narrow form is held
    EXPECT_EQ(wide.find(L'b'), 1);
    EXPECT_EQ(wide.find(L"ca"), 2);
    UnicodeString pattern("ca");
    EXPECT_EQ(wide.find(pattern), 2);
    UnicodeString narrow("abcabc");
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
