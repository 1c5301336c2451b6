// The main window: its texts, the two modes' layouts, which buttons are enabled, how long messages stay.
#include "window/frmMain.h"

#include "base/FileName.h"
#include "effects/EffectPreviews.h"
#include "imaging/PictureFile.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "view/PhotoView.h"
#include "widgets/CommandBar.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/ProgressPanel.h"
#include "widgets/StatusLine.h"
#include "window/Dropping.h"

#include <QAbstractSpinBox>
#include <QAccessible>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <cstdio>

namespace lumora {
namespace {

/// Controls of the tool panels, which come with their tools.
const QStringList notBuiltYet = {
    "optStretched", "optTiled", "optSharpen1", "optSharpen2", "optSharpen3",
};

class Main : public test::Shell {
  protected:
    PictureButton *button(const frmMain &window, const QString &name) {
        return window.findChild<PictureButton *>(name);
    }
    bool enabled(const frmMain &window, const QString &key) {
        return window.findChild<CommandBar *>("Toolbar1")->button(key)->isEnabled();
    }
    void open(frmMain &window, int width = 300, int height = 200) {
        context.photo.openPicture({.picture = test::photoLike(width, height), .reason = {}},
                                  PhotoDocument::OpenRoute::LoadPhoto);
        window.fitPhoto();
    }
};

TEST_F(Main, ShowsItsTexts) {
    ASSERT_TRUE(test::writeChangedLanguageFile(m_folder.filePath("language.ini")));
    AppContext translated(Installation{m_folder.path()});
    frmMain window(translated);
    window.LoadLanguage();
    EXPECT_EQ(test::textsNotShown(window, notBuiltYet), QStringList());
}

TEST_F(Main, HoldingUndoShowsWhatWasDoneAndAClickGoesThere) {
    frmMain window(context);
    window.show();
    open(window);
    const QImage first = context.photo.picCanvas();
    for (const int width : {310, 320, 330}) {
        ASSERT_TRUE(context.photo.changePhoto(test::photoLike(width, 200)));
    }
    auto *strip = window.findChild<QWidget *>("pnlSteps");
    auto *list = window.findChild<QListWidget *>("lstSteps");
    PictureButton *undo = window.findChild<CommandBar *>("Toolbar1")->button("keyUndo");
    const QPoint middle = undo->rect().center();
    const auto width = [this] { return context.photo.picCanvas().width(); };
    const auto clickStep = [&](int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
    };

    QTest::mouseClick(undo, Qt::LeftButton);
    EXPECT_EQ(width(), 320) << "a click undoes";
    EXPECT_FALSE(strip->isVisible());
    for (const QPoint release : {middle, QPoint(-50, 5)}) { // on the button, beside it
        QTest::mousePress(undo, Qt::LeftButton, {}, middle);
        EXPECT_TRUE(QTest::qWaitFor([&] { return strip->isVisible(); }));
        QTest::mouseMove(undo, middle + QPoint(2, 0));
        QTest::mouseRelease(undo, Qt::LeftButton, {}, release);
        EXPECT_EQ(width(), 320) << "and holding does not";
        QTest::mousePress(undo, Qt::LeftButton, {}, middle); // held again it closes
        EXPECT_TRUE(QTest::qWaitFor([&] { return !strip->isVisible(); }));
        QTest::mouseRelease(undo, Qt::LeftButton, {}, middle);
        EXPECT_EQ(width(), 320);
    }
    QTest::mousePress(undo, Qt::LeftButton, {}, middle); // moved away before
    QTest::mouseMove(undo, QPoint(-50, 5));
    QTest::qWait(700);
    QTest::mouseRelease(undo, Qt::LeftButton, {}, QPoint(-50, 5));
    EXPECT_FALSE(strip->isVisible());

    QTest::keyClick(&window, Qt::Key_H, Qt::ControlModifier);
    ASSERT_TRUE(strip->isVisible());
    ASSERT_EQ(list->count(), 4);
    EXPECT_EQ(list->currentRow(), 2);
    EXPECT_EQ(list->item(0)->toolTip(), "At the beginning");
    EXPECT_EQ(list->item(2)->toolTip(), "Step 2 (now)");
    EXPECT_EQ(list->item(3)->toolTip(), "Step 3 (undone)");
    EXPECT_TRUE(list->hasFocus());
    clickStep(0);
    EXPECT_EQ(context.photo.picCanvas(), first);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->item(0)->toolTip().endsWith("(now)"); }));
    for (const auto key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Return}) {
        QTest::keyClick(list, key);
    }
    EXPECT_EQ(width(), 330);
    ASSERT_TRUE(context.photo.changePhoto(test::photoLike(340, 200)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->count() == 5; })) << "it follows the photo";
    QTest::keyClick(list, Qt::Key_Escape);
    EXPECT_FALSE(strip->isVisible());
    EXPECT_TRUE(window.view()->hasFocus());

    QTest::keyClick(&window, Qt::Key_H, Qt::ControlModifier);
    ASSERT_TRUE(strip->isVisible());
    button(window, "cmdTool3")->click(); // whose panel has that place
    EXPECT_TRUE(QTest::qWaitFor([&] { return !strip->isVisible(); }));
    QTest::keyClick(&window, Qt::Key_H, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return strip->isVisible(); }));
    QTest::mouseClick(button(window, "cmdStepsExit"), Qt::LeftButton);
    EXPECT_FALSE(strip->isVisible());

    window.setLayoutDirection(Qt::RightToLeft);
    QTest::keyClick(&window, Qt::Key_H, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return strip->isVisible(); }));
    EXPECT_GT(list->visualItemRect(list->item(0)).left(), list->visualItemRect(list->item(1)).right());
}

TEST_F(Main, SimpleModeHidesToolsByWhereItWasStarted) {
    struct Case {
        SimpleStart how;
        QStringList hiddenTools;
        QList<int> onNumbers, offNumbers;
        int widthFT1;
    };
    const Case cases[] = {
        {SimpleStart::CommandLine, {"cmdTool3", "cmdTool6", "cmdTool9", "cmdTool11"}, {9, 23}, {10, 16, 17}, 0},
        {SimpleStart::Launcher,
         {"cmdTool3", "cmdTool6", "cmdTool9", "cmdTool11", "cmdCropCut"},
         {9, 17},
         {10, 16, 23},
         8130},
    };
    for (const Case &c : cases) {
        frmMain window(context);
        window.applySimpleLayout(c.how);
        QStringList hidden;
        for (int tool = 1; tool <= 12; ++tool) {
            const QString name = tool <= 11 ? QString("cmdTool%1").arg(tool) : "cmdCropCut";
            if (button(window, name)->isHidden()) {
                hidden << name;
            }
        }
        EXPECT_EQ(hidden, c.hiddenTools);
        const auto *toolbar = window.findChild<CommandBar *>("Toolbar1");
        for (const int number : c.onNumbers) {
            EXPECT_TRUE(toolbar->isButtonOn(number)) << number;
        }
        for (const int number : c.offNumbers) {
            EXPECT_FALSE(toolbar->isButtonOn(number)) << number;
        }
        EXPECT_TRUE(button(window, "cmdScan")->isHidden());
        EXPECT_EQ(window.findChild<FloatingToolbar *>("FT1")->widthTwips(), c.widthFT1);
        EXPECT_EQ(window.findChild<FloatingToolbar *>("FT2")->widthTwips(), 11400);
        EXPECT_EQ(window.findChild<FloatingToolbar *>("FT4")->widthTwips(), 18300);
    }
}

TEST_F(Main, HoldingThePictureAtTheTopOpensTheOptionsInSimpleMode) {
    test::writeSetting(context, "Welcome", "Show", "0");
    frmMain window(context);
    context.flags.SimpleModeOn = true;
    window.applySimpleLayout(SimpleStart::Launcher);
    window.show();
    auto *sign = window.findChild<QWidget *>("picLumora");
    ASSERT_NE(sign, nullptr);
    const auto options = [&] { return window.findChild<QDialog *>("frmOptions"); };
    QTest::mouseClick(sign, Qt::LeftButton);
    QTest::mousePress(sign, Qt::LeftButton);
    QTest::mouseMove(sign, {-20, -20}); // it slipped off
    QTest::qWait(1700);
    EXPECT_EQ(options(), nullptr);
    QTest::mouseRelease(sign, Qt::LeftButton);
    QTest::mousePress(sign, Qt::LeftButton);
    EXPECT_TRUE(QTest::qWaitFor([&] { return options() != nullptr; }));
    options()->close();
}

TEST_F(Main, ButtonsFollowThePhoto) {
    frmMain window(context);
    window.show();
    const auto *view = window.view();
    EXPECT_FALSE(view->isVisible());
    for (const char *key : {"keyZoomin", "keyZoomout", "keyUndo", "keyRedo"}) {
        EXPECT_FALSE(enabled(window, key)) << key << " without a photo";
    }
    EXPECT_FALSE(button(window, "cmdSave")->isEnabled());
    open(window);
    EXPECT_TRUE(enabled(window, "keyZoomin"));
    EXPECT_TRUE(button(window, "cmdSave")->isEnabled());
    EXPECT_FALSE(enabled(window, "keyUndo")) << "nothing before the first photo";
    context.photo.changePhoto(test::photoLike(200, 300));
    EXPECT_TRUE(enabled(window, "keyUndo"));
    EXPECT_FALSE(enabled(window, "keyRedo"));
    window.findChild<CommandBar *>("Toolbar1")->button("keyUndo")->click();
    EXPECT_FALSE(enabled(window, "keyUndo"));
    EXPECT_TRUE(enabled(window, "keyRedo"));
    EXPECT_EQ(context.photo.picCanvas().size(), QSize(300, 200));
}

TEST_F(Main, TheEMailButtonShowsWhereTheSettingSaysSo) {
    for (const auto &[value, shown] : {std::pair("0", false), std::pair("1", true), std::pair("maybe", true)}) {
        test::writeSetting(context, "E-mail", "Value", value);
        frmMain window(context);
        window.SetMeUp();
        EXPECT_EQ(window.findChild<CommandBar *>("Toolbar1")->isButtonOn(10), shown) << value;
    }
}

TEST_F(Main, WithoutAPhotoTheEMailButtonDoesNothing) {
    test::writeSetting(context, "E-mail", "Value", "1");
    frmMain window(context);
    window.show();
    window.view()->show();
    button(window, "cmdTool8")->click();
    auto *bar = window.findChild<FloatingToolbar *>("FT3");
    const bool shown = bar->isVisible();
    auto *toolbar = window.findChild<CommandBar *>("Toolbar1");
    EXPECT_FALSE(enabled(window, "keyEmail"));
    Q_EMIT toolbar->buttonClicked("keyEmail");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(bar->isVisible(), shown) << "floating bars stay as they were";
    open(window);
    EXPECT_TRUE(enabled(window, "keyEmail"));
}

TEST_F(Main, PreviewsAreMadeForThoseWhoUseTheWindow) {
    const std::pair<const char *, std::function<void(frmMain &)>> ways[] = {
        {"pointer", [](frmMain &window) { QTest::mouseMove(window.windowHandle(), QPoint(300, 300)); }},
        {"key", [](frmMain &window) { QTest::keyClick(&window, Qt::Key_Shift); }},
        {"tool", [this](frmMain &window) { button(window, "cmdTool8")->click(); }},
    };
    for (const auto &[way, use] : ways) {
        frmMain window(context);
        window.show();
        open(window);
        const auto *frame = window.findChild<FloatingToolbar *>("FT5")->items().last();
        QTest::qWait(3 * EffectPreviews::delay);
        EXPECT_TRUE(frame->picture().isNull()) << "a photo that is only looked at needs none";
        use(window);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !frame->picture().isNull(); })) << way;
    }
}

TEST_F(Main, FitShowsTheWholePhotoWithoutScrollBars) {
    frmMain window(context);
    window.setStartupPhotoPath("/no/such/photo.jpg");
    window.show();
    window.setGeometry(0, 0, 1024, 768);
    QTest::qWait(1);
    const QSize canvas = window.view()->canvasSize();
    for (const QSize size : {QSize(6000, 4000), QSize(4000, 6000), QSize(4032, 3024), QSize(9000, 1000),
                             QSize(1000, 9000), QSize(5000, 5000), QSize(300, 200), QSize(640, 480),
                             QSize(canvas.width() * 100, 40), QSize(1, 20000), canvas, canvas * 4}) {
        open(window, 60, 40);
        context.photo.changePhoto(QImage(size, QImage::Format_RGB32));
        context.photo.setZoom(400); // with scroll bars, which take a part of the canvas
        window.fitPhoto();
        SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height() << " at " << context.photo.zoom());
        EXPECT_EQ(window.view()->horizontalScrollBar()->maximum(), 0);
        EXPECT_EQ(window.view()->verticalScrollBar()->maximum(), 0);
        const QSizeF larger = QSizeF(size) * (context.photo.zoom() + 1) / 100;
        const bool fits = larger.width() <= canvas.width() && larger.height() <= canvas.height();
        EXPECT_TRUE(context.photo.zoom() == 100 || !fits);
    }
}

TEST_F(Main, APhotoThatWasFittedStaysSoWhenTheWindowChanges) {
    frmMain window(context);
    window.setStartupPhotoPath("/no/such/photo.jpg");
    window.show();
    window.setGeometry(0, 0, 1024, 768);
    QTest::qWait(1);
    open(window, 600, 900);
    const int before = context.photo.zoom();
    window.setGeometry(0, 0, 1024, 620);
    EXPECT_TRUE(QTest::qWaitFor([&] { return context.photo.zoom() < before; }));
    context.photo.setZoom(100);
    window.setGeometry(0, 0, 1024, 768);
    QTest::qWait(20);
    EXPECT_EQ(context.photo.zoom(), 100) << "a zoom that was chosen stays";
}

TEST_F(Main, AResizedPhotoKeepsItsZoomAndATurnedOneIsFitted) {
    frmMain window(context);
    window.setStartupPhotoPath("/no/such/photo.jpg");
    window.show();
    window.setGeometry(0, 0, 1024, 768);
    QTest::qWait(1);
    open(window, 2000, 1000);
    const int fitted = context.photo.zoom();
    context.fields.txtResizeMode = false;
    button(window, "cmdTool4")->click();
    window.findChild<QAbstractButton *>("optSize1")->click();
    button(window, "cmdApplyResize")->click();
    ASSERT_EQ(context.photo.picCanvas().size(), QSize(640, 480));
    QTest::qWait(20);
    EXPECT_EQ(context.photo.zoom(), fitted) << "it is seen to be smaller";
    window.ResetTools(); // its panel takes room from the photo
    QTest::qWait(20);
    EXPECT_EQ(context.photo.zoom(), fitted) << "and stays so";
    open(window, 900, 300);
    const int lying = context.photo.zoom();
    window.findChild<FloatingToolbar *>("FT2")->item("keyRotate3")->click();
    ASSERT_EQ(context.photo.picCanvas().size(), QSize(300, 900));
    EXPECT_TRUE(QTest::qWaitFor([&] { return context.photo.zoom() != lying; }));
    const int upright = context.photo.zoom();
    window.fitPhoto();
    EXPECT_EQ(context.photo.zoom(), upright);
}

TEST_F(Main, AMessageIsShownUntilTheNextAction) {
    frmMain window(context);
    window.setStartupPhotoPath(m_folder.filePath("gone.png"));
    window.show();
    const auto *line = window.findChild<StatusLine *>("SBar");
    EXPECT_EQ(line->message(), context.texts.text("StatusNotFound"));
    const auto *sentence = window.findChild<QLabel *>("lblSentence");
    EXPECT_EQ(sentence->text(), line->message());
    EXPECT_TRUE(sentence->isVisible() && button(window, "cmdOpenFirst")->isVisible());
    EXPECT_FALSE(window.view()->isVisible());
    EXPECT_FALSE(button(window, "cmdTool2")->isEnabled());
    EXPECT_FALSE(context.photo.PhotoLoaded());
    QTest::qWait(50);
    EXPECT_FALSE(line->message().isEmpty());
    QTest::mouseClick(window.findChild<QWidget *>("EmptyTable"), Qt::LeftButton);
    EXPECT_EQ(line->message(), QString());
    open(window);
    EXPECT_TRUE(window.view()->isVisible());
    EXPECT_FALSE(sentence->isVisible());
    EXPECT_TRUE(button(window, "cmdTool2")->isEnabled());
}

TEST_F(Main, ThePhotoOfTheCommandLineNeedsNoWelcome) {
    const QString photo = m_folder.filePath("photo.png");
    ASSERT_TRUE(test::photoLike(60, 40).save(photo));
    for (const bool isThere : {false, true}) {
        frmMain window(context);
        window.setStartupPhotoPath(isThere ? photo : "/no/such/photo.jpg");
        window.show();
        const auto welcome = [&] { return window.findChild<QWidget *>("frmWelcome") != nullptr; };
        if (isThere) {
            QTest::qWait(900);
            EXPECT_FALSE(welcome());
        } else {
            EXPECT_TRUE(QTest::qWaitFor(welcome));
        }
    }
}

TEST_F(Main, AProgressOfAHundredHidesThePanel) {
    frmMain window(context);
    window.show();
    auto *panel = window.findChild<ProgressPanel *>("pnlProgress");
    panel->begin(true);
    const std::pair<int, bool> reports[] = {{-1, true}, {0, true}, {99, true}, {100, false}, {40, true}, {101, false}};
    for (const auto &[percent, shown] : reports) {
        Q_EMIT context.tasks.progressed(percent);
        EXPECT_EQ(panel->isVisible(), shown) << percent;
    }
}

TEST_F(Main, ADroppedPictureOpens) {
    frmMain window(context);
    window.show();
    const QString folder = QUrl::fromLocalFile(m_folder.path()).toString();
    int width = 40;
    for (const char *name : {"a photo with blanks.png", "caf\xE9.png", "50%.png", "a#b?.png"}) { // one is not UTF-8
        const QImage photo = test::photoLike(++width, 30);
        ASSERT_TRUE(writePicture(photo, m_folder.filePath(fileNameOf(name))).ok());
        QMimeData data;
        data.setUrls({QUrl("https://example.org/not-a-file.png"),
                      QUrl::fromEncoded((folder + '/').toUtf8() + QByteArray(name).toPercentEncoding())});
        EXPECT_TRUE(test::dropOn(window, data)) << name;
        EXPECT_TRUE(QTest::qWaitFor([&] { return context.photo.picCanvas().size() == photo.size(); })) << name;
        EXPECT_FALSE(context.photo.PhotoModified());
        std::remove(fileNameBytes(m_folder.filePath(fileNameOf(name))).constData()); // Qt does not find each of them
    }
}

TEST_F(Main, EveryControlHasANameForScreenReaders) {
    frmMain window(context);
    window.LoadLanguage();
    QStringList nameless;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        // Parts of another control, and the photo's own scroll bars, are reached through what they belong to.
        const bool isControl = qobject_cast<QAbstractButton *>(widget) != nullptr ||
                               qobject_cast<QSlider *>(widget) != nullptr ||
                               (qobject_cast<QLineEdit *>(widget) != nullptr &&
                                qobject_cast<QAbstractSpinBox *>(widget->parentWidget()) == nullptr);
        const bool waitsForItsStep = widget->objectName().startsWith("cmdIdeaOpen"); // it is named when it shows
        if (!isControl || widget->focusPolicy() == Qt::NoFocus || waitsForItsStep) {
            continue;
        }
        const QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(widget);
        if (seen == nullptr || seen->text(QAccessible::Name).isEmpty()) {
            nameless << widget->objectName();
        }
    }
    EXPECT_EQ(nameless, QStringList());
}

} // namespace
} // namespace lumora
