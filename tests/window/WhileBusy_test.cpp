// Events during background tasks (a drop, keys, the desktop's request to close, cancelling) on large photos in the real
// window: they are queued or refused, and no photo is lost.
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/ProgressPanel.h"
#include "widgets/StatusLine.h"
#include "window/Dropping.h"
#include "window/PhotoCommands.h"
#include "window/ToolSet.h"
#include "window/frmMain.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

namespace lumora {
namespace {

const char *const slowEffect = "keySFX5"; // oil painting

class WhileBusy : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        context.settings.write<Setting::Welcome, Writer::Welcome>(false);
        context.settings.write<Setting::DialogStyle, Writer::Options>(DialogStyle::System);
        context.settings.write<Setting::AdvancedEffects, Writer::Options>(Switch::Off);
        context.settings.write<Setting::MyDocs, Writer::Options>(false);
        context.settings.write<Setting::WorkingDirectory, Writer::Options>(m_folder.path());
        ASSERT_TRUE(writePicture(m_other, m_otherFile).ok());
        m_window = std::make_unique<frmMain>(context);
        m_window->show();
        context.photo.openPicture({.picture = m_mine, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        m_window->fitPhoto();
        settle();
    }
    void TearDown() override { QGuiApplication::clipboard()->clear(); }

    /// Until the previews are made and no task is running.
    static void settle() { QTest::qWait(300); }

    /// Applies a slow effect to the whole photo, with `meanwhile` while it computes.
    void applyEffect(const std::function<void()> &meanwhile) {
        bool came = false;
        QTimer::singleShot(0, m_window.get(), [&] {
            came = context.tasks.isRunning();
            meanwhile();
        });
        m_window->findChild<FloatingToolbar *>("FT4")->item(slowEffect)->click();
        EXPECT_TRUE(came) << "the effect was over too soon for this test";
    }

    /// Sends a drag as the window system does; false when the window refuses it.
    bool drop() const {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_otherFile)});
        return test::dropOn(*m_window, data);
    }

    /// Answers the modal windows that will come, one after the other, by the name of a button; a file dialog by a path.
    void answer(const QStringList &answers) {
        m_answers += answers;
        lookAgain();
    }
    /// Each time a new timer: one that waits for its own slot would not see the windows that the slot opens.
    void lookAgain() {
        QTimer::singleShot(5, m_window.get(), [this] {
            QWidget *window = QApplication::activeModalWidget();
            if (window != nullptr && window->isVisible()) {
                const QString next = m_answers.takeFirst();
                if (!m_answers.isEmpty()) {
                    lookAgain();
                }
                give(*window, next);
            } else {
                lookAgain();
            }
        });
    }
    static void give(QWidget &window, const QString &answer) {
        if (auto *files = qobject_cast<QFileDialog *>(&window)) {
            files->findChild<QLineEdit *>("fileNameEdit")->setText(answer);
            static_cast<QDialog *>(files)->accept();
        } else if (auto *replace = qobject_cast<QMessageBox *>(&window)) {
            replace->button(QMessageBox::Yes)->click();
        } else if (window.objectName() == answer.section(' ', 0, 0)) {
            window.findChild<QAbstractButton *>("cmd" + answer.section(' ', 1))->click();
        } else {
            ADD_FAILURE() << qPrintable(window.objectName()) << " instead of " << qPrintable(answer);
            window.close();
        }
    }

    void tool(const char *button) { m_window->findChild<PictureButton *>(button)->click(); }
    /// From point to point of the photo with the button held.
    void drag(const QList<QPoint> &picture) {
        const auto *view = m_window->findChild<PhotoView *>();
        const auto at = [&](QPoint point) { return view->toView(point).toPoint(); };
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, at(picture.first()));
        for (const QPoint point : picture) {
            QTest::mouseMove(view->viewport(), at(point));
        }
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, at(picture.last()));
    }

    QString status() const { return m_window->findChild<StatusLine *>("SBar")->text(); }

    const QImage m_mine = test::photoLike(5000, 4000);
    const QImage m_other = test::photoLike(50, 50);
    const QString m_otherFile = m_folder.filePath("other.png");
    std::unique_ptr<frmMain> m_window;
    QStringList m_answers;
};

TEST_F(WhileBusy, ADropKeysAndClicksLeaveARunningEffectAlone) {
    QGuiApplication::clipboard()->setImage(m_other);
    settle();
    applyEffect([this] {
        EXPECT_FALSE(drop()) << "the pointer says that it is not wanted now";
        for (const auto key : {Qt::Key_V, Qt::Key_O, Qt::Key_Z, Qt::Key_S, Qt::Key_Y}) {
            QTest::keyClick(m_window->windowHandle(), key, Qt::ControlModifier);
        }
        QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          m_window->findChild<PictureButton *>("cmdOpen")->mapTo(m_window.get(), QPoint(20, 20)));
    });
    const QImage effect = context.photo.picCanvas();
    EXPECT_EQ(effect.size(), m_mine.size());
    EXPECT_NE(effect, m_mine);
    settle();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(context.photo.picCanvas(), effect);
    EXPECT_EQ(context.photo.history().undoSteps(), 1);
    EXPECT_TRUE(context.photo.PerformUndo());
    EXPECT_EQ(context.photo.picCanvas(), m_mine);
}

TEST_F(WhileBusy, APhotoDroppedJustBeforeAnEffectComesAfterIt) {
    EXPECT_TRUE(drop());
    applyEffect([] {});
    const QImage effect = context.photo.picCanvas();
    EXPECT_EQ(effect.size(), m_mine.size());
    answer({"frmSave2 No"});
    EXPECT_TRUE(QTest::qWaitFor([this] { return context.photo.picCanvas() == m_other; }, 20000));
    EXPECT_TRUE(context.photo.PerformUndo());
    EXPECT_EQ(context.photo.picCanvas(), effect) << "under the other photo";
    EXPECT_TRUE(context.photo.PerformUndo());
    EXPECT_EQ(context.photo.picCanvas(), m_mine);
}

TEST_F(WhileBusy, TheDesktopsRequestToCloseIsHandledOnceAfterASave) {
    context.photo.setPhotoModified(true);
    const QString path = m_folder.filePath("mine.png");
    QSignalSpy left(m_window.get(), &frmMain::leave);
    answer({path});
    int wishes = 0;
    QTimer often;
    QObject::connect(&often, &QTimer::timeout, m_window.get(), [&] {
        if (context.tasks.isRunning() && wishes < 3) {
            ++wishes;
            m_window->close();
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        }
    });
    often.start(1);
    m_window->findChild<PictureButton *>("cmdSave")->click();
    EXPECT_EQ(wishes, 3);
    EXPECT_EQ(readPicture(path).picture, m_mine);
    EXPECT_FALSE(context.photo.PhotoModified());
    answer({"frmExit Yes"});
    settle();
    EXPECT_EQ(left.count(), 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "asked once";
}

TEST_F(WhileBusy, WhatIsStoppedLeavesPhotoAndFilesAsTheyWere) {
    struct Case {
        const char *what, *says;
        std::function<void()> begin;
    };
    const QString path = m_folder.filePath("mine.png");
    const QString largeFile = m_folder.filePath("large.png");
    ASSERT_TRUE(writePicture(m_other, path).ok());
    ASSERT_TRUE(writePicture(m_mine.mirrored(), largeFile).ok());
    const auto click = [this](const char *button) { m_window->findChild<PictureButton *>(button)->click(); };
    const Case cases[] = {
        {"a save", "StatusSaveStopped",
         [&] {
             answer({path, "replace it"});
             click("cmdSave");
         }},
        {"an effect", "StatusStopped",
         [&] { m_window->findChild<FloatingToolbar *>("FT4")->item(slowEffect)->click(); }},
        {"an opening", "StatusStopped",
         [&] {
             answer({"frmSave2 No", largeFile});
             click("cmdOpen");
         }},
        {"a frame", "StatusStopped",
         [&] { m_window->findChild<FloatingToolbar *>("FT5")->item("keyFrame6")->click(); }},
        {"a new size", "StatusStopped",
         [&] {
             tool("cmdTool4");
             m_window->findChild<QLineEdit *>("txtWidth")->setText("4900");
             m_window->findChild<QAbstractButton *>("cmdApplyResize")->click();
         }},
        {"a row of pop art", "StatusStopped", [&] { m_window->findChild<ToolSet *>()->press("popArt"); }},
        {"a cut-out", "StatusStopped",
         [&] {
             m_window->findChild<ToolSet *>()->press("cmdCropCut");
             drag({{40, 40}, {4900, 60}, {2500, 3900}});
             m_window->findChild<QAbstractButton *>("cmdCropCutNow")->click();
         }},
        {"words and stickers", "StatusStopped",
         [&] {
             m_window->findChild<ToolSet *>()->press("stickers");
             click("cmdStickersFaces");
             click("cmdSticker_happy");
             drag({{2000, 1500}, {2600, 2000}});
             for (int i = 0; i < 20; ++i) { // as large as the photo, so that drawing it takes its time
                 QTest::keyClick(m_window->findChild<PhotoView *>(), Qt::Key_Plus);
             }
             click("cmdToolDone");
         }},
        {"a turn by hand", "StatusStopped",
         [&] {
             m_window->findChild<FloatingToolbar *>("FT2")->item("keyRotate4")->click();
             drag({{4000, 1000}, {3500, 3000}});
         }},
        {"a drop", "StatusStopped", [&] { m_window->findChild<PhotoCommands *>()->openDropped(largeFile); }},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.what);
        const bool drops = QLatin1String(one.what) == "a drop";
        context.photo.setPhotoModified(!drops);
        int stopped = 0;
        QTimer often;
        QObject::connect(&often, &QTimer::timeout, m_window.get(), [&] {
            stopped += context.tasks.isRunning() ? 1 : 0;
            context.tasks.stop();
        });
        often.start(1);
        one.begin();
        often.stop();
        tool("cmdTool1");
        ASSERT_GT(stopped, 0);
        EXPECT_EQ(status(), context.texts.text(one.says));
        EXPECT_EQ(context.photo.picCanvas(), m_mine);
        EXPECT_EQ(context.photo.history().undoSteps(), 0);
        EXPECT_EQ(context.photo.PhotoModified(), !drops);
        EXPECT_EQ(readPicture(path).picture, m_other);
        EXPECT_EQ(QDir(m_folder.path()).entryList({"*.tmp"}, QDir::Files | QDir::Hidden), QStringList());
    }
}

TEST_F(WhileBusy, ThePanelStopsByButtonAndByEscAndNotByAKeyThatIsHeld) {
    struct Case {
        const char *what;
        Qt::Key key; // none: the mouse
        bool isHeld, stops;
    };
    for (const Case &one :
         {Case{"the button", Qt::Key_unknown, false, true}, Case{"Esc", Qt::Key_Escape, false, true},
          Case{"Enter", Qt::Key_Return, false, true}, Case{"Enter, held since the dialog", Qt::Key_Return, true, false},
          Case{"another key", Qt::Key_O, false, false}}) {
        SCOPED_TRACE(one.what);
        auto *panel = m_window->findChild<ProgressPanel *>();
        auto *cmdStop = panel->findChild<PictureButton *>("cmdStop");
        bool shown = false;
        const auto press = [&] {
            shown = panel->isVisible() && cmdStop->isVisible();
            if (one.key == Qt::Key_unknown) {
                QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                                  cmdStop->mapTo(m_window.get(), cmdStop->rect().center()));
                return;
            }
            QKeyEvent down(QEvent::KeyPress, one.key, Qt::NoModifier, {}, one.isHeld);
            QCoreApplication::sendEvent(m_window->windowHandle(), &down);
        };
        const auto connection = QObject::connect(&context.tasks, &BackgroundTasks::began, m_window.get(),
                                                 [&] { QTimer::singleShot(50, m_window.get(), press); });
        const bool whole = context.tasks.run(
            [] {
                for (int turn = 0; turn < 900 && !TaskControl::isCurrentCancelled(); ++turn) {
                    QThread::msleep(1);
                }
            },
            Stopping::Offered);
        QObject::disconnect(connection);
        EXPECT_TRUE(shown);
        EXPECT_EQ(whole, !one.stops);
        EXPECT_FALSE(panel->isVisible());
    }
}

} // namespace
} // namespace lumora
