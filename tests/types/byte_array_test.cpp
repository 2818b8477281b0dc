#include <CommonAPI/byte_array.h>
#include <gtest/gtest.h>

#include <cstdio>

namespace {

using namespace std::string_literals;

std::string Content(ByteArray& array) {
    char const* const text = array.c_str();
    return {text, static_cast<std::size_t>(array.size())};
}

ByteArray Array(std::string const& content) {
    ByteArray array;
    array = content;
    return array;
}

std::string Parsed(std::string const& hexadecimal) {
    ByteArray array;
    array.loadASCIIHex(hexadecimal);
    return Content(array);
}

TEST(ByteArray, AssignedToItselfIsEmptiedAndAppendedToItselfIsDoubled) {
    ByteArray array("abc");
    array += array;
    EXPECT_EQ(Content(array), "abcabc");
    ByteArray& itself = array;
    array = itself;
    EXPECT_TRUE(array.empty());
    EXPECT_STREQ(*array, "");
}

TEST(ByteArray, TakesTextsIntegersAndRuns) {
    char const* const null = nullptr;
    ByteArray array(null);
    EXPECT_EQ(array.size(), 0);
    array = "old";
    array += null;
    EXPECT_EQ(Content(array), "old");
    array = null;
    EXPECT_EQ(array.length(), 0);

    array = "a\0b"s;
    EXPECT_EQ(array.size(), 3);
    EXPECT_STREQ(array.c_str(), "a");
    EXPECT_EQ(Content(array), "a\0b"s);
    array += "\0c"s;
    array += static_cast<unsigned char>('d');
    array.append("efg", 2);
    EXPECT_EQ(Content(array), "a\0b\0cdef"s);
    EXPECT_EQ(array[7], 'f');

    array = std::vector<int>{256, 257, -1};
    EXPECT_EQ(Content(array), "\x00\x01\xFF"s);
    array.assign("xyz", 2);
    EXPECT_EQ(Content(array), "xy");
}

TEST(ByteArray, KeepsItsTextUntilAskedAgainOrAssigned) {
    ByteArray array("abc");
    char const* const text = array.c_str();
    array.clear();
    EXPECT_STREQ(text, "abc");
    array = "";
    EXPECT_STREQ(text, "");
}

TEST(ByteArray, HoldsWordsBigEndian) {
    ByteArray array("....z");
    array.assign(0, 0x01020384u);
    EXPECT_EQ(Content(array), "\x01\x02\x03\x84z");
    EXPECT_EQ(array.at(0), 0x01020384u);
    array.assign(1, static_cast<unsigned char>(0xFE));
    EXPECT_EQ(array.at(1), 0xFE03847Au);
}

TEST(ByteArray, EditsInPlace) {
    ByteArray array("0123456789");
    array.erase(2, 5);  // an end position, not a count
    EXPECT_EQ(Content(array), "0156789");
    array.erase(1, 1);
    array.insert(2, "abcd", 3);
    EXPECT_EQ(Content(array), "01abc56789");
    array.insert(10, "!", 1);
    array.resize(13L, 0x141);
    EXPECT_EQ(Content(array), "01abc56789!AA");
    int count = 2;
    array.resize(count, 0);
    EXPECT_EQ(Content(array), "01");
    array.erase(0, array.size());
    EXPECT_TRUE(array.empty());
}

TEST(ByteArray, Finds) {
    struct {
        char const* content;
        char const* pattern;
        long start;
        long expected;
    } const rows[] = {
        {"abcabc", "abc", 0, 0}, {"abcabc", "abc", 1, 3}, {"abcabc", "abc", 4, -1},
        {"aaab", "aab", 0, 1},   {"abcx", "xy", 0, -1},   {"abc", "c", 2, 2},
        {"abc", "a", 3, -1},     {"abc", "a", 99, -1},    {"", "a", 0, -1},
        {"abc", "", 1, 1},       {"abc", "", 3, -1},      {"", "", 0, -1},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Array(row.content).find(Array(row.pattern), row.start), row.expected)
            << row.content << " / " << row.pattern << " from " << row.start;
}

TEST(ByteArray, ReadsEveryPairAsTheCLibraryDoes) {
    for (int i = 0; i < 0x10000; ++i) {
        std::string const pair = {static_cast<char>(i >> 8), static_cast<char>(i)};
        unsigned int number;
        bool const read = std::sscanf(pair.c_str(), "%02X", &number) == 1;
        std::string const expected = read ? std::string(1, static_cast<char>(number)) : "";
        ASSERT_EQ(Parsed(pair), expected) << "pair " << std::hex << i;
    }
}

TEST(ByteArray, ReadsHexadecimalUpToTheFirstBadPair) {
    EXPECT_EQ(Parsed("0aFF"), "\x0A\xFF");
    EXPECT_EQ(Parsed("ABC"), "\xAB\x0C");
    EXPECT_EQ(Parsed("12zz34"), "\x12");
    EXPECT_EQ(Parsed("12 3-4+504g5"), "\x12\x03\xFC\x05\x04");
    EXPECT_EQ(Parsed("12" + "\0"s + "12"), "\x12");
    EXPECT_EQ(Parsed("121\0"
                     "34"s),
              "\x12\x01\x34");

    std::string const clean(200, '7');
    for (std::size_t bad = 0; bad < clean.size(); ++bad) {
        std::string text = clean;
        text[bad] = 'x';
        // A bad second digit leaves a number of one digit.
        EXPECT_EQ(Parsed(text).size(), bad % 2 == 0 ? bad / 2 : clean.size() / 2) << bad;
    }
}

TEST(ByteArray, HexadecimalGoesBothWays) {
    std::vector<int> values;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        values.push_back(i);
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", i & 0xFF);
        expected += digits;
    }
    ByteArray array;
    array = values;
    std::string text = "old";
    array.getASCIIHex(text);
    EXPECT_EQ(text, expected);

    ByteArray hexadecimal = Array(text);
    ByteArray back("old");
    back.loadASCIIHex(hexadecimal);
    EXPECT_EQ(Content(back), Content(array));
    back.loadASCIIHex(back);
    EXPECT_TRUE(back.empty());
}

TEST(ByteArray, HandsOutRawDataUnlessEmpty) {
    unsigned char* data = nullptr;
    long length = 7;
    ByteArray().getRawData(&data, length);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(length, 7);

    Array("a\0b"s).getRawData(&data, length);
    EXPECT_EQ(std::string(data, data + length), "a\0b"s);
    delete[] data;
}

}  // namespace
