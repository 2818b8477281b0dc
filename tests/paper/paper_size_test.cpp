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
    EXPECT_EQ(
        child.log,
        "PaperSizeAPI:  addPaperSizeToList: Paper size added:  A4\n"
        "PaperSizeAPI:  addPaperSizeToList: Paper size added:  A4\n"
        "PaperSizeAPI:  addPaperSizeToList: Paper size added:  a4\n"
        "PaperSizeAPI:  addPaperSizeToList: Paper size added:  \n"
        "PaperSizeAPI:  findMediaDataByKey: Found media:  \n"
        "PaperSizeAPI:  getPaperSizeInPts: Found paper size:  \n"
        "PaperSizeAPI:  findMediaDataByKey: Found media:  a4\n"
        "PaperSizeAPI:  getPaperSizeInPts: Found paper size:  a4\n"
        "PaperSizeAPI:  findMediaDataByKey: Found media:  A4\n"
        "PaperSizeAPI:  getPaperSizeInPts: Found paper size:  A4\n"
        "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A5\n"
        "WARNING/PaperSizeAPI:  getPaperSizeInPts: Failed to find paper size:  A5\n"
        "PaperSizeAPI:  findMediaDataByKey: Found media:  A4\n"
        "PaperSizeAPI:  getPaperSizeInMM: Found paper size:  A4\n"
        "PaperSizeAPI:  removePaperSizeFromList: Paper size removed:  A4\n"
        "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A4\n"
        "WARNING/PaperSizeAPI:  getPaperSizeInMM: Failed to find paper size:  A4\n"
        "WARNING/PaperSizeAPI:  removePaperSizeFromList: Failed to find paper size to erase:  A4\n"
        "Terminating logging facility\n");
}
