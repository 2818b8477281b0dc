#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

// The rules of the two forms: the target `unicode_string` under fuzz/.
TEST(UnicodeString, TakesNumbersTextsAndNothing) {
    UnicodeString text(L"a\u00e9"), other("ISO-8859-1", "\xe9"), none;
    std::ostringstream stream;
    stream << text << *other << text[1];
    EXPECT_EQ(stream.str(), "a\u00e9\xe9\xc3");
    EXPECT_TRUE(text == "a\u00e9" && !(text == "a") && !!text && !none && none.empty());
    EXPECT_EQ(text.compare(static_cast<wchar_t const*>(nullptr), false), 1);
    EXPECT_EQ(none.compare(static_cast<wchar_t const*>(nullptr), false), 0);
    EXPECT_EQ(text.find('a', 0) + text.find(L'\u00e9'), 1);
    (text += static_cast<char const*>(nullptr)) += static_cast<wchar_t const*>(nullptr);
    (((text = -5L) += 1.5f) += UnicodeString("b")) += UnicodeString(L"c");
    EXPECT_EQ(std::wstring(509, ' ') + L"-51.500000bc", text.wc_str());
    none.insert("abc", 0, -1);
    EXPECT_EQ(none.substr(1, -1), "bc");
    EXPECT_THROW(none.insert("q", 4, -1), std::out_of_range);
    EXPECT_THROW(none.substr(4, 1), std::out_of_range);
    EXPECT_THROW(none.erase(1, 1), std::out_of_range);
}

TEST(UnicodeString, FoldedComparisonStopsAtTheFirstTextsLength) {
    // Of the other byte order, an emulator cannot use the host's locale.
    bool const folds = std::setlocale(LC_CTYPE, "C.UTF-8");
    using Row = std::tuple<wchar_t const*, wchar_t const*, int>;
    for (auto const& [a, b, expected] :
         {Row{L"abc", L"ABC", 0}, Row{L"ab", L"ABC", 0}, Row{L"", L"x", 0}, Row{L"abc", L"ab", 1},
          Row{L"b", L"A", 1}, Row{L"A", L"b", -1}, Row{L"\u00e9", L"\u00c9", folds ? 0 : 1}})
        EXPECT_EQ(CommonAPI::wcscasecmp(a, b), expected) << a << " / " << b;
    UnicodeString text(L"ab");
    EXPECT_TRUE(text.compare(L"ABC", false) == 0 && text.compare(L"ABC", true) > 0);
}
