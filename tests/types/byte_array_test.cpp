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

TEST(ByteArray, Finds) {
    struct {
        char const* content;
        char const* pattern;
        long start;
        long expected;
    } const rows[] = {
        {"abcabc", "abc", 0, 0}, {"abcabc", "abc", 1, 3}, {"abcabc", "abc", 4, -1},
        {"aaab", "aab", 0, 1},   {"abcx", "xy", 0, -1},   {"abc", "a", 3, -1},
        {"abc", "a", 99, -1},    {"", "a", 0, -1},        {"abc", "", 1, 1},
        {"abc", "", 3, -1},
    };
    for (auto const& row : rows)
        EXPECT_EQ(Array(row.content).find(Array(row.pattern), row.start), row.expected)
            << row.content << " / " << row.pattern << " from " << row.start;
}

TEST(ByteArray, FindsInTextsOfFewLettersWhatAStringFinds) {
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string content(20000, 'a');
        for (std::size_t i = random() % 4000 + 1; i < content.size(); i += random() % 4000 + 1)
            content[i] = 'b';
        std::string pattern = content.substr(random() % 19000, random() % 900 + 1);
        pattern[random() % pattern.size()] = random() % 2 ? 'a' : 'b';  // often found nowhere
        long const start = static_cast<long>(random() % 5000);
        long const expected =
            static_cast<long>(content.find(pattern, static_cast<std::size_t>(start)));
        ASSERT_EQ(Array(content).find(Array(pattern), start), expected) << round;
    }
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
    EXPECT_EQ(Parsed("12zz34"), "\x12");
    EXPECT_EQ(Parsed("12 3-4+504g5"), "\x12\x03\xFC\x05\x04");
    EXPECT_EQ(Parsed("121\0\x33\x34"s), "\x12\x01\x34");
    std::string const clean(200, '7');
    for (std::size_t bad = 0; bad < clean.size(); ++bad) {
        std::string text = clean;
        text[bad] = 'x';
        // A bad second digit leaves a number of one digit.
        EXPECT_EQ(Parsed(text).size(), bad % 2 == 0 ? bad / 2 : clean.size() / 2) << bad;
    }
}

TEST(ByteArray, HexadecimalGoesBothWays) {
    ByteArray array;
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        array += static_cast<unsigned char>(i);
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", i & 0xFF);
        expected += digits;
    }
    std::string text = "old";
    array.getASCIIHex(text);
    EXPECT_EQ(text, expected);
    ByteArray back;
    back.loadASCIIHex(Array(text));
    EXPECT_EQ(Content(back), Content(array));
}

}  // namespace
