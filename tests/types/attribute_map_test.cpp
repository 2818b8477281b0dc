#include <CommonAPI/attribute_map.h>
#include <gtest/gtest.h>

#include <tuple>

#include "support/child_process.h"

using namespace std::string_literals;

template <class Value, class Default>
static Value Load(AttributeMap& map, Default const& fallback) {
    Value value{};
    EXPECT_EQ(map.loadMapVariable("key\0more"s, value, fallback), map.size());  // up to the zero
    return value;
}

TEST(AttributeMap, ReadsTextsAsTheirTypesOrYieldsTheDefault) {
    // The text, null if the key is absent, and what it reads as.
    using Row = std::tuple<char const*, bool, int, double>;
    for (auto const& [stored, truth, integer, real] :
         {Row{"True", true, 0, 0}, Row{"TRUE", true, 0, 0}, Row{"True ", false, 0, 0},
          Row{"1", false, 1, 1}, Row{"", false, 0, 0}, Row{"42abc", false, 42, 42},
          Row{" -7", false, -7, -7}, Row{"3.5e2", false, 3, 350.0}, Row{nullptr, true, 9, 9.5}}) {
        AttributeMap map;
        if (stored)
            map["key"s] = stored;
        std::string const text = stored ? stored : "default";
        EXPECT_EQ(Load<bool>(map, true), truth) << text;
        EXPECT_EQ(Load<int>(map, 9), integer);
        EXPECT_EQ(Load<double>(map, 9.5), real);
        EXPECT_EQ(Load<std::string>(map, "default"), text);
        EXPECT_STREQ(Load<UnicodeString>(map, UnicodeString("default")).c_str(), text.c_str());
        EXPECT_EQ(Load<std::string>(map, nullptr), stored ? stored : "");
        UnicodeString value("old");
        EXPECT_EQ(map.loadMapVariable("key", value), map.size());
        EXPECT_STREQ(value.c_str(), stored ? stored : "");
        auto const* const pointer = Load<char const*>(map, nullptr);
        EXPECT_EQ(pointer, stored ? map["key"s].c_str() : nullptr);  // the text inside the map
    }
}

/// All that is said of a position.
static std::string At(AttributeMap& map, long position) {
    std::string key = "none", text = "none";
    UnicodeString value("none");
    bool const valid = map.fetchAttributeValueByIndex(position, key, text);
    EXPECT_EQ(map.fetchAttributeValueByIndex(position, key, value), valid);
    EXPECT_EQ(key != "none", valid);
    return key + text + value.c_str() + ' ' + map(position) + map[position].c_str();
}

TEST(AttributeMap, PositionsCountInKeyOrder) {
    AttributeMap none, map;
    map["b"s] = "2";
    map["a"s] = "1";
    map["a\0b"s] = "zero";
    EXPECT_EQ(map.removeMapVariable("absent") + 2 * map.removeMapVariable("a\0b"s), 2u);
    AttributeMap copy(map);
    none = map;
    none.clear();
    none[0L] = "shared";  // what a position that is not valid yields, in every map
    map["b"s] = "3";
    EXPECT_EQ(At(copy, -1) + At(copy, 0) + At(copy, 1) + At(map, 1), "a11 a1a11 a1b22 b2b33 b3");
    for (auto const& [of, position] : {std::pair(&copy, 2), {&copy, 5}, {&none, -1}, {&none, 0}})
        EXPECT_EQ(At(*of, position), "nonenonenone shared");
    none[0L].clear();
}

TEST(AttributeMap, DumpsALinePerEntryAndLeavesTheValuesAlone) {
    ChildResult const child = RunInChild([] {
        AttributeMap map;
        map["B"s] = "";
        map["A"s] = L"1";
        map.dumpStringMapContents();
        std::printf("found at %ld", map["A"s].find('1', 0));  // no narrow form was derived
    });
    EXPECT_EQ(child.output, "A == 1\nB == \nfound at -1");
}
