// Every row of the tool table: pressed, used with the mouse, and ended in every possible way, with settings
// panels and without: what the column shows is always whose the mouse is. Each row is known by its panel and by what it
// does to the photo, so that no two can be exchanged.
#include "window/ToolSet.h"

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/Theme.h"
#include "window/FloatingBarSet.h"
#include "window/FloatingBars.h"
#include "window/HintBubble.h"
#include "window/ToolColumn.h"
#include "window/ToolTable.h"

#include <QBoxLayout>
#include <QSlider>
#include <map>
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
    const char *first = ""; ///< buttons that are pressed before the drag
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
    {"cmdTool4", "", true, "", "cmdToolDone", true, {{320, 200}, {360, 240}}, "", larger},
    {"cmdTool5", "keyRotate3", false, "", "", false, {}, "", clockwise},
    {"cmdTool5", "keyRotate4", false, "", "pnlRotate", true, {{260, 100}, {220, 170}}, "", larger},
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
    {"stickers",
     "",
     false,
     "pnlStickers",
     "cmdStickersFaces",
     true,
     {{100, 100}},
     "cmdToolDone",
     pixels,
     "cmdStickersFaces cmdSticker_happy"},
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
        for (const QString &name : QString(work.first).split(' ', Qt::SkipEmptyParts)) {
            control<QAbstractButton>(name)->click();
        }
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
    void dragOnPhoto() {
        const auto at = [&](QPoint picture) { return view.toView(picture).toPoint(); };
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at({60, 60}));
        QTest::mouseMove(view.viewport(), at({120, 80}));
        QTest::mouseMove(view.viewport(), at({150, 130}));
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at({150, 130}));
    }
    /// To the photo, or to what its tool makes of it.
    std::string whatADragDoes() {
        const QImage before = ctx.photo.picCanvas();
        ctx.photo.setPhotoModified(false);
        tools.HideFloatingToolbars(); // as a press on the photo does
        auto *colour = window.findChild<QWidget *>("picChosenColour");
        const QImage colourBefore = colour->grab().toImage();
        dragOnPhoto();
        const auto *crop = window.findChild<QAbstractButton *>("cmdCropNow");
        std::string does;
        does += ctx.photo.picCanvas().size() != before.size() ? "resizes " : "";
        does += ctx.photo.picCanvas() != before ? "changes " : "";
        does += ctx.photo.selection().isEmpty() ? "" : "marks ";
        does += crop->isVisible() && crop->isEnabled() ? "frames " : "";
        does += ctx.photo.PhotoModified() ? "touches " : "";
        does += colour->isVisible() && colour->grab().toImage() != colourBefore ? "picks " : "";
        return does.empty() ? "nothing" : does;
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

/// A way out of a tool.
struct WayOut {
    const char *what;
    bool (*go)(Tools &test, const Work &work); ///< false where there is no such way
};

const WayOut waysOut[] = {
    {"the arrow's button", [](Tools &t, const Work &) { return t.column.button("cmdTool1")->click(), true; }},
    {"the panel's close button",
     [](Tools &t, const Work &) {
         SlidingPanel *panel = t.tools.openPanel();
         return panel != nullptr && (panel->closeButton()->click(), true);
     }},
    {"Esc in the panel",
     [](Tools &t, const Work &) {
         SlidingPanel *panel = t.tools.openPanel();
         return panel != nullptr && (QTest::keyClick(panel, Qt::Key_Escape), true);
     }},
    {"Esc", [](Tools &t, const Work &) { return t.tools.escape(), true; }},
    {"the done button",
     [](Tools &t, const Work &) {
         // Crop and cut-out are not done before something is marked.
         auto *done = t.window.findChild<QAbstractButton *>("cmdToolDone");
         return done->isVisible() && t.tools.openPanel() == nullptr && (done->click(), true);
     }},
    {"the back button",
     [](Tools &t, const Work &) {
         auto *back = t.window.findChild<QAbstractButton *>("cmdToolBack");
         return back->isVisible() && (back->click(), true);
     }},
    {"closing boxes",
     [](Tools &t, const Work &) { return t.tools.openPanel() != nullptr && (t.tools.HideBoxes(), true); }},
};

/// What else may happen while a tool is at work; what is current afterwards may be another tool.
const WayOut happenings[] = {
    {"nothing", [](Tools &, const Work &) { return true; }},
    {"applying", [](Tools &t, const Work &work) { return t.dragAndApply(work), true; }},
    {"applying what is marked in its panel",
     [](Tools &t, const Work &work) {
         if (!t.column.button("cmdTool2")->isEnabled()) {
             return false;
         }
         t.tools.pick("cmdTool2", "keySqr");
         t.dragOnPhoto();
         return t.tools.openPanel() != nullptr && (t.dragAndApply(work), true);
     }},
    {"undo", [](Tools &t, const Work &work) { return t.dragAndApply(work), t.ctx.photo.PerformUndo(); }},
    {"another photo", [](Tools &t, const Work &) { return t.openPhoto(), true; }},
    {"another photo of another size",
     [](Tools &t, const Work &) {
         const QImage other = test::photoLike(260, 190);
         return t.ctx.photo.openPicture({.picture = other, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto) ==
                PictureError::None;
     }},
    {"pasting",
     [](Tools &t, const Work &) {
         return t.ctx.photo.pastePicture({.picture = t.photo, .reason = {}}) == PictureError::None;
     }},
    {"the other mode",
     [](Tools &t, const Work &work) {
         t.ctx.flags.SimpleModeOn = !t.ctx.flags.SimpleModeOn;
         t.ctx.fields.txtSFX = t.ctx.fields.txtAndyStyle = work.advanced ? Switch::Off : Switch::On;
         return t.dragAndApply(work), true;
     }},
    {"a bar, and Esc in it",
     [](Tools &t, const Work &) {
         FloatingToolbar *bar = t.bars.barOfTool("cmdTool8");
         t.column.button("cmdTool8")->click();
         return bar->isVisible() && (QTest::keyClick(bar, Qt::Key_Escape), true);
     }},
    {"a bar, and Esc",
     [](Tools &t, const Work &) {
         t.column.button("cmdTool10")->click();
         return t.bars.isAnyOpen() && (t.tools.escape(), true);
     }},
    {"Esc on the photo", [](Tools &t, const Work &) { return QTest::keyClick(&t.view, Qt::Key_Escape), true; }},
    {"a drag, and Esc on the photo",
     [](Tools &t, const Work &) { return t.dragOnPhoto(), QTest::keyClick(&t.view, Qt::Key_Escape), true; }},
};

TEST_F(Tools, EveryWayOutLeavesNothingBehind) {
    for (const WayOut &way : waysOut) {
        for (const Work &work : works) {
            SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << way.what);
            openPhoto();
            start(work);
            if (actsAtOnce(work)) {
                continue;
            }
            if (way.go(*this, work)) {
                expectArrow();
                EXPECT_EQ(ctx.photo.picCanvas(), photo);
                EXPECT_FALSE(ctx.photo.PhotoModified());
            }
            tools.ResetTools();
        }
    }
}

/// Whatever has happened: the column shows whose the mouse is, and a drag does what it does with that tool when it was
/// just started.
TEST_F(Tools, TheColumnShowsWhoseTheMouseIs) {
    const auto place = [this] {
        SlidingPanel *panel = tools.openPanel();
        return tools.current().toStdString() + (panel != nullptr ? " " + panel->objectName().toStdString() : "");
    };
    std::map<std::string, std::string> drags; // what they do, by the current tool and its panel
    openPhoto();
    drags[place()] = whatADragDoes();
    for (const Work &work : works) {
        if (!actsAtOnce(work)) {
            openPhoto();
            start(work);
            const std::string at = place();
            drags[at] = whatADragDoes();
            tools.ResetTools();
        }
    }
    const auto expectAgreement = [&] {
        ASSERT_FALSE(bars.isAnyOpen());
        for (const ToolRow &each : toolTable()) {
            if (const PictureButton *button = column.button(each.control)) {
                EXPECT_EQ(button->isChecked(), tools.current() == each.control) << each.control;
            }
        }
        const std::string at = place();
        // A selection can be marked while a panel waits for it.
        const auto drag = drags.find(tools.current() == "cmdTool2" ? "cmdTool2" : at);
        ASSERT_NE(drag, drags.end()) << at;
        EXPECT_EQ(whatADragDoes(), drag->second) << at;
    };
    EXPECT_EQ(drags["cmdTool1"], "nothing");
    EXPECT_EQ(drags["cmdTool2"], "marks ");
    EXPECT_EQ(drags["cmdTool3 pnlCrop"], "frames ");
    EXPECT_EQ(drags["cmdTool5"], "resizes changes touches ");
    EXPECT_EQ(drags["cmdTool11 pnlColourFocus"], "picks ");
    std::vector<WayOut> ways(std::begin(waysOut), std::end(waysOut));
    ways.insert(ways.end(), std::begin(happenings), std::end(happenings));
    for (const bool simple : {false, true}) {
        for (const Work &work : works) {
            if (actsAtOnce(work)) {
                continue;
            }
            for (const WayOut &way : ways) {
                SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << work.advanced << ": "
                                                << way.what << (simple ? ", simple" : ""));
                ctx.flags.SimpleModeOn = simple;
                openPhoto();
                start(work);
                if (way.go(*this, work)) {
                    expectAgreement();
                }
                tools.ResetTools();
            }
            for (const Work &next : works) {
                SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << work.advanced << ", then "
                                                << next.control << ' ' << next.key << ' ' << next.advanced);
                openPhoto();
                start(work);
                const PictureButton *button = column.button(next.control);
                if (button == nullptr || button->isEnabled()) {
                    start(next);
                    expectAgreement();
                }
                tools.ResetTools();
            }
        }
    }
}

TEST_F(Tools, WhatAToolSaysGoesWithIt) {
    QString shown; // as the status line does it
    QObject::connect(&tools, &ToolSet::message, &window, [&](const QString &text) { shown = text; });
    QObject::connect(&tools, &ToolSet::messageOver, &window,
                     [&](const QString &text) { shown = shown == text ? QString() : shown; });
    const auto activeTool = [this] {
        const auto all = window.findChildren<EditorTool *>();
        const auto found = std::ranges::find_if(all, [](const EditorTool *tool) {
            return tool->hasMouse() || (tool->panel() != nullptr && tool->panel()->isOpen());
        });
        return found != all.end() ? *found : nullptr;
    };
    for (const Work &work : works) {
        if (actsAtOnce(work)) {
            continue;
        }
        for (const WayOut &way : waysOut) {
            SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << way.what);
            openPhoto();
            start(work);
            EditorTool *tool = activeTool();
            ASSERT_NE(tool, nullptr);
            if (shown.isEmpty()) { // most say nothing at their start
                Q_EMIT tool->message("a hint", true);
            }
            EXPECT_FALSE(shown.isEmpty());
            if (way.go(*this, work)) {
                EXPECT_EQ(shown, "");
                Q_EMIT tool->message("what became of it", true);
            }
            tools.ResetTools();
            EXPECT_EQ(shown, shown.isEmpty() ? "" : "what became of it"); // until the next action, whatever that is
            shown.clear();
        }
        for (const Work &next : works) {
            SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ", then " << next.control);
            openPhoto();
            start(work);
            Q_EMIT activeTool()->message("a hint", true);
            const PictureButton *button = column.button(next.control);
            if (button == nullptr || button->isEnabled()) {
                const EditorTool *before = activeTool();
                start(next);
                const bool stays = before->hasMouse() || (before->panel() != nullptr && before->panel()->isOpen());
                EXPECT_TRUE(stays || shown != "a hint");
            }
            tools.ResetTools();
            shown.clear();
        }
    }
}

/// What to do with each tool that works on the photo, until it was done; a click does not do what is to be dragged.
TEST_F(Tools, TheMascotSaysWhatToDoUntilItIsDone) {
    auto *hint = control<HintBubble>("picHint");
    for (const Work &work : works) {
        SCOPED_TRACE(testing::Message() << work.control << ' ' << work.key << ' ' << work.advanced);
        openPhoto();
        start(work);
        const bool hasHint = !work.drag.empty() && work.control != QLatin1String("stickers"); // its panel says it
        ASSERT_EQ(hint->text().isEmpty(), !hasHint);
        if (hasHint) {
            QTRY_VERIFY(hint->isVisible());
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.toView(QPoint(160, 100)).toPoint());
            EXPECT_EQ(hint->text().isEmpty(), work.drag.size() == 1);
            tools.ResetTools();
            start(work);
            dragOnPhoto();
            EXPECT_EQ(hint->text(), "");
            tools.ResetTools();
            start(work);
            EXPECT_NE(hint->text(), "");
        }
        tools.ResetTools();
        EXPECT_EQ(hint->text(), "");
        QTRY_VERIFY(!hint->isVisible());
    }
}

TEST_F(Tools, TheMascotStandsBesideThePhotoWhereThereIsRoom) {
    const auto *hint = control<HintBubble>("picHint");
    const Work &rotate = works[5]; // it has controls in the view
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window.setLayoutDirection(direction);
        for (const QSize size : {QSize(1600, 700), QSize(860, 700), QSize(600, 1000)}) {
            for (const bool hasRoom : {true, false}) {
                SCOPED_TRACE(testing::Message() << direction << ' ' << size.width() << " x " << size.height());
                window.resize(size);
                openPhoto();
                hasRoom ? ctx.photo.fitPhoto(view.canvasSize()) : ctx.photo.setZoom(600);
                start(rotate);
                QTRY_VERIFY(hint->isVisible());
                const QRect table = view.viewport()->geometry();
                const QRect seen = hint->geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
                EXPECT_TRUE(table.contains(seen));
                EXPECT_FALSE(seen.intersects(control<QWidget>("pnlRotate")->geometry()));
                const QRect shared = seen & view.photoRect().toRect().translated(table.topLeft());
                EXPECT_EQ(shared.width() * shared.height() * 5 < seen.width() * seen.height(), hasRoom);
                EXPECT_EQ(seen.center().x() < table.center().x(), direction == Qt::RightToLeft);
                EXPECT_EQ(window.childAt(view.mapTo(&window, seen.center())), view.viewport())
                    << "a click does not pass";
                tools.ResetTools();
            }
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
            } else if (QString(first.control) == "cmdTool2" &&
                       (QString(second.panel) == "panelSFX" || QString(second.panel) == "pnlColmgr")) {
                EXPECT_EQ(tools.current(), "cmdTool2"); // for the panel, which is open
                ASSERT_NE(tools.openPanel(), nullptr);
                EXPECT_EQ(tools.openPanel()->objectName(), second.panel);
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

TEST_F(Tools, BackIsAsBeforeAndDoneKeeps) {
    int alone = 0;
    for (const Work &work : works) {
        for (const bool back : {false, true}) {
            if (!work.excludesOthers) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << work.control << (back ? " back" : " done"));
            ++alone;
            openPhoto();
            const int steps = ctx.photo.history().undoSteps();
            start(work);
            EXPECT_FALSE(column.button("cmdTool8")->isVisible()) << "no ghosts";
            Work marking = work;
            marking.apply = "";
            dragAndApply(marking);
            control<QAbstractButton>(back ? "cmdToolBack" : "cmdToolDone")->click();
            EXPECT_TRUE(column.button("cmdTool8")->isVisible());
            EXPECT_EQ(ctx.photo.picCanvas() == photo, back);
            EXPECT_EQ(ctx.photo.history().undoSteps(), steps + (back ? 0 : 1));
            tools.ResetTools();
            expectArrow();
        }
    }
    EXPECT_EQ(alone, 10) << "crop, cut-out, free rotation, free resizing, words and stickers";
}

TEST_F(Tools, RestingOnAnEffectShowsItOnThePhoto) {
    openPhoto();
    QCoreApplication::processEvents();
    const auto seen = [this] { return view.viewport()->grab().toImage(); };
    const QImage before = seen();
    const int steps = ctx.photo.history().undoSteps();
    for (const auto &[tool, key] : {std::pair("cmdTool8", "keyInvert"), std::pair("cmdTool9", "keyContrast"),
                                    std::pair("cmdTool10", "keySFX1")}) {
        SCOPED_TRACE(key);
        column.button(tool)->click();
        FloatingToolbar *bar = bars.barOfTool(tool);
        Q_EMIT bar->itemPointed(key);
        EXPECT_TRUE(QTest::qWaitFor([&] { return seen() != before; }));
        EXPECT_EQ(ctx.photo.picCanvas(), photo);
        EXPECT_EQ(ctx.photo.history().undoSteps(), steps);
        Q_EMIT bar->itemPointed({});
        EXPECT_EQ(seen(), before);
        bar->hide();
    }
    EXPECT_FALSE(ctx.photo.PhotoModified());
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
    tools.makeReady();
    EXPECT_TRUE(QTest::qWaitFor(pictured, 60'000));
}

} // namespace
} // namespace lumora
