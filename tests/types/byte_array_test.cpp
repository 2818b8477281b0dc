#include <CommonAPI/byte_array.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

using namespace std::string_literals;

static std::string Content(ByteArray& array) {
    EXPECT_EQ(array.length(), array.size());
    char const* const text = array.c_str();
    return {text, static_cast<std::size_t>(array.size())};
}

static std::string Parsed(std::string const& hexadecimal) {
    ByteArray array("old");
    array.loadASCIIHex(hexadecimal);
    return Content(array);
}

TEST(ByteArray, IsFilledAndEdited) {
    char const* const null = nullptr;
    ByteArray array(null);
    (((array += "ab") += array) += null) += "\0c"s;
    array += static_cast<unsigned char>(0xFE);
    array.append("xyz", 2);
    EXPECT_EQ(Content(array), "abab\0c\xFExy"s);
    array.insert(1, "xyz", 2);
    array.assign(0, static_cast<unsigned char>('q'));
    array.erase(3, 3);
    array.erase(4, 10);
    EXPECT_EQ(Content(array), "qxyby");
    array = std::vector<int>{256, 257, -1};
    array.resize(6L, 0x141);
    EXPECT_EQ(Content(array), "\x00\x01\xFF\x41\x41\x41"s);
    array.assign("xyzxyz", 5);
    array.assign(1, 0x01000384u);
    EXPECT_EQ(Content(array), "x\x01\0\x03\x84"s);
    EXPECT_EQ(array.at(1), 0x01000384u);
    EXPECT_EQ(array[4], 0x84);
    int count = 2;
    array.resize(count, 0);
    EXPECT_EQ(Content(array), "x\x01");
    array = "12";
    array.loadASCIIHex(array);
    EXPECT_EQ(Content(array), "");
    array = "ab";
    array = static_cast<ByteArray&>(array);
    EXPECT_EQ(Content(array), "");
    array = "ab";
    array = null;
    EXPECT_TRUE(array.empty());
}

TEST(ByteArray, HandsOutCopies) {
    ByteArray array;
    unsigned char* data = nullptr;
    long length = 7;
    array.getRawData(&data, length);
    EXPECT_TRUE(data == nullptr && length == 7);
    array = "a\0b"s;
    array.getRawData(&data, length);
    EXPECT_EQ(std::string(data, data + length), "a\0b"s);
    delete[] data;
    char const* const text = *array;
    array.clear();
    EXPECT_STREQ(text, "a");  // kept until the next c_str() or assignment
    array = "";
    EXPECT_STREQ(text, "");
}

TEST(ByteArray, FindsWhatAStringFinds) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        auto const [size, step] = round % 2 ? std::pair(10u, 3u) : std::pair(20000u, 4000u);
        std::string content(size, 'a');
        for (std::size_t i = random() % step; i < size; i += random() % step + 1)
            content[i] = 'b';
        std::string pattern = content.substr(random() % size, random() % (size / 3) + 1);
        pattern[random() % pattern.size()] = random() % 2 ? 'a' : 'b';  // often found nowhere
        long const start = static_cast<long>(random() % (size + 5));
        ASSERT_EQ((ByteArray() += content).find(ByteArray() += pattern, start),
                  static_cast<long>(content.find(pattern, static_cast<std::size_t>(start))));
    }
    EXPECT_EQ(ByteArray("abc").find(ByteArray(), 2), 2);
    EXPECT_EQ(ByteArray("abc").find(ByteArray(), 3), -1);
}

TEST(ByteArray, ReadsEveryPairAsTheCLibraryDoes) {
    for (int i = 0; i < 0x10000; ++i) {
        std::string const pair = {static_cast<char>(i >> 8), static_cast<char>(i)};
        unsigned int number = 0;
        bool const read = std::sscanf(pair.c_str(), "%02X", &number) == 1;
        ASSERT_EQ(Parsed(pair), std::string(read, static_cast<char>(number))) << i;
    }
}

TEST(ByteArray, ReadsHexadecimalUpToTheFirstBadPair) {
    EXPECT_EQ(Parsed("12 3-4+504g5zz34"), "\x12\x03\xFC\x05\x04");
    EXPECT_EQ(Parsed("121\0ABC"s), "\x12\x01\xAB\x0C");
    std::string content, digits, text = "old";
    for (int i = 0; i < 300; ++i) {
        content += static_cast<char>(i);
        digits += {"0123456789ABCDEF"[i / 16 % 16], "0123456789ABCDEF"[i % 16]};
    }
    (ByteArray() += content).getASCIIHex(text);
    EXPECT_EQ(text, digits);
    ByteArray back;
    back.loadASCIIHex(ByteArray() += digits);
    EXPECT_EQ(Content(back), content);
    for (std::size_t i = 0; i < digits.size(); ++i) {
        std::string expected = content.substr(0, i / 2);
        if (i % 2)  // the digit before the bad one is a number too
            expected += static_cast<char>(i / 32 % 16) + content.substr(i / 2 + 1);
        text.replace(i, 1, "g");
        EXPECT_EQ(Parsed(text), expected) << i;
        text = digits;
    }
}
