#include "output/scan/ScanPicture.h"

#include <QColor>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using Samples = ScanFrame::Samples;

TEST(ScanPicture, framesThatCannotBeAreRefusedBeforeMemoryIsTaken) {
    struct Row {
        ScanFrame frame;
        ScanStatus status;
    };
    const Row rows[] = {
        {{Samples::Colour, true, 8, 65'535, 3'000, 3 * 65'535}, ScanStatus::Good},
        {{Samples::Colour, true, 16, 65'535, -1, 6 * 65'535}, ScanStatus::Good},
        {{Samples::Colour, true, 8, 65'536, 10, 3 * 65'536}, ScanStatus::TooLarge},
        {{Samples::Grey, true, 8, 10, 65'536, 10}, ScanStatus::TooLarge},
        {{Samples::Grey, true, 8, 20'000, 20'000, 20'000}, ScanStatus::TooLarge},
        {{Samples::Grey, true, 8, 2'147'483'647, 2'147'483'647, 2'147'483'647}, ScanStatus::TooLarge},
        {{Samples::Grey, true, 8, 0, 10, 10}, ScanStatus::Crashed},
        {{Samples::Grey, true, 8, -5, 10, 10}, ScanStatus::Crashed},
        {{Samples::Grey, true, 8, 10, 0, 10}, ScanStatus::Crashed},
        {{Samples::Grey, true, 8, 10, -2, 10}, ScanStatus::Crashed},
        {{Samples::Grey, true, 12, 10, 10, 20}, ScanStatus::Crashed},
        {{Samples::Grey, true, 8, 10, 10, 9}, ScanStatus::Crashed},
        {{Samples::Colour, true, 16, 10, 10, 59}, ScanStatus::Crashed},
        {{Samples::Colour, true, 1, 9, 10, 5}, ScanStatus::Crashed},
        {{Samples::Grey, true, 8, 10, 10, 2'147'483'647}, ScanStatus::Crashed},
    };
    for (const Row &row : rows) {
        ScanPicture picture;
        EXPECT_EQ(picture.begin(row.frame), row.status) << row.frame.toText().toStdString();
        EXPECT_EQ(picture.add("x"), row.status);
        EXPECT_TRUE(picture.picture().isNull());
    }
    ScanPicture none;
    EXPECT_EQ(none.add("before any frame"), ScanStatus::Crashed);
    // A second pass that does not fit the first.
    for (const ScanFrame &second :
         {ScanFrame{Samples::Green, true, 8, 11, 10, 11}, {Samples::Grey, true, 8, 10, 10, 10}}) {
        ScanPicture picture;
        ASSERT_EQ(picture.begin({Samples::Red, false, 8, 10, 10, 10}), ScanStatus::Good);
        EXPECT_EQ(picture.begin(second), ScanStatus::Crashed);
    }
}

TEST(ScanPicture, theHeightIsWhatHasCome) {
    struct Row {
        int announced;
        qsizetype bytes;
        int height;
    };
    // Ten bytes a line: fewer than announced, more, a part of a line, and where nothing was announced.
    const Row rows[] = {{100, 1000, 100}, {100, 400, 40}, {100, 405, 41},     {100, 2000, 100},
                        {-1, 0, 0},       {-1, 5, 1},     {-1, 10'000, 1000}, {-1, 123'457, 12'346}};
    for (const Row &row : rows) {
        ScanPicture picture;
        ASSERT_EQ(picture.begin({Samples::Grey, true, 8, 10, row.announced, 10}), ScanStatus::Good);
        for (qsizetype sent = 0; sent < row.bytes; sent += 777) {
            ASSERT_EQ(picture.add(QByteArray(std::min<qsizetype>(777, row.bytes - sent), '\x40')), ScanStatus::Good);
        }
        picture.end();
        EXPECT_EQ(picture.picture().height(), row.height) << row.announced << ' ' << row.bytes;
        if (row.height > 0) {
            EXPECT_EQ(picture.picture().pixel(2, row.height - 1), qRgb(0x40, 0x40, 0x40));
        }
        if (row.bytes % 10 == 5) {
            EXPECT_EQ(picture.picture().pixel(9, row.height - 1), qRgb(255, 255, 255)) << "what lacks is white";
        }
    }
    // A hand scanner that is never put down.
    ScanPicture endless;
    ASSERT_EQ(endless.begin({Samples::Grey, true, 1, 8, -1, 1}), ScanStatus::Good);
    ScanStatus status = ScanStatus::Good;
    for (int i = 0; i < 70 && status == ScanStatus::Good; ++i) {
        status = endless.add(QByteArray(1000, '\0'));
    }
    EXPECT_EQ(status, ScanStatus::TooLarge);
}

TEST(ScanPicture, theShareCountsAllPasses) {
    ScanPicture picture;
    EXPECT_LT(picture.share(), 0);
    const Samples passes[] = {Samples::Green, Samples::Blue, Samples::Red};
    double expected = 0;
    for (const Samples pass : passes) {
        ASSERT_EQ(picture.begin({pass, pass == Samples::Red, 8, 4, 10, 4}), ScanStatus::Good);
        EXPECT_NEAR(picture.share(), expected, 1e-9);
        picture.add(QByteArray(20, '\x11'));
        EXPECT_NEAR(picture.share(), expected + 1.0 / 6, 1e-9);
        picture.add(QByteArray(20, pass == Samples::Green ? '\x22' : '\x33'));
        expected += 1.0 / 3;
    }
    EXPECT_EQ(picture.picture().pixel(0, 0), qRgb(0x11, 0x11, 0x11));
    EXPECT_EQ(picture.picture().pixel(3, 9), qRgb(0x33, 0x22, 0x33));
    ScanPicture unknown;
    unknown.begin({Samples::Grey, true, 8, 4, -1, 4});
    unknown.add("abcd");
    EXPECT_LT(unknown.share(), 0);
}

} // namespace
} // namespace lumora
