#include <CommonAPI/paper_size.h>

#include "support/child_process.h"

TEST(PaperSize, YieldsTheLastRecordOfExactlyThatName) {
    PaperSizeData const first = {"A4", 1, 2, 3, 4};
    PaperSizeData const last = {"A4", 595, 842, 210.5f, 297.25f};
    PaperSizeData const lowerCase = {"a4", 5, 6, 7, 8};
    PaperSizeData const unnamed = {"", 9, 10, 11, 12};
    PaperSize sizes;
    for (PaperSizeData const* const data : {&first, &last, &lowerCase, &unnamed})
        sizes.addPaperSizeToList(data);
    EXPECT_EQ(sizes.findMediaDataByKey("A4"), &last);
    EXPECT_EQ(sizes.findMediaDataByKey("a4"), &lowerCase);
    EXPECT_EQ(sizes.findMediaDataByKey(""), &unnamed);
}

TEST(PaperSize, YieldsSizesOrMinusOneAndLogsWhateverItDoes) {
    ChildResult const child = RunLogged([] {
        PaperSizeData const a4 = {"A4", 595, 842, 210.5f, 297.25f};
        PaperSizeData const missing = {"A5", -1, -1, -1, -1};
        PaperSize sizes;
        sizes.addPaperSizeToList(&a4);
        for (PaperSizeData const* const data : {&a4, &missing}) {
            bool const found = data == &a4;
            PaperSizeData yielded = {};
            EXPECT_EQ(found,
                      sizes.getPaperSizeInPts(data->name, yielded.widthPts, yielded.heightPts));
            EXPECT_EQ(found, sizes.getPaperSizeInMM(data->name, yielded.widthMM, yielded.heightMM));
            EXPECT_EQ(yielded.widthPts, data->widthPts);
            EXPECT_EQ(yielded.heightPts, data->heightPts);
            EXPECT_EQ(yielded.widthMM, data->widthMM);
            EXPECT_EQ(yielded.heightMM, data->heightMM);
            EXPECT_EQ(found, sizes.removePaperSizeFromList(data->name));
        }
        EXPECT_EQ(sizes.findMediaDataByKey("A4"), nullptr) << "it was removed";
    });
    EXPECT_EQ(child.log, ContentOf(TESTS "/paper/data/log.txt") + closingLine);
}
