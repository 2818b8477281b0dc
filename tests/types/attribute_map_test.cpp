#include <CommonAPI/attribute_map.h>
#include <gtest/gtest.h>

#include "support/child_process.h"

namespace {

using namespace std::string_literals;

TEST(AttributeMap, ReadsTextsAsTheirTypesOrYieldsTheDefault) {
    struct {
        char const* text;  // null: the key is absent
        bool truth;
        int integer;
        double real;
    } const rows[] = {
        {"True", true, 0, 0},   {"TRUE", true, 0, 0},       {"True ", false, 0, 0},
        {"1", false, 1, 1},     {"", false, 0, 0},          {"42abc", false, 42, 42},
        {" -7", false, -7, -7}, {"3.5e2", false, 3, 350.0}, {nullptr, true, 9, 9.5},
    };
    for (auto const& row : rows) {
        AttributeMap map;
        bool const present = row.text;
        if (present)
            map["key"s] = row.text;
        bool truth = !row.truth;
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
        EXPECT_TRUE(truth == row.truth && integer == row.integer && real == row.real) << text;
        EXPECT_EQ(text, present ? row.text : "default");
        EXPECT_EQ(value.c_str(), text);

        EXPECT_EQ(map.loadMapVariable("key", text, nullptr), present);
        EXPECT_EQ(map.loadMapVariable("key", value), present);
        EXPECT_EQ(map.loadMapVariable("key", pointer, nullptr), present);
        EXPECT_EQ(text, present ? row.text : "");
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
    struct {
        AttributeMap& map;
        long position;
        char const* key;  // null: not valid
        char const* value;
    } const rows[] = {
        {copy, 0, "a", "1"},           {copy, 1, "b", "2"},          {copy, -1, "a", "1"},
        {copy, 2, nullptr, "shared"},  {copy, 5, nullptr, "shared"}, {map, 1, "b", "changed"},
        {none, -1, nullptr, "shared"},
    };
    for (auto const& row : rows) {
        std::string key = "old";
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(row.map.fetchAttributeValueByIndex(row.position, key, text), row.key != nullptr);
        EXPECT_EQ(row.map.fetchAttributeValueByIndex(row.position, key, value), row.key != nullptr);
        EXPECT_EQ(key, row.key ? row.key : "old") << row.position;
        EXPECT_EQ(text, row.key ? row.value : "old") << row.position;
        EXPECT_EQ(value.c_str(), text);
        EXPECT_EQ(row.map(row.position), row.key ? row.key : "");
        EXPECT_STREQ(row.map[row.position].c_str(), row.value);
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
