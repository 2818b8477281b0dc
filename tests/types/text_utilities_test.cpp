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
    EXPECT_STREQ(first, std::to_string(LONG_MIN).c_str());
}

TEST(TextUtilities, StrtofNeverFindsANumber) {
    for (std::string const& text : {std::string("1.5"), std::string(1000, ' ') + "2"}) {
        char* end = nullptr;
        errno = 0;
        EXPECT_EQ(strtof(text.c_str(), &end), 0.0f);
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(end, nullptr);
    }
}

TEST(TextUtilities, LooksUpSortedNames) {
    char const* names[] = {"B", "D", "F", "H", "J", "L", "N", "~"};
    for (int count = 1; count <= 7; ++count) {
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(ParseAttributeList_LowLevel(names, count, names[i]), i) << count;
            std::string const between(1, static_cast<char>(*names[i] - 1));
            EXPECT_EQ(ParseAttributeList_LowLevel(names, count, between.c_str()), -1) << count;
        }
        // The entry after the last one is compared too.
        EXPECT_EQ(ParseAttributeList_LowLevel(names, count, names[count]), count);
        EXPECT_EQ(ParseAttributeList_LowLevel(names, count, "z"), -1);
    }
    UnicodeString name(L"D");
    EXPECT_EQ(ParseAttributeList_LowLevel(names, 3, name), 1);
    EXPECT_EQ(ParseAttributeList_LowLevel(names, 3, static_cast<char const*>(nullptr)), -1);
    for (int const count : {0, -1}) {  // entry 0 is compared even then
        EXPECT_EQ(ParseAttributeList_LowLevel(names, count, "B"), 0);
        EXPECT_EQ(ParseAttributeList_LowLevel(names, count, "A"), -1);
        EXPECT_EQ(ParseAttributeList_LowLevel(names, count, "D"), -1);  // would never end
    }
}

}  // namespace
