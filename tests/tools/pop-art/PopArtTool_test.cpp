#include "tools/pop-art/PopArtTool.h"

#include "tools/adjust/AdjustForTest.h"
#include "tools/pop-art/PopArtPalette.h"
#include "tools/pop-art/PopArtPanel.h"

#include <QLabel>
#include <QRandomGenerator>
#include <set>

namespace lumora {
namespace {

struct PopArtToolTest : test::ColourTools {
    QImage row(const PopArtPairs &pairs) { return popArtRow(photo, pairs); }
    void openPanel() {
        ctx.fields.txtAndyStyle = Switch::On;
        tool.open();
    }
    void pickColour(const char *key) {
        for (auto *button : control<PopArtPalette>("popArtPalette")->findChildren<PictureButton *>()) {
            if (button->property("key") == QLatin1StringView(key)) {
                button->click();
                return;
            }
        }
        ADD_FAILURE() << key;
    }
    QImage print(int number) {
        return control<QLabel>(qPrintable(QStringLiteral("picAndy%1").arg(number)))->pixmap().toImage();
    }
    /// The colour in the middle of the row's print on the table.
    QColor onTable(int number) {
        const QSize size = view.viewport()->size();
        return seen().pixelColor(QPoint(size.width() * (2 * number - 1) / 8, size.height() / 2) *
                                 view.devicePixelRatioF());
    }

    PopArtTool tool{ctx, view, mouse, &window};
    QSignalSpy arrow{&tool, &PopArtTool::finished};
    QSignalSpy message{&tool, &PopArtTool::message};
    QSignalSpy fit{&tool, &PopArtTool::fitWanted};
};

TEST_F(PopArtToolTest, theSettingMakesTheRowAtOnceOrOpensThePanel) {
    for (const bool simple : {false, true}) {
        ctx.flags.SimpleModeOn = simple;
        ctx.fields.txtAndyStyle = Switch::Off;
        openPhoto();
        const int steps = ctx.photo.history().undoSteps();
        tool.open();
        EXPECT_FALSE(tool.panel()->isOpen());
        EXPECT_TRUE(photoIs(row(usualPopArtPairs())));
        EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 1);
        EXPECT_TRUE(ctx.photo.PhotoModified());
        ctx.photo.PerformUndo();
        EXPECT_TRUE(photoIs(photo));
        openPanel();
        EXPECT_TRUE(tool.panel()->isOpen());
        EXPECT_TRUE(photoIs(photo));
        tool.close();
    }
}

TEST_F(PopArtToolTest, withoutAPhotoNothingHappens) {
    for (const Switch level : {Switch::Off, Switch::On, Switch::Other}) {
        ctx.fields.txtAndyStyle = level;
        tool.open();
        EXPECT_FALSE(tool.panel()->isOpen());
        EXPECT_FALSE(ctx.photo.PhotoLoaded());
        EXPECT_EQ(message.count() + arrow.count(), 0);
    }
}

TEST_F(PopArtToolTest, chosenColoursArriveInThePicture) {
    openPhoto();
    mark(1); // the row is of the whole photo all the same
    openPanel();
    EXPECT_TRUE(ctx.photo.selection().isEmpty());
    PopArtPairs wanted = usualPopArtPairs();
    const QImage first = print(1);
    pickColour("black"); // the first swatch is the chosen one
    wanted[0].dark = 0x1C1A2B;
    EXPECT_NE(print(1), first);
    const QImage third = print(3);
    press("cmdPopArtLight3");
    pickColour("lime");
    wanted[2].light = 0xB9EA3A;
    EXPECT_NE(print(3), third);
    EXPECT_TRUE(control<QWidget>("cmdPopArtLight3")->accessibleName().contains(ctx.texts.text("PopArtLime")));
    EXPECT_TRUE(photoIs(photo));
    const int steps = ctx.photo.history().undoSteps();
    press("cmdApplyPopArt");
    EXPECT_TRUE(photoIs(row(wanted)));
    EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 1);
    EXPECT_FALSE(tool.panel()->isOpen());
    EXPECT_EQ(fit.count(), 1);
    ASSERT_EQ(message.count(), 1);
    EXPECT_TRUE(message[0][1].toBool());
    ctx.photo.PerformUndo();
    openPanel();
    press("cmdApplyPopArt");
    EXPECT_TRUE(photoIs(row(usualPopArtPairs()))); // every start uses the defaults
}

TEST_F(PopArtToolTest, theTableShowsTheRowOfThePhotoAsItIs) {
    open(photo);
    openPanel();
    for (const bool dark : {true, false}) { // the photo changes as by undo and redo
        QImage plain(320, 200, QImage::Format_RGB32);
        plain.fill(dark ? Qt::black : QColor(120, 120, 120));
        ctx.photo.changePhoto(plain);
        for (int number = 1; number <= 4; ++number) {
            const PopArtColours pair = usualPopArtPairs().at(std::size_t(number - 1));
            const QColor colour = QColor::fromRgb(dark ? pair.dark : pair.light);
            EXPECT_TRUE(QTest::qWaitFor([&] { return onTable(number) == colour; })) << number;
        }
    }
    ctx.photo.changePhoto(photo);
    tool.close();
    EXPECT_TRUE(comesToLookLike(photo));
}

TEST_F(PopArtToolTest, escapeAndTheExitButtonLeaveThePhoto) {
    openPhoto();
    const int steps = ctx.photo.history().undoSteps();
    for (const bool byKey : {true, false}) {
        openPanel();
        press("cmdPopArtSurprise");
        view.setFocus();
        const auto ended = arrow.count();
        if (byKey) {
            QTest::keyClick(&view, Qt::Key_Escape);
        } else {
            press("cmdExitPnlAndy");
        }
        EXPECT_FALSE(tool.panel()->isOpen());
        EXPECT_EQ(arrow.count(), ended + 1);
        EXPECT_EQ(mouse.tool(), nullptr);
        EXPECT_TRUE(photoIs(photo));
        EXPECT_TRUE(comesToLookLike(photo));
    }
    EXPECT_EQ(ctx.photo.history().undoSteps(), steps);
    EXPECT_FALSE(ctx.photo.PhotoModified());
}

TEST_F(PopArtToolTest, surprisesAreFourDifferentPairs) {
    std::set<std::uint32_t> dark;
    std::set<std::uint32_t> light;
    for (const PopArtColour &colour : popArtColours()) {
        (colour.dark ? dark : light).insert(colour.rgb);
    }
    QRandomGenerator random(7);
    for (int i = 0; i < 50; ++i) {
        std::set<std::uint32_t> used;
        for (const PopArtColours &pair : surprisePopArtPairs(random)) {
            EXPECT_TRUE(dark.contains(pair.dark) && light.contains(pair.light));
            used.insert({pair.dark, pair.light});
        }
        EXPECT_EQ(used.size(), 8U);
    }
    openPhoto();
    openPanel();
    const auto *panel = static_cast<PopArtPanel *>(tool.panel());
    const PopArtPairs before = panel->pairs();
    press("cmdPopArtSurprise");
    EXPECT_NE(panel->pairs(), before);
    const PopArtPairs shown = panel->pairs();
    press("cmdApplyPopArt");
    EXPECT_TRUE(photoIs(row(shown)));
}

} // namespace
} // namespace lumora
