#include <CommonAPI/byte_array.h>
#include <gtest/gtest.h>

// All other rules: the model under fuzz/.

TEST(ByteArray, KeepsATextThatItHandedOutUntilTheNextAssignment) {
    ByteArray array("text");
    char const* const text = array.c_str();
    array.clear();
    EXPECT_STREQ(text, "text");
    array = "";
    EXPECT_STREQ(text, "");
}
