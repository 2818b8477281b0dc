#include <CommonAPI/paper_size.h>

#include "support/child_process.h"

TEST(PaperSize, YieldsTheLastRecordOfExactlyThatNameAndLogsWhateverItDoes) {
    ChildResult const child = RunLogged([] {
        PaperSizeData const first = {"A4", 1, 2, 3, 4};
        PaperSizeData const last = {"A4", 595, 842, 210.5f, 297.25f};
        PaperSizeData const lowerCase = {"a4", 5, 6, 7, 8};
        PaperSizeData const missing = {"A5", -1, -1, -1, -1};
        PaperSize sizes;
        for (PaperSizeData const* const data : {&first, &last, &lowerCase})
            sizes.addPaperSizeToList(data);
        EXPECT_EQ(sizes.findMediaDataByKey("a4"), &lowerCase);
        for (PaperSizeData const& expected : {last, missing}) {
            std::string const name = expected.name;
            bool const found = name == "A4";
            PaperSizeData sizesOf = {};
            EXPECT_EQ(sizes.getPaperSizeInPts(name, sizesOf.widthPts, sizesOf.heightPts), found);
            EXPECT_EQ(sizes.getPaperSizeInMM(name, sizesOf.widthMM, sizesOf.heightMM), found);
            EXPECT_EQ(sizesOf.widthPts, expected.widthPts);
            EXPECT_EQ(sizesOf.heightPts, expected.heightPts);
            EXPECT_EQ(sizesOf.widthMM, expected.widthMM);
            EXPECT_EQ(sizesOf.heightMM, expected.heightMM);
            EXPECT_EQ(sizes.removePaperSizeFromList(name), found);
        }
    });
    EXPECT_EQ(child.log, ContentOf(TESTS "/paper/data/log.txt") + closingLine);
}
