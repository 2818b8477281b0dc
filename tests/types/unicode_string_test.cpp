// What the model under fuzz/ does not show.
#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

TEST(UnicodeString, ANumberIsRightAlignedIn511Characters) {
    UnicodeString text(L"stays");
    text = -5L;
    EXPECT_EQ(std::string(509, ' ') + "-5", text.c_str());
    EXPECT_STREQ(text.wc_str(), L"stays");
}
