// Resizing: the size panel with its fixed sizes and limits, and free resizing by each of the eight handles with real
// mouse events.
#include "tools/resize/ResizeTool.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasForTest.h"
#include "tools/resize/ResizePanel.h"
#include "widgets/FittedText.h"
#include "widgets/PictureButton.h"

#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace lumora {
namespace {

struct ResizeToolTest : testing::Test {
    ResizeToolTest() {
        window.resize(900, 700);
        view.setGeometry(0, 0, 900, 480);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        QObject::connect(&mouse, &CanvasMouse::arrowWanted, &window, [this] { mouse.setTool(nullptr); });
    }
    ~ResizeToolTest() override { mouse.setTool(nullptr); }
    void open(const QImage &picture, int zoom = 100) {
        ctx.photo.openPicture({.picture = picture, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        ctx.photo.setZoom(zoom);
        QCoreApplication::processEvents();
    }
    const QImage &photo() { return ctx.photo.picCanvas(); }
    int steps() { return ctx.photo.history().undoSteps(); }
    template <typename Control> Control *control(const QString &name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    QLineEdit *width() { return control<QLineEdit>("txtWidth"); }
    QLineEdit *height() { return control<QLineEdit>("txtHeight"); }
    void apply() { control<PictureButton>("cmdApplyResize")->click(); }

    void startByHand() {
        ctx.fields.txtResizeMode = true;
        resize.open();
    }
    QPoint handle(ResizeHandle which) { return hand.handles().place(which).center().toPoint(); }
    void press(QPoint where) { QTest::mousePress(view.viewport(), Qt::LeftButton, {}, where); }
    void move(QPoint where) { QTest::mouseMove(view.viewport(), where); }
    void release(QPoint where) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, where); }
    void dragBy(ResizeHandle which, QPoint by) {
        const QPoint from = handle(which);
        press(from);
        move(from + by / 2);
        move(from + by);
        release(from + by);
    }
    QImage seen() { return view.viewport()->grab().toImage(); }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    QWidget window;
    PhotoView view{ctx.photo, &window};
    CanvasMouse mouse{ctx.photo, ctx.flags, view};
    ResizeTool resize{ctx, view, mouse, &window};
    const ResizeByHand &hand = resize.byHand();
    QSignalSpy arrow{&resize, &ResizeTool::finished};
    QSignalSpy notice{&resize, &ResizeTool::noticeWanted};
    QSignalSpy said{&resize, &ResizeTool::message};
};

// --- The panel ------------------------------------------------------------------------------------------------------

TEST_F(ResizeToolTest, PresetsFillAndLockTheBoxesAndStretchThePhoto) {
    const struct {
        const char *option;
        QSize size;
    } rows[] = {
        {"optSize0", {340, 200}}, {"optSize1", {640, 480}}, {"optSize2", {800, 600}}, {"optSize3", {1024, 768}}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.option);
        const QImage before = test::photoLike(1000, 1000);
        open(before);
        const int first = steps();
        resize.open();
        control<PictureButton>(row.option)->click();
        EXPECT_EQ(width()->text(), QString::number(row.size.width()));
        EXPECT_EQ(height()->text(), QString::number(row.size.height()));
        EXPECT_TRUE(width()->isReadOnly() && height()->isReadOnly());
        apply();
        EXPECT_EQ(photo(), scaled(before, row.size.width(), row.size.height()));
        EXPECT_EQ(ctx.photo.picThumb(), photo());
        EXPECT_TRUE(ctx.photo.PhotoModified());
        EXPECT_EQ(steps(), first + 1);
        ctx.photo.PerformUndo();
        EXPECT_EQ(photo(), before);
        control<PictureButton>("optSize4")->click();
        EXPECT_EQ(width()->text(), QString::number(row.size.width()));
        EXPECT_FALSE(width()->isReadOnly() || height()->isReadOnly());
        resize.close();
    }
}

TEST_F(ResizeToolTest, EachSizeShowsWhatItIsGoodFor) {
    QImage plain(400, 300, QImage::Format_ARGB32);
    plain.fill(Qt::gray);
    open(plain);
    resize.open();
    QList<QImage> looks; // sizes of one shape look alike but for the drawing of their use
    QStringList words;
    for (int i = 0; i < 4; ++i) {
        const auto *option = control<PictureButton>(QString("optSize%1").arg(i));
        EXPECT_FALSE(looks.contains(option->picture().toImage())) << i;
        EXPECT_FALSE(words.contains(option->toolTip())) << i;
        looks << option->picture().toImage();
        words << option->toolTip();
    }
}

TEST_F(ResizeToolTest, LongCaptionsOfTheBoxesStayWholeInANarrowWindow) {
    window.resize(700, 600);
    open(test::photoLike(400, 300));
    const QList<QLabel *> captions{control<QLabel>("lblResizeWidth"), control<QLabel>("lblResizeHeight")};
    for (QLabel *caption : captions) {
        caption->setText("Szerokość");
        letCaptionShrink(*caption); // as the style does
    }
    control<PictureButton>("cmdFreeResize")->setText("Dowolny rozmiar");
    resize.open();
    for (QLabel *caption : captions) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return caption->isVisible(); }));
        EXPECT_FALSE(isShortened(*caption)) << caption->width();
    }
}

TEST_F(ResizeToolTest, SizesAreTakenRefusedOrReset) {
    enum Outcome { Taken, Refused, Reset, Nothing };
    const struct {
        const char *width, *height;
        Outcome outcome;
        QSize size;
    } rows[] = {
        {"60", "40", Taken, {60, 40}},
        {"5000", "1", Taken, {5000, 1}},
        {"5001", "10", Refused, {}},
        {"10", "5001", Refused, {}},
        {"", "9999", Refused, {}},
        {"", "10", Reset, {}},
        {"10", "", Reset, {}},
        {"-5", "10", Reset, {}},
        {"0", "10", Nothing, {}},
        {"10", "0", Nothing, {}},
        {"cat", "10", Nothing, {}},
        {"0.4", "10", Nothing, {}},
        {"12.5", "13.5", Taken, {12, 14}},
        {" 20 px", "30", Taken, {20, 30}},
        {"5000.4", "10", Refused, {}},
        {"99999999999999", "1", Refused, {}},
        {"nan", "10", Nothing, {}},
    };
    const QImage before = test::photoLike(90, 70);
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.width << " x " << row.height);
        open(before);
        const int first = steps();
        notice.clear();
        said.clear();
        resize.open();
        width()->setText(row.width);
        height()->setText(row.height);
        apply();
        EXPECT_EQ(photo().size(), row.outcome == Taken ? row.size : before.size());
        EXPECT_EQ(steps(), first + (row.outcome == Taken ? 1 : 0));
        EXPECT_EQ(notice.count(), row.outcome == Refused ? 1 : 0);
        EXPECT_EQ(said.count(), row.outcome == Nothing ? 1 : 0);
        EXPECT_EQ(width()->text(), row.outcome == Reset ? "0" : row.width);
        EXPECT_EQ(height()->text(), row.outcome == Reset ? "0" : row.height);
        if (row.outcome == Refused) {
            EXPECT_EQ(notice.at(0).at(0), "Invalid Size! Maximum size allowed is 5000 x 5000");
            EXPECT_EQ(window.focusWidget(), width());
        }
        resize.close();
    }
}

TEST_F(ResizeToolTest, BoxesTakeTypedDigitsOnlyAndSelectTheirText) {
    open(test::photoLike(90, 70));
    resize.open();
    EXPECT_EQ(width()->text(), "90");
    EXPECT_EQ(height()->text(), "70");
    for (QLineEdit *box : {width(), height()}) {
        box->setFocus();
        EXPECT_EQ(box->selectedText(), box->text());
        QTest::keyClicks(box, "a1-2 .x3");
        QKeyEvent otherDigit(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(0x0663)));
        QCoreApplication::sendEvent(box, &otherDigit);
        EXPECT_EQ(box->text(), "123");
        QTest::keyClick(box, Qt::Key_Backspace);
        EXPECT_EQ(box->text(), "12");
        QGuiApplication::clipboard()->setText("7cats");
        QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(box->text(), "127cats"); // what is pasted is not filtered
    }
    control<PictureButton>("optSize1")->click();
    QTest::keyClicks(width(), "9");
    EXPECT_EQ(width()->text(), "640");
}

TEST_F(ResizeToolTest, TheStatusLineHasTwoBracketsAfterThePanelsResize) {
    open(test::photoLike(90, 70));
    QSignalSpy status(&resize, &ResizeTool::statusText);
    resize.open();
    control<PictureButton>("optSize1")->click();
    apply();
    ASSERT_EQ(status.count(), 1);
    const auto millimetres = [&](int pixels) { return std::nearbyint(pixels * 25.4 / window.logicalDpiX()); };
    const QString expected =
        QString("Lumora") + QString(20, ' ') + " - Version " + versionNumber() +
        QString(" - (640 x 480 pixels -  (%1 x %2 millimetres)").arg(millimetres(640)).arg(millimetres(480));
    EXPECT_EQ(status.at(0).at(0), expected);
}

TEST_F(ResizeToolTest, ThePanelComesAndGoes) {
    resize.open(); // without a photo
    EXPECT_FALSE(resize.panel()->isOpen());
    open(test::photoLike(90, 70));
    ctx.flags.startSelection(PhotoSelection::Shape::Lasso);
    resize.open();
    EXPECT_TRUE(resize.panel()->isOpen());
    EXPECT_EQ(resize.panel()->titleLabel()->text(), "ReSize Tool");
    EXPECT_TRUE(resize.FreeResizeActive());
    EXPECT_FALSE(ctx.flags.SelectionActive());
    QTest::mouseClick(view.viewport(), Qt::LeftButton); // on the photo, where it counts as a change
    EXPECT_TRUE(ctx.photo.PhotoModified());
    resize.panel()->closeButton()->click();
    EXPECT_FALSE(resize.FreeResizeActive());
    EXPECT_EQ(arrow.count(), 1);
    resize.open();
    resize.close();
    EXPECT_FALSE(resize.panel()->isOpen() || resize.FreeResizeActive());
    EXPECT_EQ(arrow.count(), 1);
    resize.open();
    control<PictureButton>("cmdFreeResize")->click();
    EXPECT_FALSE(resize.panel()->isOpen());
    EXPECT_TRUE(hand.isActive() && resize.FreeResizeActive());
    EXPECT_EQ(arrow.count(), 1);
    resize.close();
    resize.open(); // from now on freely
    EXPECT_TRUE(hand.isActive());
    EXPECT_FALSE(resize.panel()->isOpen());
}

// --- By hand --------------------------------------------------------------------------------------------------------

TEST_F(ResizeToolTest, EachHandleDragsItsSides) {
    for (const int zoom : {50, 100, 200}) {
        for (const ResizeHandle which : resizeHandles) {
            SCOPED_TRACE(testing::Message() << zoom << " % " << which.across << " " << which.down);
            const QImage before = test::photoLike(200, 160);
            open(before, zoom);
            startByHand();
            const int first = steps();
            const QPoint by(40, -24);
            dragBy(which, by);
            const QSize size(200 + which.across * by.x() * 100 / zoom, 160 + which.down * by.y() * 100 / zoom);
            EXPECT_EQ(photo(), scaled(before, size.width(), size.height()));
            EXPECT_EQ(steps(), first + 1);
            EXPECT_TRUE(ctx.photo.PhotoModified());
            ctx.photo.PerformUndo();
            EXPECT_EQ(photo(), before);
            EXPECT_TRUE(hand.isActive()); // the frame stays
            EXPECT_EQ(hand.frame().size(), QSizeF(size) * zoom / 100);
            resize.close();
        }
    }
}

TEST_F(ResizeToolTest, ThePhotoFollowsTheHand) {
    for (const bool transparent : {false, true}) {
        open(test::photoLike(300, 200, transparent));
        startByHand();
        const QImage before = photo();
        const QPoint from = handle({1, 1});
        press(from);
        move(from + QPoint(90, 60));
        EXPECT_EQ(photo(), before);
        const QRectF frame = hand.frame();
        EXPECT_EQ(frame.size(), QSizeF(390, 260));
        const QImage live = seen();
        release(from + QPoint(90, 60));
        const QRectF landed = hand.frame();
        EXPECT_EQ(landed.size(), frame.size());
        const QImage after = seen();
        double difference = 0;
        int compared = 0;
        const double devicePixels = view.devicePixelRatioF();
        for (int y = 30; y < 120; ++y) {
            for (int x = 30; x < 180; ++x, ++compared) {
                const auto gray = [&](const QImage &image, const QRectF &place) {
                    return qGray(image.pixel(((place.topLeft() + QPointF(x, y)) * devicePixels).toPoint()));
                };
                difference += std::abs(gray(live, frame) - gray(after, landed));
            }
        }
        EXPECT_LT(difference / compared, 5);
        resize.close();
    }
}

TEST_F(ResizeToolTest, UndoLeavesTheFrameAtItsStoredRectangle) {
    open(test::photoLike(200, 160));
    startByHand();
    dragBy({1, 1}, {-80, -60});
    const QSize smaller = photo().size();
    ASSERT_EQ(smaller, QSize(120, 100));
    const auto frameSize = [&] { return hand.frame().size().toSize(); };
    ctx.photo.PerformUndo();
    EXPECT_EQ(photo().size(), QSize(200, 160));
    EXPECT_EQ(frameSize(), smaller);
    ctx.photo.PerformRedo();
    EXPECT_EQ(frameSize(), smaller);
    ctx.photo.PerformUndo();
    // A click on a handle changes nothing; a drag gives the photo the frame's new size.
    const int first = steps();
    dragBy({1, 1}, {0, 0});
    EXPECT_EQ(photo().size(), QSize(200, 160));
    EXPECT_EQ(steps(), first);
    dragBy({1, 1}, {20, 20});
    EXPECT_EQ(photo().size(), QSize(140, 120));
    EXPECT_EQ(frameSize(), QSize(140, 120));
    open(test::photoLike(90, 70));
    EXPECT_EQ(frameSize(), QSize(90, 70)) << "another photo has its own frame";
}

TEST_F(ResizeToolTest, SidesKeepToTheirLimits) {
    const struct {
        QSize photo;
        QPoint by;
        QSize becomes;
    } rows[] = {
        {{200, 160}, {-5000, -5000}, {1, 1}},
        {{4900, 900}, {3000, 0}, {5000, 900}},
        {{5200, 900}, {3000, 0}, {5200, 900}}, // already longer
        {{5200, 900}, {-10, 0}, {5100, 900}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.photo.width());
        open(test::photoLike(row.photo.width(), row.photo.height()), row.photo.width() > 1000 ? 10 : 100);
        startByHand();
        dragBy({1, 1}, row.by);
        EXPECT_EQ(photo().size(), row.becomes);
        resize.close();
    }
}

TEST_F(ResizeToolTest, AClickBeyondTheFrameEnds) {
    open(test::photoLike(200, 160));
    startByHand();
    EXPECT_TRUE(resize.excludesOthers());
    const int first = steps();
    const QPoint corner = view.photoRect().topLeft().toPoint();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, corner - QPoint(5, 5));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.photoRect().center().toPoint());
    EXPECT_TRUE(hand.isActive());
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, corner - QPoint(7, 7));
    EXPECT_FALSE(hand.isActive() || resize.FreeResizeActive());
    EXPECT_FALSE(resize.excludesOthers());
    EXPECT_EQ(steps(), first);
    EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ResizeToolTest, EscDropsTheDragAndThenEnds) {
    open(test::photoLike(200, 160));
    const QImage before = photo();
    startByHand();
    const int first = steps();
    const QImage start = seen();
    const QPoint from = handle({-1, 0});
    press(from);
    move(from - QPoint(50, 0));
    EXPECT_NE(seen(), start);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(seen(), start);
    release(from - QPoint(50, 0));
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
    EXPECT_TRUE(hand.isActive());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(hand.isActive() || resize.FreeResizeActive());
    EXPECT_EQ(arrow.count(), 1);
}

TEST_F(ResizeToolTest, AnotherToolEndsADragHalfWay) {
    open(test::photoLike(200, 160));
    const QImage before = photo();
    const QImage plain = seen();
    startByHand();
    const int first = steps();
    press(handle({1, 1}));
    move(handle({1, 1}) + QPoint(60, 30));
    mouse.setTool(nullptr);
    EXPECT_FALSE(hand.isActive() || resize.FreeResizeActive());
    EXPECT_EQ(photo(), before);
    EXPECT_EQ(steps(), first);
    EXPECT_EQ(seen(), plain);
}

TEST_F(ResizeToolTest, HandlesOfSmallFramesCanBeReached) {
    const struct {
        QSizeF frame;
        QPointF point;
        ResizeHandle handle;
    } rows[] = {
        {{300, 200}, {2, 2}, {-1, -1}}, {{300, 200}, {40, 40}, {-1, -1}}, {{300, 200}, {150, 2}, {0, -1}},
        {{300, 200}, {150, 100}, {}},   {{300, 200}, {298, 100}, {1, 0}}, {{300, 200}, {-3, -3}, {}},
        {{60, 60}, {30, 30}, {}},       {{60, 60}, {30, 55}, {0, 1}},     {{60, 60}, {55, 5}, {1, -1}},
        {{16, 16}, {8, 8}, {1, 1}},     {{300, 30}, {150, 29}, {0, 1}},   {{300, 30}, {299, 29}, {1, 1}},
    };
    for (const auto &row : rows) {
        const ResizeHandles handles(QRectF(QPointF(), row.frame));
        EXPECT_EQ(handles.at(row.point), row.handle)
            << row.frame.width() << " at " << row.point.x() << " " << row.point.y();
    }
}

} // namespace
} // namespace lumora
