#include <CommonAPI/paper_size.h>
#include <gtest/gtest.h>

#include "support/logged_child.h"

namespace {

// Points and millimetres that do not agree: neither is derived from the other.
PaperSizeData const a4 = {"A4", 595, 842, 210.5f, 297.25f};
PaperSizeData const otherA4 = {"A4", 1, 2, 3.0f, 4.0f};
PaperSizeData const lowerCase = {"a4", 5, 6, 7.0f, 8.0f};
PaperSizeData const unnamed = {"", 9, 10, 11.0f, 12.0f};

void ExpectSize(PaperSize& sizes, char const* name, PaperSizeData const& expected) {
    int width = 0;
    int height = 0;
    float widthMM = 0;
    float heightMM = 0;
    bool const known = expected.widthPts != -1;
    EXPECT_EQ(sizes.getPaperSizeInPts(name, width, height), known) << name;
    EXPECT_EQ(sizes.getPaperSizeInMM(name, widthMM, heightMM), known) << name;
    EXPECT_EQ(width, expected.widthPts) << name;
    EXPECT_EQ(height, expected.heightPts) << name;
    EXPECT_EQ(widthMM, expected.widthMM) << name;
    EXPECT_EQ(heightMM, expected.heightMM) << name;
}

PaperSizeData const nothing = {"", -1, -1, -1.0f, -1.0f};

TEST(PaperSize, FindsTheLastRecordOfEachName) {
    PaperSize sizes;
    ExpectSize(sizes, "A4", nothing);
    for (PaperSizeData const* const data : {&a4, &lowerCase, &unnamed})
        sizes.addPaperSizeToList(data);
    ExpectSize(sizes, "A4", a4);
    ExpectSize(sizes, "a4", lowerCase);
    ExpectSize(sizes, "", unnamed);
    EXPECT_EQ(sizes.findMediaDataByKey("A4"), &a4);

    sizes.addPaperSizeToList(&otherA4);
    EXPECT_EQ(sizes.findMediaDataByKey("A4"), &otherA4);
    EXPECT_TRUE(sizes.removePaperSizeFromList("A4"));
    EXPECT_FALSE(sizes.removePaperSizeFromList("A4"));
    ExpectSize(sizes, "A4", nothing);
    ExpectSize(sizes, "a4", lowerCase);
}

TEST(PaperSize, OrdersNamesByUnsignedBytes) {
    StringCompareClass const less;
    EXPECT_TRUE(less("A4", "a4"));
    EXPECT_FALSE(less("a4", "a4"));
    EXPECT_TRUE(less("A", "A4"));
    EXPECT_TRUE(less("z", "\xc3"));
    EXPECT_TRUE(less(std::string("A\0A", 3), std::string("A\0B", 3)));
}

TEST(PaperSize, LogsEachOperationAndTwoLinesForEachGetter) {
    LoggedChild const child = RunLogged([] {
        PaperSize sizes;
        int points = 0;
        float millimetres = 0;
        for (int round = 0; round < 2; ++round) {
            sizes.getPaperSizeInPts("A4", points, points);
            sizes.getPaperSizeInMM("A4", millimetres, millimetres);
            sizes.addPaperSizeToList(&a4);
        }
        sizes.removePaperSizeFromList("A4");
        sizes.removePaperSizeFromList("A4");
    });
    EXPECT_EQ(child.log,
              "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A4\n"
              "WARNING/PaperSizeAPI:  getPaperSizeInPts: Failed to find paper size:  A4\n"
              "WARNING/PaperSizeAPI:  findMediaDataByKey: Failed to find media:  A4\n"
              "WARNING/PaperSizeAPI:  getPaperSizeInMM: Failed to find paper size:  A4\n"
              "PaperSizeAPI:  addPaperSizeToList: Paper size added:  A4\n"
              "PaperSizeAPI:  findMediaDataByKey: Found media:  A4\n"
              "PaperSizeAPI:  getPaperSizeInPts: Found paper size:  A4\n"
              "PaperSizeAPI:  findMediaDataByKey: Found media:  A4\n"
              "PaperSizeAPI:  getPaperSizeInMM: Found paper size:  A4\n"
              "PaperSizeAPI:  addPaperSizeToList: Paper size added:  A4\n"
              "PaperSizeAPI:  removePaperSizeFromList: Paper size removed:  A4\n"
              "WARNING/PaperSizeAPI:  removePaperSizeFromList: Failed to find paper size to "
              "erase:  A4\nTerminating logging facility\n");
}

}  // namespace
