#include <CommonAPI/attribute_map.h>
#include <gtest/gtest.h>

#include "support/child_process.h"

namespace {

using namespace std::string_literals;

AttributeMap Map(std::string const& key, char const* value) {
    AttributeMap map;
    map[key] = value;
    return map;
}

TEST(AttributeMap, ReadsTextsAsTheirTypesOrYieldsTheDefault) {
    struct {
        char const* text;  // null: the key is absent
        bool truth;
        int integer;
        double real;
    } const rows[] = {
        {"True", true, 0, 0},       {"TRUE", true, 0, 0},     {"true", true, 0, 0},
        {"True ", false, 0, 0},     {"1", false, 1, 1},       {"yes", false, 0, 0},
        {"", false, 0, 0},          {"42abc", false, 42, 42}, {" -7", false, -7, -7},
        {"3.5e2", false, 3, 350.0}, {nullptr, true, 9, 9.5},
    };
    for (auto const& row : rows) {
        bool const present = row.text;
        char const* const expected = present ? row.text : "default";
        AttributeMap map = present ? Map("key", row.text) : AttributeMap();
        bool truth = !row.truth;
        int integer = -1;
        double real = -1;
        char const* pointer = nullptr;
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(map.loadMapVariable("key", truth, true), present);
        EXPECT_EQ(map.loadMapVariable("key", integer, 9), present);
        EXPECT_EQ(map.loadMapVariable("key", real, 9.5), present);
        EXPECT_EQ(map.loadMapVariable("key", pointer, "default"), present);
        EXPECT_EQ(map.loadMapVariable("key", text, "default"), present);
        EXPECT_EQ(map.loadMapVariable("key", value, UnicodeString("default")), present);
        EXPECT_EQ(truth, row.truth) << expected;
        EXPECT_EQ(integer, row.integer) << expected;
        EXPECT_EQ(real, row.real) << expected;
        EXPECT_STREQ(pointer, expected);
        EXPECT_EQ(text, expected);
        EXPECT_STREQ(value.c_str(), expected);

        EXPECT_EQ(map.loadMapVariable("key", text, nullptr), present);
        EXPECT_EQ(map.loadMapVariable("key", value), present);
        EXPECT_EQ(map.loadMapVariable("key", pointer, nullptr), present);
        EXPECT_EQ(text, present ? row.text : "");
        EXPECT_STREQ(value.c_str(), text.c_str());
        EXPECT_EQ(pointer, present ? map["key"s].c_str() : nullptr);  // the text inside the map
        EXPECT_EQ(map.size(), present);
    }
}

TEST(AttributeMap, OnlyReadersUseTheKeyUpToItsFirstNul) {
    AttributeMap map = Map("key", "1");
    map["key\0more"s] = "2";
    int value = 0;
    EXPECT_TRUE(map.loadMapVariable("key\0more"s, value, 0));
    EXPECT_EQ(value, 1);
    EXPECT_EQ(map.removeMapVariable("key\0more"s), 1u);
    EXPECT_EQ(map.removeMapVariable("absent"), 0u);
    EXPECT_EQ(map.size(), 1);
}

TEST(AttributeMap, PositionsCountInKeyOrder) {
    AttributeMap map = Map("b", "2");
    map["a"s] = "1";
    AttributeMap none;
    struct {
        AttributeMap& map;
        long position;
        char const* key;  // null: not valid
        char const* value;
    } const rows[] = {{map, 0, "a", "1"},          {map, 1, "b", "2"},
                      {map, -1, "a", "1"},         {map, 2, nullptr, "shared"},
                      {map, 5, nullptr, "shared"}, {none, -1, nullptr, "shared"}};
    none[0L] = "shared";  // what a position that is not valid yields, in every map
    for (auto const& row : rows) {
        std::string key = "old";
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(row.map.fetchAttributeValueByIndex(row.position, key, text), row.key != nullptr);
        EXPECT_EQ(row.map.fetchAttributeValueByIndex(row.position, key, value), row.key != nullptr);
        EXPECT_EQ(key, row.key ? row.key : "old") << row.position;
        EXPECT_EQ(text, row.key ? row.value : "old") << row.position;
        EXPECT_STREQ(value.c_str(), text.c_str());
        EXPECT_EQ(row.map(row.position), row.key ? row.key : "");
        EXPECT_STREQ(row.map[row.position].c_str(), row.value);
    }
    none[0L].clear();
}

TEST(AttributeMap, CopiesAreDeep) {
    AttributeMap map = Map("key", "value");
    AttributeMap copy(map);
    AttributeMap assigned = Map("gone", "");
    assigned = map;
    map["key"s] = "changed";
    EXPECT_STREQ(copy["key"s].c_str(), "value");
    EXPECT_STREQ(assigned[0L].c_str(), "value");
    EXPECT_EQ(assigned.size(), 1);
    map.clear();
    EXPECT_TRUE(map.empty());
}

TEST(AttributeMap, DumpsALinePerEntryAndLeavesTheValuesAlone) {
    AttributeMap map = Map("B", "");
    map["A"s] = L"1";
    ChildResult const child = RunInChild([&] {
        AttributeMap().dumpStringMapContents();
        map.dumpStringMapContents();
        if (map["A"s].find('1', 0) != -1)  // no narrow form was derived
            std::exit(EXIT_FAILURE);
    });
    EXPECT_EQ(child.output, "A == 1\nB == \n");
    EXPECT_EQ(child.status, 0);
}

}  // namespace
