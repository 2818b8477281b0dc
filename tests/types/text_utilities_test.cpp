#include <CommonAPI/text_utilities.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace {

TEST(TextUtilities, NumbersShareOneBuffer) {
    char const* const first = itoa(INT_MIN);
    EXPECT_STREQ(first, "-2147483648");
    EXPECT_STREQ(itoa(LONG_MIN), std::to_string(LONG_MIN).c_str());
    char const* const second = itoa(7L);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "7");
    EXPECT_STREQ(pEmptyString, "");
    EXPECT_STREQ(pTrueString, "True");
    EXPECT_STREQ(pFalseString, "False");
}

TEST(TextUtilities, StrtofNeverFindsANumber) {
    std::string const blanks(1000, ' ');
    for (std::string const& text :
         {std::string("1.5"), std::string("  2"), std::string(), blanks}) {
        char* end = nullptr;
        errno = 0;
        EXPECT_EQ(strtof(text.c_str(), &end), 0.0f);
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(end, nullptr);
    }
}

TEST(TextUtilities, LooksUpSortedNames) {
    struct {
        std::vector<char const*> names;  // the last one is the readable entry after the table
        int count;
        char const* name;
        int expected;
    } const rows[] = {
        {{"A", "B", "C", "~"}, 3, "A", 0},
        {{"A", "B", "C", "~"}, 3, "B", 1},
        {{"A", "B", "C", "~"}, 3, "C", 2},
        {{"A", "B", "C", "~"}, 3, "D", -1},
        {{"A", "B", "C", "~"}, 3, nullptr, -1},
        {{"A", "C", "E", "~"}, 3, "0", -1},
        {{"A", "C", "E", "~"}, 3, "B", -1},
        {{"A", "C", "E", "~"}, 3, "D", -1},
        {{"A", "C", "E", "F"}, 3, "F", 3},  // compares the entry after the table
        {{"A", "~"}, 1, "A", 0},
        {{"A", "~"}, 1, "0", -1},
        {{"A"}, 0, "A", 0},  // compares entry 0 of an empty table
        {{"A"}, 0, "0", -1},
        {{"A"}, 0, "B", -1},  // sorts after entry 0: would never end
        {{"A"}, -1, "B", -1},
        {{"A"}, -1, "0", -1},
    };
    for (auto row : rows) {
        EXPECT_EQ(ParseAttributeList_LowLevel(row.names.data(), row.count, row.name), row.expected)
            << row.count << ' ' << (row.name ? row.name : "null");
    }
    char const* names[] = {"A", "B", "~"};
    UnicodeString name(L"B");
    EXPECT_EQ(ParseAttributeList_LowLevel(names, 2, name), 1);
}

TEST(TextUtilities, FindsEveryNameOfTablesOfEverySize) {
    std::vector<std::string> texts;
    for (int i = 0; i < 70; ++i)
        texts.push_back({static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)});
    std::vector<char const*> names;
    for (std::string const& text : texts)
        names.push_back(text.c_str());
    for (int count = 1; count < 70; ++count)
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(ParseAttributeList_LowLevel(names.data(), count,
                                                  names[static_cast<std::size_t>(i)]),
                      i)
                << count;
}

}  // namespace
