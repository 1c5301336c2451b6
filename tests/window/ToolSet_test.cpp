// Every row of the tool table: pressed, used with the mouse, and ended in every possible way, with settings
// panels and without. Each row is known by its panel and by what it does to the photo, so that no two can be exchanged.
#include "window/ToolSet.h"

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "window/FloatingBarSet.h"
#include "window/FloatingBars.h"
#include "window/ToolColumn.h"
#include "window/ToolTable.h"

#include <QBoxLayout>
#include <QSlider>
#include <set>

namespace lumora {
namespace {

constexpr QSize photoSize(320, 200);

/// What one item of one tool is and does.
struct Work {
    const char *control;
    const char *key;   ///< of the item in its floating bar; empty without a bar
    bool advanced;     ///< txtSFX, txtResizeMode and txtAndyStyle
    const char *panel; ///< that slides up; empty when it acts at once or works on the photo alone
    const char *shown; ///< a control that this tool alone shows
    bool excludesOthers;
    std::vector<QPoint> drag; ///< in picture pixels, before the button below
    const char *apply;        ///< the button that makes the change
    bool (*done)(const QImage &before, const AppContext &ctx);
};

bool pixels(const QImage &before, const AppContext &ctx) {
    return ctx.photo.picCanvas().size() == before.size() && ctx.photo.picCanvas() != before;
}
bool smaller(const QImage &before, const AppContext &ctx) {
    return ctx.photo.picCanvas() == before.copy(ctx.photo.picCanvas().rect().translated(150, 120)) &&
           ctx.photo.picCanvas().width() == 160;
}
bool seeThrough(const QImage &, const AppContext &ctx) {
    return ctx.photo.picCanvas().hasAlphaChannel() && ctx.photo.picCanvas().size() == QSize(60, 60);
}
bool clockwise(const QImage &before, const AppContext &ctx) {
    return ctx.photo.picCanvas() == before.transformed(QTransform().rotate(90));
}
bool larger(const QImage &before, const AppContext &ctx) {
    const QSize size = ctx.photo.picCanvas().size();
    return size.width() > before.width() && size.height() > before.height();
}
bool preset(const QImage &, const AppContext &ctx) {
    return ctx.photo.picCanvas().size() == QSize(640, 480);
}
bool row(const QImage &before, const AppContext &ctx) {
    const QSize size = ctx.photo.picCanvas().size();
    return size.width() == 4 * (before.width() / 2) && size.height() == before.height() / 2;
}
bool marked(const QImage &before, const AppContext &ctx) {
    return ctx.photo.picCanvas() == before && ctx.photo.selection().shape() == PhotoSelection::Shape::Lasso;
}

const std::vector<QPoint> triangle = {{20, 20}, {80, 20}, {20, 80}};

const Work works[] = {
    {"cmdTool2", "keyLasso", false, "", "", false, triangle, "", marked},
    {"cmdTool3", "", false, "pnlCrop", "cmdCropNow", true, {{150, 140}, {200, 160}}, "cmdCropNow", smaller},
    {"cmdTool4", "", false, "pnlResize", "cmdApplyResize", false, {}, "optSize1 cmdApplyResize", preset},
    {"cmdTool4", "", true, "", "cmdResizeDone", true, {{320, 200}, {360, 240}}, "", larger},
    {"cmdTool5", "keyRotate3", false, "", "", false, {}, "", clockwise},
    {"cmdTool5", "keyRotate4", false, "", "cmdRotateDone", true, {{260, 100}, {220, 170}}, "", larger},
    {"cmdTool6", "", false, "pnlRedEye", "sldRD", false, {{100, 100}}, "", pixels},
    {"cmdTool7", "keyFrame3", false, "", "", false, {}, "", pixels},
    {"cmdTool8", "keySepia", false, "", "", false, {}, "", pixels},
    {"cmdTool9", "keyContrast", false, "", "", false, {}, "", pixels},
    {"cmdTool9", "keyContrast", true, "pnlColmgr", "sldSFX9_2", false, {}, "sldSFX9_2 cmdApplyBCS", pixels},
    {"cmdTool10", "keySFX1", false, "", "", false, {}, "", pixels},
    {"cmdTool10", "keySFX4", true, "panelSFX", "sldSFX4_1", false, {}, "cmdApplySFXNow", pixels},
    {"cmdTool11", "", false, "pnlColourFocus", "cmdApplyCMNow", false, {{50, 50}}, "cmdApplyCMNow", pixels},
    {"cmdCropCut", "", false, "pnlCrop", "cmdCropCutNow", true, triangle, "cmdCropCutNow", seeThrough},
    {"popArt", "", false, "", "", false, {}, "", row},
    {"popArt", "", true, "pnlAndy", "cmdApplyPopArt", false, {}, "cmdApplyPopArt", row},
};

struct Tools : testing::Test {
    Tools() {
        window.setObjectName("frmMain");
        window.resize(1000, 700);
        auto *across = new QHBoxLayout(&window);
        across->addWidget(&column);
        across->addWidget(&view, 1);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        tools.setArea(view.geometry());
    }
    ~Tools() override { tools.ResetTools(); }

    void openPhoto() {
        for (const ToolRow &each : toolTable()) {
            const PictureButton *button = column.button(each.control);
            EXPECT_TRUE(button == nullptr || ctx.photo.PhotoLoaded() || button->isEnabled() == (each.make == nullptr))
                << each.control << " has nothing to work on";
        }
        ctx.photo.openPicture({.picture = photo, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        ctx.photo.setZoom(100);
        QCoreApplication::processEvents();
    }
    template <typename Control> Control *control(const QString &name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    /// As the user does: the column's button and the bar's item.
    void start(const Work &work) {
        ctx.fields.txtSFX = ctx.fields.txtAndyStyle = work.advanced ? Switch::On : Switch::Off;
        ctx.fields.txtResizeMode = work.advanced;
        PictureButton *button = column.button(work.control);
        if (button == nullptr) {
            tools.press(work.control);
            return;
        }
        ASSERT_TRUE(button->isEnabled()) << work.control;
        button->click();
        if (*work.key != '\0') {
            ASSERT_TRUE(bars.barOfTool(work.control)->isVisible());
            bars.barOfTool(work.control)->item(work.key)->click();
        }
    }
    void dragAndApply(const Work &work) {
        const auto at = [&](QPoint picture) { return view.toView(picture).toPoint(); };
        if (!work.drag.empty()) {
            QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(work.drag.front()));
            for (const QPoint point : work.drag) {
                QTest::mouseMove(view.viewport(), at(point));
            }
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(work.drag.back()));
        }
        for (const QString &name : QString(work.apply).split(' ', Qt::SkipEmptyParts)) {
            if (auto *slider = window.findChild<QSlider *>(name)) {
                slider->setValue(40);
            } else {
                control<QAbstractButton>(name)->click();
            }
        }
    }
    bool actsAtOnce(const Work &work) const { return *work.panel == '\0' && work.drag.empty(); }
    /// Nothing of any tool is left, and every button can be pressed; without a photo the Arrow's.
    void expectArrow() {
        EXPECT_EQ(tools.current(), "cmdTool1");
        EXPECT_EQ(tools.openPanel(), nullptr);
        EXPECT_FALSE(ctx.flags.SelectionActive());
        EXPECT_TRUE(ctx.photo.selection().isEmpty());
        EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
        EXPECT_FALSE(bars.isAnyOpen());
        for (const ToolRow &each : toolTable()) {
            if (const PictureButton *button = column.button(each.control)) {
                EXPECT_EQ(button->isEnabled(), ctx.photo.PhotoLoaded() || each.make == nullptr) << each.control;
                EXPECT_EQ(button->isChecked(), each.make == nullptr) << each.control;
            }
        }
    }
    void expectAtWork(const Work &work) {
        EXPECT_EQ(tools.current(), work.control);
        if (*work.panel != '\0') {
            ASSERT_NE(tools.openPanel(), nullptr);
            EXPECT_EQ(tools.openPanel()->objectName(), work.panel);
        } else {
            EXPECT_EQ(tools.openPanel(), nullptr);
        }
        if (*work.shown != '\0') {
            EXPECT_TRUE(control<QWidget>(work.shown)->isVisible()) << work.shown;
        }
        for (const ToolRow &each : toolTable()) {
            const PictureButton *button = column.button(each.control);
            if (button != nullptr) {
                const bool own = QString(each.control) == work.control;
                const bool usable =
                    each.make == nullptr || !work.excludesOthers || (own && bars.barOfTool(each.control) == nullptr);
                EXPECT_EQ(button->isEnabled(), usable) << each.control;
                EXPECT_EQ(button->isChecked(), own) << each.control;
            }
        }
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    const QImage photo = test::photoLike(photoSize.width(), photoSize.height());
    QWidget window;
    PhotoView view{ctx.photo};
    ToolColumn column;
    FloatingBarSet bars{&window};
    ToolSet tools{ctx, view, column, bars, &window};
};

TEST_F(Tools, EveryRowAndBarIsTested) {
    std::set<std::string> inTable, inWorks;
    for (const ToolRow &each : toolTable()) {
        if (each.make != nullptr) {
            inTable.insert(each.control);
        }
    }
    for (const Work &work : works) {
        inWorks.insert(work.control);
    }
    EXPECT_EQ(inTable, inWorks);
    for (const FloatingBarRow &bar : floatingBars()) {
        EXPECT_TRUE(inTable.contains(bar.tool)) << bar.bar;
    }
}

TEST_F(Tools, NothingHappensWithoutAPhoto) {
    for (const Work &work : works) {
        tools.press(work.control);
        expectArrow();
        tools.pick(work.control, work.key);
        expectArrow();
    }
}

TEST_F(Tools, EachDoesItsOwnWorkAsOneStep) {
    for (const bool simple : {false, true}) {
        ctx.flags.SimpleModeOn = simple;
        for (const Work &work : works) {
            SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << work.advanced);
            openPhoto();
            const int steps = ctx.photo.history().undoSteps();
            start(work);
            if (!actsAtOnce(work)) {
                expectAtWork(work);
                EXPECT_EQ(ctx.photo.picCanvas(), photo);
                dragAndApply(work);
            }
            EXPECT_TRUE(work.done(photo, ctx));
            const bool changes = ctx.photo.picCanvas() != photo;
            EXPECT_EQ(ctx.photo.history().undoSteps(), steps + (changes ? 1 : 0));
            EXPECT_EQ(ctx.photo.PhotoModified(), changes);
            tools.ResetTools();
            expectArrow();
        }
    }
}

TEST_F(Tools, EveryWayOutLeavesNothingBehind) {
    const struct {
        const char *what;
        bool (*leave)(Tools &test); ///< false where there is no such way
    } ways[] = {
        {"the arrow's button", [](Tools &t) { return t.column.button("cmdTool1")->click(), true; }},
        {"the panel's close button",
         [](Tools &t) {
             SlidingPanel *panel = t.tools.openPanel();
             return panel != nullptr && (panel->closeButton()->click(), true);
         }},
        {"Esc in the panel",
         [](Tools &t) {
             SlidingPanel *panel = t.tools.openPanel();
             return panel != nullptr && (QTest::keyClick(panel, Qt::Key_Escape), true);
         }},
        {"Esc", [](Tools &t) { return t.tools.escape(), true; }},
        {"the done button",
         [](Tools &t) {
             for (const char *name : {"cmdResizeDone", "cmdRotateDone"}) {
                 if (auto *done = t.window.findChild<QAbstractButton *>(name); done->isVisible()) {
                     return done->click(), true;
                 }
             }
             return false;
         }},
        {"closing boxes", [](Tools &t) { return t.tools.openPanel() != nullptr && (t.tools.HideBoxes(), true); }},
    };
    for (const auto &way : ways) {
        for (const Work &work : works) {
            SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << way.what);
            openPhoto();
            start(work);
            if (actsAtOnce(work)) {
                continue;
            }
            if (way.leave(*this)) {
                expectArrow();
                EXPECT_EQ(ctx.photo.picCanvas(), photo);
                EXPECT_FALSE(ctx.photo.PhotoModified());
            }
            tools.ResetTools();
        }
    }
}

/// A selection can be marked for a panel that changes what is marked; every other tool ends the one before.
TEST_F(Tools, OneFollowsAnother) {
    for (const Work &first : works) {
        for (const Work &second : works) {
            if (actsAtOnce(first) || first.excludesOthers || actsAtOnce(second)) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << first.control << ' ' << first.key << " then " << second.control << ' '
                                            << second.key << ' ' << second.advanced);
            openPhoto();
            start(first);
            start(second);
            const bool stays = QString(second.control) == "cmdTool2" &&
                               (QString(first.panel) == "panelSFX" || QString(first.panel) == "pnlColmgr");
            if (stays) {
                EXPECT_EQ(tools.current(), "cmdTool2");
                ASSERT_NE(tools.openPanel(), nullptr);
                EXPECT_EQ(tools.openPanel()->objectName(), first.panel);
                dragAndApply(second);
                dragAndApply(first);
                const QImage after = ctx.photo.picCanvas();
                EXPECT_NE(after.pixel(25, 25), photo.pixel(25, 25));
                EXPECT_EQ(after.copy(100, 0, 220, 200), photo.copy(100, 0, 220, 200));
            } else {
                expectAtWork(second);
            }
            tools.ResetTools();
        }
    }
}

/// An effect without a selection changes nothing, reports it, and lets the user select.
TEST_F(Tools, ASelectionThatMarksNothingIsAskedFor) {
    for (const auto &[control, key] :
         {std::pair("cmdTool8", "keySepia"), std::pair("cmdTool9", "keyContrast"), std::pair("cmdTool10", "keySFX1")}) {
        SCOPED_TRACE(control);
        openPhoto();
        ctx.fields.txtSFX = Switch::Off;
        tools.pick("cmdTool2", "keySqr");
        tools.pick(control, key);
        EXPECT_EQ(ctx.photo.picCanvas(), photo);
        EXPECT_EQ(tools.current(), "cmdTool2");
        EXPECT_TRUE(this->control<QWidget>("picTip")->isVisible());
        tools.ResetTools();
        EXPECT_FALSE(this->control<QWidget>("picTip")->isVisible());
    }
}

TEST_F(Tools, BarsOpenAndCloseBesideTheirButtons) {
    openPhoto();
    for (const FloatingBarRow &row : floatingBars()) {
        SCOPED_TRACE(row.bar);
        PictureButton *button = column.button(row.tool);
        button->click();
        EXPECT_TRUE(bars.bar(row.bar)->isVisible());
        EXPECT_TRUE(button->isChecked());
        button->click();
        EXPECT_FALSE(bars.isAnyOpen());
        button->click();
        tools.escape();
        expectArrow();
    }
}

TEST_F(Tools, HoldingThePanelsButtonOrItsKeyShowsThePhotoBefore) {
    QSet<QString> compared;
    for (const Work &work : works) {
        openPhoto();
        QCoreApplication::processEvents();
        const QImage before = view.viewport()->grab().toImage();
        start(work);
        SlidingPanel *panel = tools.openPanel();
        if (panel == nullptr || panel->compareButton() == nullptr) {
            tools.ResetTools();
            continue;
        }
        SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !panel->isSliding(); }));
        compared.insert(panel->objectName());
        ASSERT_TRUE(ctx.photo.changePhoto(test::photoLike(photoSize.width(), photoSize.height(), true)));
        const auto likeBefore = [&] { return view.viewport()->grab().toImage() == before; };
        EXPECT_FALSE(likeBefore());
        QTest::mousePress(panel->compareButton(), Qt::LeftButton);
        EXPECT_TRUE(likeBefore());
        QTest::mouseRelease(panel->compareButton(), Qt::LeftButton);
        EXPECT_FALSE(likeBefore());
        QTest::keyPress(&window, Qt::Key_B);
        EXPECT_TRUE(likeBefore());
        QTest::keyRelease(&window, Qt::Key_B);
        EXPECT_FALSE(likeBefore());
        QTest::keyPress(&window, Qt::Key_B); // still held when the panel goes
        tools.ResetTools();
        EXPECT_FALSE(likeBefore());
    }
    EXPECT_EQ(compared, QSet<QString>({"panelSFX", "pnlColmgr", "pnlRedEye", "pnlColourFocus"}));
}

TEST_F(Tools, SmallPicturesFollowThePhoto) {
    openPhoto();
    const auto pictured = [this] {
        for (const FloatingItemRow &item : floatingItems()) {
            const bool live = QString(item.bar) != "FT1" && QString(item.key) != "keyRotate4";
            if (live && bars.bar(item.bar)->item(item.key)->picture().isNull()) {
                return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(QTest::qWaitFor(pictured, 60'000));
}

} // namespace
} // namespace lumora
