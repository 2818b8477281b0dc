#include <CommonAPI/byte_array.h>
#include <gtest/gtest.h>

using namespace std::string_literals;

static std::string Content(ByteArray& array) {
    EXPECT_EQ(array.length(), array.size());
    char const* const text = array.c_str();
    return {text, static_cast<std::size_t>(array.size())};
}

TEST(ByteArray, IsFilledAndEdited) {
    char const* const null = nullptr;
    ByteArray array(null);
    ((((array += "ab") += array) += null) += "\0c"s) += static_cast<unsigned char>(0xFE);
    array.append("xyz", 2);
    EXPECT_EQ(Content(array), "abab\0c\xFExy"s);
    array.insert(1, "xyz", 2);
    array.assign(0, static_cast<unsigned char>('q'));
    array.erase(3, 3), array.erase(4, 10);
    EXPECT_EQ(Content(array), "qxyby");
    (array = std::vector<int>{256, 257, -1}).resize(6L, 0x141);
    EXPECT_EQ(Content(array), "\x00\x01\xFF\x41\x41\x41"s);
    array.assign("xyzxyz", 5), array.assign(1, 0x01000384u);
    EXPECT_EQ(Content(array), "x\x01\0\x03\x84"s);
    EXPECT_TRUE(array.at(1) == 0x01000384u && array[4] == 0x84);
    array.resize(2, 0);
    EXPECT_EQ(Content(array), "x\x01");
    EXPECT_EQ(Content((array = "ab") = static_cast<ByteArray&>(array)), "");
    EXPECT_TRUE(((array = "ab") = null).empty());
    (array = "12").loadASCIIHex(array);
    EXPECT_TRUE(array.empty());
}

TEST(ByteArray, HandsOutCopies) {
    ByteArray array;
    unsigned char* data = nullptr;
    long length = 7;
    array.getRawData(&data, length);
    EXPECT_TRUE(data == nullptr && length == 7);
    (array = "a\0b"s).getRawData(&data, length);
    EXPECT_EQ(std::string(data, data + length), "a\0b"s);
    delete[] data;
    char const* const text = *array;
    array.clear();
    EXPECT_STREQ(text, "a");  // kept until the next c_str() or assignment
    EXPECT_STREQ((array = "", text), "");
}
