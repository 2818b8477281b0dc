#include <CommonAPI/unicode_string.h>
#include <gtest/gtest.h>

// All rules of the two forms: the model under fuzz/.

TEST(UnicodeString, AnAssignmentToOneFormLeavesTheOther) {
    UnicodeString text(L"wide");
    text = "narrow";
    EXPECT_STREQ(text.wc_str(), L"wide");
    EXPECT_STREQ(text.c_str(), "narrow");
}

TEST(UnicodeString, ANumberIsRightAlignedIn511Characters) {
    UnicodeString text;
    text = -5L;
    EXPECT_EQ(text.c_str(), std::string(509, ' ') + "-5");
}
