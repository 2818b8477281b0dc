#include <CommonAPI/paper_size.h>
#include <gtest/gtest.h>

#include <iostream>

#include "support/logged_child.h"

TEST(PaperSize, KeepsTheLastRecordOfEachNameAndLogsEverything) {
    LoggedChild const child = RunLogged([] {
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
    std::string expected;
    for (std::string const line :
         {"addPaperSizeToList: Paper size added:  A4", "addPaperSizeToList: Paper size added:  A4",
          "addPaperSizeToList: Paper size added:  a4", "addPaperSizeToList: Paper size added:  ",
          "findMediaDataByKey: Found media:  ", "getPaperSizeInPts: Found paper size:  ",
          "findMediaDataByKey: Found media:  a4", "getPaperSizeInPts: Found paper size:  a4",
          "findMediaDataByKey: Found media:  A4", "getPaperSizeInPts: Found paper size:  A4",
          "findMediaDataByKey: Failed to find media:  A5",
          "getPaperSizeInPts: Failed to find paper size:  A5",
          "findMediaDataByKey: Found media:  A4", "getPaperSizeInMM: Found paper size:  A4",
          "removePaperSizeFromList: Paper size removed:  A4",
          "findMediaDataByKey: Failed to find media:  A4",
          "getPaperSizeInMM: Failed to find paper size:  A4",
          "removePaperSizeFromList: Failed to find paper size to erase:  A4"})
        expected += (line.find("Failed") == line.npos ? "" : "WARNING/") +
                    ("PaperSizeAPI:  " + line) + "\n";
    EXPECT_EQ(child.log, expected + "Terminating logging facility\n");
}
