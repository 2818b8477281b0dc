#include <CommonAPI/text_utilities.h>
#include <gtest/gtest.h>

TEST(TextUtilities, NumbersShareOneBuffer) {
    char const* const first = itoa(INT_MIN);
    EXPECT_STREQ(first, "-2147483648");
    EXPECT_EQ(itoa(LONG_MIN), first);
    EXPECT_EQ(first, std::to_string(LONG_MIN));
}

TEST(TextUtilities, StrtofNeverFindsANumber) {
    char* end = nullptr;
    errno = 0;
    EXPECT_EQ(strtof("1.5", &end), 0);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(end, nullptr);
}

TEST(TextUtilities, LooksUpSortedNames) {
    char const* names[] = {"B", "D", "F", "H", "J", "L", "N", "P"};
    for (int count = -1; count <= 7; ++count)
        for (char letter = 'A'; letter <= 'Q'; ++letter) {
            // The entry after the last one is compared too, and entry 0 even in an empty table.
            int const index = (letter - 'B') / 2;
            bool const found = letter % 2 == 0 && index <= std::max(count, 0);
            std::string const name(1, letter);
            EXPECT_EQ(ParseAttributeList_LowLevel(names, count, name.c_str()), found ? index : -1)
                << name << " of " << count;
        }
    EXPECT_EQ(ParseAttributeList_LowLevel(names, 3, static_cast<char const*>(nullptr)), -1);
}
