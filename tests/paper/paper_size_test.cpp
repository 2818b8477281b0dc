#include <CommonAPI/paper_size.h>

#include <iostream>

#include "support/child_process.h"

TEST(PaperSize, KeepsTheLastRecordOfEachNameAndLogsEverything) {
    ChildResult const child = RunLogged([] {
        PaperSizeData const first = {"A4", 1, 2, 3, 4}, last = {"A4", 595, 842, 210.5f, 297.25f},
                            lowerCase = {"a4", 5, 6, 7, 8}, unnamed = {"", 9, 10, 11, 12};
        PaperSize sizes;
        for (PaperSizeData const* const data : {&first, &last, &lowerCase, &unnamed})
            sizes.addPaperSizeToList(data);
        int x, y;
        float xMM, yMM;  // which are not derived from the points
        for (char const* const name : {"", "a4", "A4", "A5"})
            std::cout << sizes.getPaperSizeInPts(name, x, y) << ' ' << x << ' ' << y << '\n';
        for (int i = 0; i < 2; ++i)
            std::cout << sizes.getPaperSizeInMM("A4", xMM, yMM) << ' ' << xMM << ' ' << yMM << '\n'
                      << sizes.removePaperSizeFromList("A4") << '\n';
    });
    EXPECT_TRUE(StringCompareClass()("A4", "a4") && !StringCompareClass()("A4", "A4"));
    EXPECT_EQ(child.output, "1 9 10\n1 5 6\n1 595 842\n0 -1 -1\n1 210.5 297.25\n1\n0 -1 -1\n0\n");
    EXPECT_EQ(child.log, Take(std::fopen(TESTS "/paper/data/log.txt", "r")));
}
