#include <CommonAPI/attribute_map.h>
#include <gtest/gtest.h>

#include <tuple>

#include "support/child_process.h"

namespace {

using namespace std::string_literals;

TEST(AttributeMap, ReadsTextsAsTheirTypesOrYieldsTheDefault) {
    // The text, null if the key is absent, and what it reads as.
    using Row = std::tuple<char const*, bool, int, double>;
    for (auto const& [stored, expectedTruth, expectedInteger, expectedReal] :
         {Row{"True", true, 0, 0}, Row{"TRUE", true, 0, 0}, Row{"True ", false, 0, 0},
          Row{"1", false, 1, 1}, Row{"", false, 0, 0}, Row{"42abc", false, 42, 42},
          Row{" -7", false, -7, -7}, Row{"3.5e2", false, 3, 350.0}, Row{nullptr, true, 9, 9.5}}) {
        AttributeMap map;
        bool const present = stored;
        if (present)
            map["key"s] = stored;
        bool truth = !expectedTruth;
        int integer = -1;
        double real = -1;
        char const* pointer = nullptr;
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(map.loadMapVariable("key\0more"s, truth, true), present);  // up to the zero
        EXPECT_EQ(map.loadMapVariable("key", integer, 9), present);
        EXPECT_EQ(map.loadMapVariable("key", real, 9.5), present);
        EXPECT_EQ(map.loadMapVariable("key", text, "default"), present);
        EXPECT_EQ(map.loadMapVariable("key", value, UnicodeString("default")), present);
        EXPECT_TRUE(truth == expectedTruth && integer == expectedInteger && real == expectedReal)
            << text;
        EXPECT_EQ(text, present ? stored : "default");
        EXPECT_EQ(value.c_str(), text);

        EXPECT_EQ(map.loadMapVariable("key", text, nullptr), present);
        EXPECT_EQ(map.loadMapVariable("key", value), present);
        EXPECT_EQ(map.loadMapVariable("key", pointer, nullptr), present);
        EXPECT_EQ(text, present ? stored : "");
        EXPECT_EQ(value.c_str(), text);
        EXPECT_EQ(map.size(), present);
        EXPECT_EQ(pointer, present ? map["key"s].c_str() : nullptr);  // the text inside the map
    }
}

TEST(AttributeMap, PositionsCountInKeyOrder) {
    AttributeMap none;
    AttributeMap map;
    map["b"s] = "2";
    map["a"s] = "1";
    map["a\0b"s] = "zero";
    EXPECT_EQ(map.removeMapVariable("absent") + 2 * map.removeMapVariable("a\0b"s), 2u);
    AttributeMap copy(map);
    none = map;
    none.clear();
    none[0L] = "shared";  // what a position that is not valid yields, in every map
    map["b"s] = "changed";
    // A key of null: the position is not valid.
    using Row = std::tuple<AttributeMap*, long, char const*, char const*>;
    for (auto const& [of, position, expectedKey, expected] :
         {Row{&copy, 0, "a", "1"}, Row{&copy, 1, "b", "2"}, Row{&copy, -1, "a", "1"},
          Row{&copy, 2, nullptr, "shared"}, Row{&copy, 5, nullptr, "shared"},
          Row{&map, 1, "b", "changed"}, Row{&none, -1, nullptr, "shared"}}) {
        bool const valid = expectedKey;
        std::string key = "old";
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(of->fetchAttributeValueByIndex(position, key, text), valid);
        EXPECT_EQ(of->fetchAttributeValueByIndex(position, key, value), valid);
        EXPECT_EQ(key, valid ? expectedKey : "old") << position;
        EXPECT_EQ(text, valid ? expected : "old") << position;
        EXPECT_EQ(value.c_str(), text);
        EXPECT_EQ((*of)(position), valid ? expectedKey : "");
        EXPECT_STREQ((*of)[position].c_str(), expected);
    }
    none[0L].clear();
}

TEST(AttributeMap, DumpsALinePerEntryAndLeavesTheValuesAlone) {
    ChildResult const child = RunInChild([] {
        AttributeMap map;
        map["B"s] = "";
        map["A"s] = L"1";
        map.dumpStringMapContents();
        if (map["A"s].find('1', 0) != -1)  // no narrow form was derived
            std::exit(EXIT_FAILURE);
    });
    EXPECT_EQ(child.output, "A == 1\nB == \n");
    EXPECT_EQ(child.status, 0);
}

}  // namespace
