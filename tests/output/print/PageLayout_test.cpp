#include "output/print/PageLayout.h"

#include <gtest/gtest.h>

namespace lumora {
namespace {

const PrinterPaper a4{{595, 842}, {18, 18, 18, 36}, 300};
const PrinterPaper letter{{612, 792}, {0, 0, 0, 0}, 600};
const PrinterPaper card{{432, 288}, {10, 10, 10, 10}, 300}; // lies in the printer on its long side

/// The one sheet of photos.
PrintPage layOutPage(const PrinterPaper &paper, QSize photo, const PrintLayout &layout) {
    const PrintPages pages = layOutPages(paper, photo, layout);
    EXPECT_EQ(pages.sheets.size(), 1);
    return pages.sheets.first();
}

TEST(PageLayout, EveryPhotoIsWholeInProportionAndInsideTheMargins) {
    for (const PrinterPaper &paper : {a4, letter, card}) {
        for (const QSize photo :
             {QSize(6000, 4000), QSize(3000, 4000), QSize(500, 500), QSize(8000, 400), QSize(1, 1), QSize(3, 900)}) {
            for (const int photos : {1, 2, 4, 9}) {
                for (const bool centre : {true, false}) {
                    for (const bool fit : {true, false}) {
                        SCOPED_TRACE(testing::Message() << paper.size.width() << " points wide, photo " << photo.width()
                                                        << " x " << photo.height() << ", " << photos << " to a page"
                                                        << (centre ? " centred" : "") << (fit ? " fitted" : ""));
                        const PrintPage page = layOutPage(paper, photo, {photos, centre, fit});
                        const bool turned = page.size != paper.size;
                        EXPECT_TRUE(!turned || page.size == paper.size.transposed());
                        const QMarginsF &m = paper.margins;
                        const QMarginsF margins = turned ? QMarginsF(m.bottom(), m.left(), m.bottom(), m.right()) : m;
                        const QRectF inside = QRectF({}, page.size).marginsRemoved(margins);
                        ASSERT_EQ(page.pieces.size(), photos);
                        for (const auto &[place, part] : page.pieces) {
                            EXPECT_TRUE(inside.adjusted(-0.01, -0.01, 0.01, 0.01).contains(place));
                            EXPECT_NEAR(place.width() * photo.height() / (place.height() * photo.width()), 1, 1e-6);
                            EXPECT_EQ(place.size(), page.pieces.first().place.size());
                            for (const PrintPiece &other : page.pieces) {
                                EXPECT_TRUE(place == other.place || !place.intersects(other.place));
                            }
                        }
                    }
                }
            }
        }
    }
}

TEST(PageLayout, TheSheetTurnsToWherePhotosGetLargest) {
    struct Row {
        QSize photo;
        int photos;
        bool wide; ///< the sheet
    };
    const Row rows[] = {
        {{4000, 3000}, 1, true},  {{3000, 4000}, 1, false}, {{500, 500}, 1, true},    {{4000, 3000}, 2, false},
        {{3000, 4000}, 2, true},  {{4000, 3000}, 4, true},  {{3000, 4000}, 4, false}, {{4000, 3000}, 9, true},
        {{3000, 4000}, 9, false}, {{8000, 400}, 2, true},
    };
    for (const Row &row : rows) {
        for (const PrinterPaper &paper : {a4, letter, card}) {
            const PrintPage page = layOutPage(paper, row.photo, {row.photos});
            EXPECT_EQ(page.size.width() > page.size.height(), row.wide)
                << row.photo.width() << " x " << row.photo.height() << ", " << row.photos << " to a page";
        }
    }
}

TEST(PageLayout, CentreAndFit) {
    const auto only = [](QSize photo, bool centre, bool fit) {
        const PrintPage page = layOutPage(a4, photo, {1, centre, fit});
        return page.pieces.first().place;
    };
    // On a sheet that lies, the margins are 36 left and right and 18 above and below.
    EXPECT_EQ(only({770, 523}, true, true), QRectF(36, 36, 770, 523).translated(0, -0).toRect());
    EXPECT_EQ(only({960, 480}, false, false), QRectF(36, 18, 720, 360)) << "96 pixels are an inch";
    EXPECT_EQ(only({960, 480}, true, false), QRectF(61, 117.5, 720, 360));
    EXPECT_EQ(only({5000, 2500}, false, false), QRectF(36, 18, 770, 385)) << "too large for its own size";
    EXPECT_EQ(only({5000, 2500}, true, true), QRectF(36, 105, 770, 385));
}

TEST(PageLayout, WithoutAPhotoThereIsAnEmptySheet) {
    EXPECT_TRUE(layOutPage(a4, {}, {}).pieces.isEmpty());
    EXPECT_EQ(layOutPage(a4, {}, {}).size.isEmpty(), false);
    EXPECT_EQ(layOutPage(a4, {400, 300}, {7}).pieces.size(), 1) << "there is no page of seven";
}

} // namespace
} // namespace lumora
