// Words and stickers on a real photo with real mouse and keys: placing, changing by hand and by keys, steps, what
// becomes of them at the end.
#include "tools/stickers/StickersTool.h"

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/stickers/ItemBar.h"
#include "tools/stickers/StickersPanel.h"
#include "tools/stickers/WordsEditor.h"
#include "widgets/PictureButton.h"

#include <QInputMethodEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using Kind = Decoration::Kind;
using test::firstDifference;
using test::nowhere;

struct Sticking : testing::Test {
    Sticking() {
        window.resize(1000, 800);
        view.setGeometry(0, 0, 1000, 560); // the panel leaves it free
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_EQ(photo.openPicture({before, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        steps = photo.history().undoSteps();
        tool.open();
    }
    template <typename Control> Control *control(const char *name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void click(const char *button) { control<PictureButton>(button)->click(); }
    QPoint at(QPointF picture) { return view.toView(picture).toPoint(); }
    void press(QPointF picture) { QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, at(picture)); }
    void pressTwice(QPointF picture) {
        press(picture);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, at(picture)); // the second press alone
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(picture));
    }
    /// From one point of the view to another.
    void drag(QPointF from, QPointF to) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from.toPoint());
        QTest::mouseMove(view.viewport(), ((from + to) / 2).toPoint());
        QTest::mouseMove(view.viewport(), to.toPoint());
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to.toPoint());
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }
    void place(const char *button, QPointF where, const char *group = "cmdStickersFaces") {
        click(group);
        click(button);
        press(where);
    }
    void type(const QString &words) {
        auto *text = control<QPlainTextEdit>("txtStickerWords");
        EXPECT_TRUE(text->isVisible());
        EXPECT_TRUE(text->hasFocus());
        QInputMethodEvent typed("", {}); // as an input method gives them
        typed.setCommitString(words);
        QCoreApplication::sendEvent(text, &typed);
    }
    ItemHandles handles() {
        const Decoration &item = tool.items().at(std::size_t(tool.selected()));
        const double scale = view.toView({1, 0}).x() - view.toView({0, 0}).x();
        const QPointF origin = view.toView({0, 0});
        return handlesOf(item, shapeOf(item),
                         QTransform::fromScale(scale, scale) * QTransform::fromTranslate(origin.x(), origin.y()),
                         view.viewport()->rect());
    }
    const Decoration &item(std::size_t index = 0) { return tool.items().at(index); }
    bool isUntouched() { return firstDifference(photo.picCanvas(), before) == nowhere; }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    PhotoDocument &photo = ctx.photo;
    const QImage before = test::photoLike(800, 500);
    QWidget window;
    PhotoView view{ctx.photo, &window};
    CanvasMouse mouse{ctx.photo, ctx.flags, view};
    StickersTool tool{ctx, view, mouse, &window};
    QSignalSpy finished{&tool, &StickersTool::finished};
    QSignalSpy said{&tool, &StickersTool::message};
    int steps = 0;
};

TEST_F(Sticking, OpensOnAPhotoOnly) {
    EXPECT_TRUE(tool.hasMouse() && tool.excludesOthers() && tool.panel()->isOpen());
    tool.close();
    AppContext none{Installation{folder.path()}};
    PhotoView emptyView(none.photo);
    CanvasMouse emptyMouse(none.photo, none.flags, emptyView);
    StickersTool empty(none, emptyView, emptyMouse, &window);
    EXPECT_FALSE(empty.open());
    EXPECT_FALSE(empty.panel()->isOpen());
    empty.close();
}

TEST_F(Sticking, AClickPlacesWhatWasPickedAndOnlyOnce) {
    press({400, 250}); // nothing is picked
    EXPECT_TRUE(tool.items().empty());
    place("cmdSticker_happy", {200, 300});
    place("cmdSticker_cat", {600, 100}, "cmdStickersAnimals");
    press({20, 480}); // and nothing any more
    ASSERT_EQ(tool.items().size(), 2U);
    EXPECT_LT(QLineF(item(0).centre, {200, 300}).length(), 1.5);
    EXPECT_EQ(item(0).row, 0);
    EXPECT_EQ(item(1).row, 20);
    EXPECT_GT(item(0).size, 100);
    EXPECT_EQ(tool.selected(), -1);
    EXPECT_FALSE(control<PictureButton>("cmdSticker_cat")->isChecked());
    EXPECT_TRUE(isUntouched()); // not before the end
    click("cmdSticker_dog");
    key(Qt::Key_Escape);
    press({400, 250});
    EXPECT_EQ(tool.items().size(), 2U);
    EXPECT_TRUE(tool.hasMouse());
    click("cmdSticker_dog"); // by the keyboard in the middle of what is in view
    key(Qt::Key_Return);
    ASSERT_EQ(tool.items().size(), 3U);
    EXPECT_LT(QLineF(item(2).centre, QRectF(view.visiblePart()).center()).length(), 1.5);
}

TEST_F(Sticking, MovesSizesAndTurnsByHand) {
    place("cmdSticker_happy", {400, 250});
    const Decoration placed = item();
    const QPointF centre = view.toView(placed.centre);
    drag(centre, centre + QPointF(40, -30));
    EXPECT_LT(QLineF(item().centre, placed.centre + QPointF(40, -30)).length(), 1.5);
    EXPECT_EQ(view.viewport()->cursor().shape(), Qt::OpenHandCursor); // no longer held
    EXPECT_EQ(item().size, placed.size);

    const QPointF middle = view.toView(item().centre);
    const QPointF corner = handles().size;
    drag(corner, middle + (corner - middle) * 1.5);
    EXPECT_NEAR(item().size, placed.size * 1.5, 4);

    const QPointF knob = handles().turn - middle;
    drag(handles().turn, middle + QPointF(-knob.y(), knob.x())); // a quarter to the right
    EXPECT_EQ(item().angle, 90);
    drag(handles().turn, handles().turn + QPointF(60, 0));
    EXPECT_NE(item().angle, 90);

    drag(middle, middle + QPointF(5000, 5000)); // never out of reach
    EXPECT_EQ(item().centre, QPointF(800, 500));
    EXPECT_TRUE(QRectF(view.viewport()->rect()).contains(handles().size));
    for (int undone = 0; undone < 5; ++undone) {
        EXPECT_TRUE(tool.canStep(true));
        tool.step(true);
    }
    EXPECT_EQ(item(), placed);
    tool.step(true);
    EXPECT_TRUE(tool.items().empty());
    EXPECT_FALSE(tool.canStep(true));
    tool.step(false);
    EXPECT_EQ(item(), placed);
}

TEST_F(Sticking, TheTailIsDraggedToTheSpeakerAndStaysThere) {
    place("cmdBubbleSpeech", {400, 150}, "cmdStickersWords");
    type("Over here!");
    click("cmdStickerWordsDone");
    EXPECT_FALSE(item().speaker);
    ASSERT_TRUE(handles().tail);
    drag(*handles().tail, view.toView({180, 420}));
    ASSERT_TRUE(item().speaker);
    EXPECT_LT(QLineF(*item().speaker, {180, 420}).length(), 2);
    const QPointF speaker = *item().speaker;
    const QPointF centre = view.toView(item().centre);
    drag(centre, centre + QPointF(60, 20));
    EXPECT_EQ(*item().speaker, speaker);
}

TEST_F(Sticking, KeysDoWhatTheMouseDoes) {
    place("cmdSticker_happy", {300, 250});
    place("cmdSticker_sad", {330, 250});
    const double scale = view.toView({1, 0}).x() - view.toView({0, 0}).x();
    ASSERT_EQ(tool.selected(), 1);
    const Decoration start = item(1);
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        QPointF moved;
        double size, angle;
    } rows[] = {
        {Qt::Key_Left, {}, {-1 / scale, 0}, 1, 0}, {Qt::Key_Down, Qt::ShiftModifier, {0, 10 / scale}, 1, 0},
        {Qt::Key_Plus, {}, {0, 0}, 1.1, 0},        {Qt::Key_Minus, {}, {0, 0}, 1 / 1.1, 0},
        {Qt::Key_BracketRight, {}, {0, 0}, 1, 5},  {Qt::Key_BracketLeft, {}, {0, 0}, 1, -5},
    };
    const int zoom = photo.zoom();
    for (const auto &[pressed, modifiers, moved, size, angle] : rows) {
        key(pressed, modifiers);
        EXPECT_LT(QLineF(item(1).centre, start.centre + moved).length(), 0.01) << pressed;
        EXPECT_NEAR(item(1).size, start.size * size, 0.01) << pressed;
        EXPECT_NEAR(item(1).angle, angle, 0.01) << pressed;
        tool.step(true);
        EXPECT_EQ(item(1), start);
        EXPECT_EQ(tool.selected(), 1);
    }
    EXPECT_EQ(photo.zoom(), zoom);

    key(Qt::Key_Backtab);
    EXPECT_EQ(tool.selected(), 0);
    key(Qt::Key_PageUp);
    EXPECT_EQ(item(1).row, 0);
    EXPECT_EQ(tool.selected(), 1);
    key(Qt::Key_Escape);
    EXPECT_EQ(tool.selected(), -1);
    key(Qt::Key_Tab);
    EXPECT_EQ(tool.selected(), 0);
    key(Qt::Key_Tab);
    key(Qt::Key_Tab); // on to the next control
    EXPECT_FALSE(view.hasFocus());
    view.setFocus();
    key(Qt::Key_Delete);
    ASSERT_EQ(tool.items().size(), 1U);
    EXPECT_EQ(item().row, 8);
    tool.step(true);
    EXPECT_EQ(tool.items().size(), 2U);
}

/// Where nothing is placed, Tab goes on as anywhere, one control at a time.
TEST_F(Sticking, TabLeavesThePhotoForTheNextControl) {
    QWidget *next = &view;
    do {
        next = next->nextInFocusChain();
    } while (!(next->focusPolicy() & Qt::TabFocus) || !next->isVisible() || !next->isEnabled());
    key(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), next) << window.focusWidget()->objectName().toStdString();
}

TEST_F(Sticking, TheButtonsBesideItDoTheSame) {
    place("cmdSticker_happy", {300, 250});
    place("cmdSticker_sad", {330, 250});
    EXPECT_TRUE(control<ItemBar>("pnlSticker")->isVisible());
    EXPECT_FALSE(control<PictureButton>("cmdStickerWords")->isVisible());
    EXPECT_FALSE(control<ItemBar>("pnlSticker")->geometry().intersects(handles().bounds().toRect()));
    key(Qt::Key_Backtab);
    click("cmdStickerFront");
    EXPECT_EQ(item(1).row, 0);
    click("cmdStickerDelete");
    EXPECT_EQ(tool.items().size(), 1U);
    EXPECT_FALSE(control<ItemBar>("pnlSticker")->isVisible());
}

TEST_F(Sticking, WordsAreTypedAndAreOneStep) {
    const QString arabic = QString::fromUtf8("مرحبا");
    place("cmdLettering_arch", {400, 250}, "cmdStickersWords");
    EXPECT_FALSE(tool.canStep(true));
    type(arabic);
    EXPECT_EQ(item().text, arabic); // seen while it is typed
    type(QString::fromUtf8(" 猫"));
    QTest::keyClick(control<QPlainTextEdit>("txtStickerWords"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(control<QPlainTextEdit>("txtStickerWords")->isVisible());
    EXPECT_TRUE(view.hasFocus());
    EXPECT_EQ(item().text, arabic + QString::fromUtf8(" 猫"));
    tool.step(true);
    EXPECT_TRUE(tool.items().empty());
    EXPECT_FALSE(tool.canStep(true));

    place("cmdLettering_plain", {400, 250}, "cmdStickersWords");
    press({20, 20}); // without words there is nothing to keep
    EXPECT_TRUE(tool.items().empty());
    EXPECT_FALSE(tool.canStep(true));

    place("cmdLettering_plain", {790, 490}, "cmdStickersWords");
    type(QString("many words ").repeated(40)); // more than are taken
    EXPECT_EQ(item().text.size(), WordsEditor::mostLetters);
    EXPECT_TRUE(QRectF(0, 0, 800, 500).contains(placeOf(item()).mapRect(shapeOf(item()).box)));
    click("cmdStickerWordsDone");
    const QString typed = item().text;
    key(Qt::Key_Return); // once more
    auto *text = control<QPlainTextEdit>("txtStickerWords");
    EXPECT_EQ(text->toPlainText(), typed);
    type("short");
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_EQ(item().text, "short");
    EXPECT_EQ(tool.selected(), 0);
    tool.step(true);
    EXPECT_EQ(item().text, typed);
}

/// Children double-click what is to be clicked.
TEST_F(Sticking, ADoubleClickPlacesWordsAndOpensThemAgain) {
    click("cmdStickersWords");
    click("cmdLettering_wave");
    pressTwice({400, 250});
    type("Wow");
    click("cmdStickerWordsDone");
    ASSERT_EQ(tool.items().size(), 1U);
    pressTwice(item().centre);
    EXPECT_EQ(control<QPlainTextEdit>("txtStickerWords")->toPlainText(), "Wow");
    type("Oh");
    EXPECT_EQ(item().text, "Oh");
}

/// The photo gets the keyboard while words are typed, when it is moved by hand for one.
TEST_F(Sticking, AKeyForThePhotoEndsTheTyping) {
    auto *text = control<QPlainTextEdit>("txtStickerWords");
    place("cmdLettering_plain", {400, 250}, "cmdStickersWords");
    type("Wow");
    view.setFocus();
    key(Qt::Key_Escape);
    EXPECT_FALSE(text->isVisible());
    EXPECT_EQ(tool.selected(), 0);
    press({20, 20});
    ASSERT_EQ(tool.items().size(), 1U);
    EXPECT_EQ(item().text, "Wow");

    place("cmdLettering_plain", {200, 100}, "cmdStickersWords");
    view.setFocus();
    key(Qt::Key_Left); // it is gone: it had no words
    EXPECT_EQ(tool.items().size(), 1U);
    EXPECT_EQ(tool.selected(), -1);

    place("cmdLettering_plain", {400, 250}, "cmdStickersWords");
    type("Oh");
    photo.PerformUndo();
    EXPECT_FALSE(text->isVisible());
    press({20, 20});
    EXPECT_TRUE(tool.items().empty());
}

TEST_F(Sticking, HandlesFollowThePhotoAndGoOutOfViewWithIt) {
    place("cmdSticker_happy", {60, 60});
    EXPECT_TRUE(control<ItemBar>("pnlSticker")->isVisible());
    photo.setZoom(400);
    view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->maximum());
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    EXPECT_FALSE(control<ItemBar>("pnlSticker")->isVisible());
    EXPECT_FALSE(handles().bounds().intersects(QRectF(view.viewport()->rect())));
    view.horizontalScrollBar()->setValue(0);
    view.verticalScrollBar()->setValue(0);
    EXPECT_TRUE(control<ItemBar>("pnlSticker")->isVisible());
    EXPECT_TRUE(view.viewport()->geometry().contains(control<ItemBar>("pnlSticker")->geometry()));
}

TEST_F(Sticking, DoneIsOneStepOfThePhotoAndBackIsNone) {
    place("cmdSticker_happy", {200, 250});
    place("cmdBubbleThought", {500, 150}, "cmdStickersWords");
    type("Hm"); // "Done" while typing
    const std::vector<Decoration> placed = tool.items();
    tool.accept();
    EXPECT_EQ(finished.count(), 1);
    EXPECT_FALSE(tool.hasMouse() || tool.panel()->isOpen());
    EXPECT_EQ(photo.history().undoSteps(), steps + 1);
    EXPECT_EQ(firstDifference(photo.picCanvas(), decorated(before, placed)), nowhere);
    EXPECT_FALSE(isUntouched());
    EXPECT_TRUE(photo.PhotoModified());
    photo.PerformUndo();
    EXPECT_TRUE(isUntouched());

    tool.open();
    EXPECT_FALSE(tool.canStep(true)); // they are in the photo's history now
    tool.accept();                    // nothing was placed
    EXPECT_EQ(photo.history().undoSteps(), steps);

    tool.open();
    place("cmdSticker_happy", {200, 250});
    tool.close();
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(photo.history().undoSteps(), steps);
    said.clear();
    tool.open(); // what was left behind is not lost
    EXPECT_TRUE(tool.items().empty());
    EXPECT_EQ(said.count(), 1);
    tool.step(true);
    ASSERT_EQ(tool.items().size(), 1U);
    tool.close();
    photo.openPicture({test::photoLike(300, 200), PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
    tool.open();
    EXPECT_FALSE(tool.canStep(true)); // it was for another photo
}

TEST_F(Sticking, WhatIsPlacedBecomesPartOfThePhotoBeforeItIsUsed) {
    tool.settle();
    EXPECT_EQ(photo.history().undoSteps(), steps);
    place("cmdSticker_happy", {200, 250});
    tool.settle();
    EXPECT_EQ(photo.history().undoSteps(), steps + 1);
    EXPECT_FALSE(isUntouched());
    EXPECT_TRUE(tool.items().empty());
    tool.settle();
    EXPECT_EQ(photo.history().undoSteps(), steps + 1);
}

TEST_F(Sticking, TheScreenShowsWhatThePhotoGets) {
    place("cmdSticker_happy", {200, 250});
    place("cmdLettering_outlined", {520, 200}, "cmdStickersWords");
    type("Look");
    click("cmdStickerWordsDone");
    key(Qt::Key_Escape); // without handles
    const QRect shown(view.toView({0, 0}).toPoint(), before.size());
    const QImage onScreen = view.viewport()->grab(shown).toImage().convertToFormat(QImage::Format_RGB32);
    const QImage drawn = decorated(before, tool.items()).convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(onScreen.size(), drawn.size());
    qint64 different = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            different += std::abs(qGray(drawn.pixel(x, y)) - qGray(onScreen.pixel(x, y))) > 60 ? 1 : 0;
        }
    }
    EXPECT_LT(different, drawn.width() * drawn.height() / 500);
}

} // namespace
} // namespace lumora
