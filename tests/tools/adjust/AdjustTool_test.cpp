#include "tools/adjust/AdjustTool.h"
#include "widgets/FloatingToolbar.h"

#include "effects/EffectTable.h"
#include "tools/adjust/AdjustForTest.h"

#include <QLabel>
#include <limits>

namespace lumora {
namespace {

struct AdjustToolTest : test::ColourTools {
    AdjustToolTest() { // as ToolSet does
        QObject::connect(&tool, &AdjustTool::finished, &window, [this] { mouse.setTool(nullptr); });
    }
    QImage adjusted(int marked, int kind, int amount) {
        return expected(marked, operationOf(*findEffect(EffectGroup::Adjustment, kind), false, {amount}, 1));
    }
    void openPanel(int kind) {
        ctx.fields.txtSFX = Switch::On;
        tool.open(effects(EffectGroup::Adjustment)[size_t(kind) - 1].key());
    }
    static const char *slider(int kind) {
        static const char *const names[] = {"sldSFX9_1", "sldSFX9_2", "sldSFX9_3", "sldSFX9_4"};
        return names[kind - 1];
    }

    FloatingToolbar FT6{"FT6", &window};
    AdjustTool tool{ctx, view, mouse, &FT6, &window};
    QSignalSpy arrow{&tool, &AdjustTool::finished};
    QSignalSpy tip{&tool, &AdjustTool::tipWanted};
    QSignalSpy message{&tool, &AdjustTool::message};
};

TEST_F(AdjustToolTest, BasicModeChangesWhatIsMarkedByFiftyAtOnce) {
    openPhoto();
    for (int kind = 1; kind <= 4; ++kind) {
        for (int marked = 0; marked <= 3; ++marked) {
            SCOPED_TRACE(testing::Message() << "kind " << kind << " marked " << marked);
            mark(marked);
            const QImage wanted = adjusted(marked, kind, 50);
            const int steps = ctx.photo.history().undoSteps();
            ctx.photo.setPhotoModified(false);
            tool.open(effects(EffectGroup::Adjustment)[size_t(kind) - 1].key());
            EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), wanted), QPoint(-1, -1));
            EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 1);
            EXPECT_TRUE(ctx.photo.PhotoModified());
            EXPECT_FALSE(ctx.flags.SelectionActive());
            EXPECT_FALSE(ctx.photo.selection().isShown());
            EXPECT_EQ(mouse.tool(), nullptr);
            EXPECT_FALSE(tool.panel()->isOpen());
            ctx.photo.PerformUndo();
            EXPECT_TRUE(photoIs(photo));
        }
    }
    EXPECT_EQ(arrow.count(), 16);
}

TEST_F(AdjustToolTest, AdvancedModeOpensTheSliderOfTheKind) {
    openPhoto();
    const char *const titles[] = {"Brightness", "Contrast", "Saturation"};
    for (int kind = 1; kind <= 3; ++kind) {
        openPanel(kind);
        EXPECT_EQ(control<QLabel>("LN3")->text(), titles[kind - 1]);
        EXPECT_TRUE(shown("picAJP1"));
        EXPECT_FALSE(shown("picAJP2"));
        EXPECT_TRUE(shown("cmdApplyBCS"));
        for (int other = 1; other <= 3; ++other) {
            EXPECT_EQ(shown(slider(other)), other == kind);
        }
        EXPECT_EQ(tool.AdjustKind, kind);
        EXPECT_TRUE(tool.AdjustPanelShown());
        EXPECT_TRUE(photoIs(photo));
        slide(slider(kind), 33); // the next kind begins in the middle
    }
    openPanel(3);
    EXPECT_EQ(control<QSlider>(slider(3))->value(), 0);
}

TEST_F(AdjustToolTest, TheSliderShowsOnThePhotoAndApplyMakesIt) {
    openPhoto();
    const struct {
        int kind, marked, amount;
    } cases[] = {{1, 0, 40}, {1, 1, -60}, {2, 2, 70}, {3, 3, -100}, {3, 0, 100}, {2, 3, -35}, {4, 0, 100}, {4, 2, 30}};
    for (const auto &[kind, marked, amount] : cases) {
        SCOPED_TRACE(testing::Message() << "kind " << kind << " marked " << marked);
        mark(marked);
        const QImage wanted = adjusted(marked, kind, amount);
        openPanel(kind);
        PhotoSelection invisible = ctx.photo.selection(); // its outline would be in the way
        invisible.setVisible(false);
        ctx.photo.setSelection(invisible);
        slide(slider(kind), amount);
        EXPECT_TRUE(comesToLookLike(wanted));
        EXPECT_TRUE(photoIs(photo));
        press("cmdApplyBCS");
        EXPECT_TRUE(photoIs(wanted));
        EXPECT_TRUE(looksLike(wanted));
        EXPECT_FALSE(tool.livePreview().isShown());
        EXPECT_EQ(control<QSlider>(slider(kind))->value(), 0);
        EXPECT_TRUE(tool.panel()->isOpen());
        ctx.photo.PerformUndo();
        EXPECT_TRUE(photoIs(photo));
    }
}

TEST_F(AdjustToolTest, BetterIsShownAtOnceWithTheBeforeBesideIt) {
    openPhoto();
    openPanel(4);
    const QImage wanted = adjusted(0, 4, 50);
    EXPECT_EQ(control<QLabel>("LN3")->text(), "Make Better");
    EXPECT_EQ(control<QSlider>(slider(4))->value(), 50);
    EXPECT_EQ(control<QSlider>(slider(4))->minimum(), 0);
    EXPECT_TRUE(shown("picAJP2"));
    EXPECT_TRUE(comesToLookLike(wanted));
    EXPECT_TRUE(photoIs(photo));
    for (const char *const name : {"picAJP1", "picAJP2"}) {
        auto *picture = control<PictureButton>(name);
        QTest::mousePress(picture, Qt::LeftButton);
        EXPECT_TRUE(comesToLookLike(photo)) << name;
        QTest::mouseRelease(picture, Qt::LeftButton);
        EXPECT_TRUE(comesToLookLike(wanted)) << name;
    }
    press("cmdApplyBCS");
    EXPECT_TRUE(photoIs(wanted));
    EXPECT_TRUE(comesToLookLike(wanted)); // what has been applied is not shown once more
    press("cmdApplyBCS");
    EXPECT_EQ(ctx.photo.history().undoSteps(), 1);
    ctx.photo.PerformUndo();
    EXPECT_TRUE(photoIs(photo));
    openPanel(1);
    EXPECT_FALSE(shown("picAJP2"));
    openPanel(4);
    slide(slider(4), 80);
    QTest::mouseDClick(control<QSlider>(slider(4)), Qt::LeftButton);
    EXPECT_EQ(control<QSlider>(slider(4))->value(), 50);
}

TEST_F(AdjustToolTest, HoldingTheSmallPictureShowsThePhotoAsItIs) {
    openPhoto();
    openPanel(1);
    slide(slider(1), 80);
    const QImage wanted = adjusted(0, 1, 80);
    EXPECT_TRUE(comesToLookLike(wanted));
    auto *picture = control<PictureButton>("picAJP1");
    const QImage after = picture->picture().toImage();
    QTest::mousePress(picture, Qt::LeftButton);
    EXPECT_TRUE(comesToLookLike(photo));
    EXPECT_EQ(picture->picture().toImage(), control<PictureButton>("picAJP2")->picture().toImage());
    QTest::mouseRelease(picture, Qt::LeftButton);
    EXPECT_TRUE(comesToLookLike(wanted));
    EXPECT_EQ(picture->picture().toImage(), after);
    EXPECT_NE(after, control<PictureButton>("picAJP2")->picture().toImage());
}

TEST_F(AdjustToolTest, WhatCannotBeDoneLeavesThePhoto) {
    tool.open("keyBrightness"); // no photo
    openPanel(2);
    tool.CreateBCSSFX();
    press("cmdApplyBCS");
    EXPECT_FALSE(tool.panel()->isOpen());
    EXPECT_EQ(tool.AdjustKind, 0);
    openPhoto();
    press("cmdApplyBCS"); // no kind
    ctx.fields.txtSFX = Switch::Off;
    tool.open("keyHue");
    EXPECT_EQ(message.count(), 0);
    ctx.fields.txtSFX = Switch::Other;
    tool.open("keyBrightness"); // says which setting is odd
    EXPECT_EQ(message.count(), 1);
    message.clear();
    for (const int kind : {0, 5, -1}) {
        EXPECT_EQ(tool.ApplyBasicBCS(kind), EffectOutcome::Nothing);
        EXPECT_EQ(tool.ApplyBCS(kind), EffectOutcome::Nothing);
    }
    openPanel(1);
    press("cmdApplyBCS"); // the slider is in the middle
    EXPECT_EQ(message.count(), 1);
    EXPECT_EQ(tip.count(), 0);
    constexpr int most = std::numeric_limits<int>::max();
    for (const QRect &box : {QRect(), QRect(QPoint(most - 5, 3), QPoint(most, 12)), QRect(400, 0, 10, 10)}) {
        mark(1);
        PhotoSelection marked;
        marked.markRectangle(box);
        ctx.photo.setSelection(marked);
        ctx.fields.txtSFX = Switch::Off;
        tool.open("keyContrast");
        EXPECT_EQ(mouse.tool(), &selection); // a selection can be made now
        EXPECT_TRUE(ctx.flags.SelectionActive());
    }
    EXPECT_EQ(tip.count(), 3);
    EXPECT_EQ(arrow.count(), 0);
    EXPECT_TRUE(photoIs(photo));
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
}

TEST_F(AdjustToolTest, ASelectionCanBeMadeAgainWhileThePanelIsOpen) {
    openPhoto();
    mark(1);
    openPanel(1);
    slide(slider(1), 90);
    ASSERT_EQ(mouse.tool(), &selection);
    const QPoint from = viewAt(200, 100);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
    moveTo(viewAt(300, 180));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, viewAt(300, 180));
    ASSERT_EQ(ctx.photo.selection().box(), QRect(200, 100, 100, 80));
    const QImage wanted = adjusted(1, 1, 90);
    press("cmdApplyBCS");
    EXPECT_TRUE(photoIs(wanted));
}

TEST_F(AdjustToolTest, EveryWayOutLeavesNothingBehind) {
    openPhoto();
    const struct {
        const char *name;
        std::function<void()> way;
        int arrows;
    } cases[] = {{"close", [this] { tool.close(); }, 0},
                 {"exit button", [this] { press("cmdExitPnlColmgr"); }, 1},
                 {"Esc", [this] { QTest::keyClick(tool.panel(), Qt::Key_Escape); }, 1}};
    for (const auto &[name, way, arrows] : cases) {
        SCOPED_TRACE(name);
        openPanel(2);
        slide(slider(2), -80);
        EXPECT_TRUE(comesToLookLike(adjusted(0, 2, -80)));
        arrow.clear();
        way();
        EXPECT_EQ(arrow.count(), arrows);
        EXPECT_FALSE(tool.panel()->isVisible());
        EXPECT_FALSE(tool.AdjustPanelShown());
        EXPECT_FALSE(tool.livePreview().isShown());
        EXPECT_TRUE(looksLike(photo));
        slide(slider(2), 20); // a closed panel changes nothing
        EXPECT_FALSE(tool.livePreview().isShown());
        tool.close();
    }
    EXPECT_TRUE(photoIs(photo));
}

TEST_F(AdjustToolTest, AnotherPhotoResetsTheSlider) {
    openPhoto();
    openPanel(1);
    slide(slider(1), 50);
    press("cmdApplyBCS");
    slide(slider(1), 50);
    ctx.photo.PerformUndo();
    EXPECT_EQ(control<QSlider>(slider(1))->value(), 0);
    EXPECT_TRUE(comesToLookLike(photo));
    EXPECT_EQ(control<PictureButton>("picAJP1")->picture().toImage(),
              control<PictureButton>("picAJP2")->picture().toImage());
}

TEST_F(AdjustToolTest, EveryItemHasItsPicture) {
    openPhoto();
    for (const Effect &adjustment : effects(EffectGroup::Adjustment)) {
        FT6.addItem(adjustment.key(), "tool9");
    }
    tool.makeSmallPictures();
    QList<QImage> pictures;
    for (const Effect &adjustment : effects(EffectGroup::Adjustment)) {
        const QImage picture = FT6.item(adjustment.key())->picture().toImage();
        EXPECT_FALSE(picture.isNull());
        EXPECT_FALSE(pictures.contains(picture));
        pictures << picture;
    }
}

} // namespace
} // namespace lumora
