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

TEST(AttributeMap, ReadsTextsAsTheirTypes) {
    struct {
        char const* text;
        bool truth;
        int integer;
        double real;
    } const rows[] = {
        {"True", true, 0, 0},   {"TRUE", true, 0, 0},       {"true", true, 0, 0},
        {"True ", false, 0, 0}, {"1", false, 1, 1},         {"yes", false, 0, 0},
        {"", false, 0, 0},      {"42abc", false, 42, 42},   {"abc", false, 0, 0},
        {" -7", false, -7, -7}, {"3.5e2", false, 3, 350.0},
    };
    for (auto const& row : rows) {
        AttributeMap map = Map("key", row.text);
        bool truth = !row.truth;
        int integer = -1;
        double real = -1;
        char const* pointer = nullptr;
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_TRUE(map.loadMapVariable("key", truth, !row.truth));
        EXPECT_TRUE(map.loadMapVariable("key", integer, -2));
        EXPECT_TRUE(map.loadMapVariable("key", real, -2.0));
        EXPECT_TRUE(map.loadMapVariable("key", pointer, nullptr));
        EXPECT_TRUE(map.loadMapVariable("key", text, "default"));
        EXPECT_TRUE(map.loadMapVariable("key", value));
        EXPECT_EQ(truth, row.truth) << row.text;
        EXPECT_EQ(integer, row.integer) << row.text;
        EXPECT_EQ(real, row.real) << row.text;
        EXPECT_EQ(pointer, map["key"s].c_str());
        EXPECT_EQ(text, row.text);
        EXPECT_STREQ(value.c_str(), row.text);
    }
}

TEST(AttributeMap, AbsentKeysYieldTheDefaultAndAreNotInserted) {
    AttributeMap map;
    bool truth = false;
    int integer = 0;
    double real = 0;
    char const* pointer = "old";
    std::string text = "old";
    UnicodeString value("old");
    EXPECT_FALSE(map.loadMapVariable("key", truth, true));
    EXPECT_FALSE(map.loadMapVariable("key", integer, 7));
    EXPECT_FALSE(map.loadMapVariable("key", real, 7.5));
    EXPECT_FALSE(map.loadMapVariable("key", pointer, nullptr));
    EXPECT_FALSE(map.loadMapVariable("key", text, "default"));
    EXPECT_FALSE(map.loadMapVariable("key", value, UnicodeString("default")));
    EXPECT_TRUE(truth);
    EXPECT_EQ(integer, 7);
    EXPECT_EQ(real, 7.5);
    EXPECT_EQ(pointer, nullptr);
    EXPECT_EQ(text, "default");
    EXPECT_STREQ(value.c_str(), "default");
    EXPECT_FALSE(map.loadMapVariable("key", text, nullptr));
    EXPECT_FALSE(map.loadMapVariable("key", value));
    EXPECT_EQ(text, "");
    EXPECT_TRUE(value.empty());
    EXPECT_TRUE(map.empty());
}

TEST(AttributeMap, ReadersUseTheKeyUpToItsFirstNul) {
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
    struct {
        long position;
        char const* key;  // null: not valid
        char const* value;
    } const rows[] = {
        {0, "a", "1"}, {1, "b", "2"}, {-1, "a", "1"}, {2, nullptr, ""}, {5, nullptr, ""}};
    for (auto const& row : rows) {
        std::string key = "old";
        std::string text = "old";
        UnicodeString value("old");
        EXPECT_EQ(map.fetchAttributeValueByIndex(row.position, key, text), row.key != nullptr);
        EXPECT_EQ(map.fetchAttributeValueByIndex(row.position, key, value), row.key != nullptr);
        EXPECT_EQ(key, row.key ? row.key : "old") << row.position;
        EXPECT_EQ(text, row.key ? row.value : "old") << row.position;
        EXPECT_STREQ(value.c_str(), text.c_str());
        EXPECT_EQ(map(row.position), row.key ? row.key : "");
        EXPECT_STREQ(map[row.position].c_str(), row.value);
    }
}

TEST(AttributeMap, AllMapsShareTheFallback) {
    AttributeMap one;
    AttributeMap other = Map("key", "value");
    EXPECT_EQ(one(-1), "");  // no position of an empty map is valid
    one[-1] = "changed";
    EXPECT_STREQ(other[1].c_str(), "changed");
    other[1].clear();
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
    EXPECT_EQ(map.size(), 0);
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
