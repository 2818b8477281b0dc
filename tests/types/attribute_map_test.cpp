#include "support/child_process.h"

TEST(AttributeMap, DumpsALinePerEntryAndLeavesTheValuesAlone) {
    ChildResult const child = RunInChild([] {
        AttributeMap map;
        map[std::string("B")] = "";
        map[std::string("A")] = L"1";
        map.dumpStringMapContents();
        std::printf("found at %ld", map[0L].find('1', 0));  // no narrow form was derived
    });
    EXPECT_EQ(child.output, "A == 1\nB == \nfound at -1");
}
