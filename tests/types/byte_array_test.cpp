#include <CommonAPI/byte_array.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

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
    ByteArray array("old");
    array.loadASCIIHex(hexadecimal);
    return Content(array);
}

TEST(ByteArray, Changes) {
    static char const* const null = nullptr;
    static int count = 2;
    struct {
        char const* what;
        void (*change)(ByteArray&);
        std::string expected;
    } const rows[] = {
        {"appended to itself", [](ByteArray& a) { a += a; }, "abcdabcd"},
        {"assigned to itself", [](ByteArray& a) { a = static_cast<ByteArray&>(a); }, ""},
        {"null appended", [](ByteArray& a) { a += null; }, "abcd"},
        {"null assigned", [](ByteArray& a) { a = null; }, ""},
        {"null constructed", [](ByteArray& a) { a = ByteArray(null); }, ""},
        {"string assigned", [](ByteArray& a) { a = "x\0y"s; }, "x\0y"s},
        {"string appended", [](ByteArray& a) { a += "\0y"s; }, "abcd\0y"s},
        {"byte appended", [](ByteArray& a) { a += static_cast<unsigned char>(0xFE); }, "abcd\xFE"},
        {"integers",
         [](ByteArray& a) {
             a = std::vector<int>{256, 257, -1};
         },
         "\x00\x01\xFF"s},
        {"run appended", [](ByteArray& a) { a.append("xyz", 2); }, "abcdxy"},
        {"run assigned", [](ByteArray& a) { a.assign("xyz", 2); }, "xy"},
        {"run inserted", [](ByteArray& a) { a.insert(1, "xyz", 2); }, "axybcd"},
        {"run at the end", [](ByteArray& a) { a.insert(4, "xyz", 1); }, "abcdx"},
        {"byte set", [](ByteArray& a) { a.assign(1, static_cast<unsigned char>('x')); }, "axcd"},
        {"word set", [](ByteArray& a) { a.assign(0, 0x01020384u); }, "\x01\x02\x03\x84"},
        {"erased up to a position", [](ByteArray& a) { a.erase(1, 3); }, "ad"},
        {"nothing erased", [](ByteArray& a) { a.erase(1, 1); }, "abcd"},
        {"all erased", [](ByteArray& a) { a.erase(0, a.size()); }, ""},
        {"grown", [](ByteArray& a) { a.resize(6L, 0x141); }, "abcdAA"},
        {"shrunk", [](ByteArray& a) { a.resize(count, 0); }, "ab"},
        {"hexadecimal of itself", [](ByteArray& a) { a.loadASCIIHex(a); }, ""},
    };
    for (auto const& row : rows) {
        ByteArray array("abcd");
        row.change(array);
        EXPECT_EQ(Content(array), row.expected) << row.what;
        EXPECT_EQ(array.length(), static_cast<long>(row.expected.size())) << row.what;
    }
}

TEST(ByteArray, Reads) {
    ByteArray array = Array("\x01\0\x03\x84z"s);
    EXPECT_EQ(array.at(0), 0x01000384u);
    EXPECT_EQ(array.at(1), 0x0003847Au);
    EXPECT_EQ(array[3], 0x84);
    char const* const text = *array;
    EXPECT_STREQ(text, "\x01");
    array.clear();
    EXPECT_TRUE(array.empty());
    EXPECT_EQ(text[4], 'z');  // kept until the next c_str() or assignment
    array = "";
    EXPECT_STREQ(text, "");

    unsigned char* data = nullptr;
    long length = 7;
    array.getRawData(&data, length);
    EXPECT_TRUE(data == nullptr && length == 7);
    Array("a\0b"s).getRawData(&data, length);
    EXPECT_EQ(std::string(data, data + length), "a\0b"s);
    delete[] data;
}

TEST(ByteArray, FindsWhatAStringFinds) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::size_t const size = round % 2 ? 10 : 20000;
        std::size_t const step = round % 2 ? 3 : 4000;
        std::string content(size, 'a');
        for (std::size_t i = random() % step; i < size; i += random() % step + 1)
            content[i] = 'b';
        std::string pattern = content.substr(random() % size, random() % (size / 3) + 1);
        pattern[random() % pattern.size()] = random() % 2 ? 'a' : 'b';  // often found nowhere
        std::size_t const start = random() % (size + 5);
        ASSERT_EQ(Array(content).find(Array(pattern), static_cast<long>(start)),
                  static_cast<long>(content.find(pattern, start)));
    }
    EXPECT_EQ(Array("abc").find(ByteArray(), 2), 2);
    EXPECT_EQ(Array("abc").find(ByteArray(), 3), -1);
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
    EXPECT_EQ(Parsed("ABC"), "\xAB\x0C");
    EXPECT_EQ(Parsed("12 3-4+504g5zz34"), "\x12\x03\xFC\x05\x04");
    EXPECT_EQ(Parsed("121\0\x33\x34"s), "\x12\x01\x34");
    ByteArray array;
    for (int i = 0; i < 300; ++i)
        array += static_cast<unsigned char>(i);
    std::string text = "old";
    array.getASCIIHex(text);
    for (std::size_t i = 0; i < 300; ++i) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", static_cast<unsigned>(i & 0xFF));
        EXPECT_EQ(text.substr(2 * i, 2), digits);
        std::string bad = text;
        bad[2 * i] = 'x';
        EXPECT_EQ(Parsed(bad), Content(array).substr(0, i));
    }
    ByteArray back;
    back.loadASCIIHex(Array(text));
    EXPECT_EQ(Content(back), Content(array));
}

}  // namespace
