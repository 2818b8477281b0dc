#include <CommonAPI/attribute_map.h>
#include <gtest/gtest.h>

#include "support/child_process.h"

using namespace std::string_literals;

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
