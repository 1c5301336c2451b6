// The slideshow: which pictures, in which order, at which times; pausing, ending, and files that cannot be shown.
#include "output/slideshow/SlideShow.h"

#include "imaging/PictureFile.h"
#include "output/slideshow/SlidePicture.h"
#include "output/slideshow/SlideSign.h"
#include "output/slideshow/frmSlideShow.h"
#include "support/ShellCheck.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

namespace lumora {
namespace {

class SlideShowTest : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        QApplication::setDoubleClickInterval(1);
        ASSERT_TRUE(QDir().mkdir(photos()));
        m_owner.show();
        QObject::connect(&m_show, &SlideShow::shown, [this] { m_seen << currentName(); });
        context.fields.txtSSSFX = 4;
    }

    QString photos() const { return m_folder.filePath("photos"); }
    QString photo(const QString &name) const { return photos() + '/' + name; }
    void write(const QString &name, Qt::GlobalColor colour, QSize size = {60, 40}) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(colour);
        ASSERT_TRUE(writePicture(picture, photo(name)).ok());
    }
    void writeBytes(const QString &name, const QByteArray &bytes) {
        QFile file(photo(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    /// Answers the folder dialog that will come; cancels it for an empty answer.
    void answerWith(const QString &folder) {
        QTimer::singleShot(0, &m_show, [this, folder] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr) << "nobody asks for a folder";
            ++m_asked;
            m_title = dialog->windowTitle();
            if (folder.isEmpty()) {
                dialog->reject();
            } else {
                dialog->findChild<QLineEdit *>("fileNameEdit")->setText(folder);
                static_cast<QDialog *>(dialog)->accept();
            }
        });
    }
    void start() {
        m_seen.clear();
        answerWith(photos());
        m_show.start();
        EXPECT_EQ(m_show.current(), -1);
        ASSERT_NE(window(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window()));
        QTest::qWait(5); // a click is no second half of a double click any more
    }
    frmSlideShow *window() const { return m_owner.findChild<frmSlideShow *>(); }
    QTimer *timer() const { return m_show.findChild<QTimer *>("tmrSlideShow"); }
    bool isIdle() {
        QTest::qWait(1); // a closed window is deleted
        return window() == nullptr && m_show.path().isEmpty() && !timer()->isActive();
    }

    QString currentName() const { return m_show.names().value(m_show.current()); }
    QRgb colour() const {
        const QImage &picture = window()->XShow1()->picture();
        return picture.pixel(picture.width() / 2, picture.height() / 2) | 0xFF000000U;
    }
    /// The names of the next pictures: the first comes by itself, the others with each tick.
    QStringList play(int count) {
        QStringList names;
        while (names.size() < count) {
            if (m_seen.isEmpty() && m_show.current() >= 0) {
                test::tick(m_show, "tmrSlideShow");
            }
            if (!QTest::qWaitFor([this] { return !m_seen.isEmpty(); }, 10'000)) {
                break;
            }
            names << m_seen.takeFirst();
        }
        return names;
    }

    QWidget m_owner;
    SlideShow m_show{context, &m_owner};
    QStringList m_seen; ///< names of the pictures that have come on the screen
    int m_asked = 0;
    QString m_title;
};

TEST_F(SlideShowTest, ListsPicturesInTheOrderOfTheirNames) {
    for (const char *name : {"photo10.jpg", "Photo2.JPEG", "b.tif", "cat.PNG", "dog.bmp", "frog.Gif", "notjpeg",
                             "goat.jpg.txt", ".hidden.jpg", "jpg", "hen.webp"}) {
        writeBytes(name, "x");
    }
    ASSERT_TRUE(QDir(photos()).mkdir("folder.jpg"));
    QStringList names = {"from before"};
    answerWith(photos() + '/');
    m_show.listFiles(names);
    EXPECT_EQ(names, QStringList({"cat.PNG", "dog.bmp", "frog.Gif", "notjpeg", "Photo2.JPEG", "photo10.jpg"}));
    EXPECT_EQ(m_title, "Choose photos for your slideshow:");
    EXPECT_EQ(m_show.path(), photos());
    answerWith({});
    EXPECT_EQ(m_show.BrowseForFolder(), photos()) << "cancelling changes nothing";
}

TEST_F(SlideShowTest, ShowsOneAfterTheOtherRoundAndRound) {
    write("1.png", Qt::red);
    write("2.jpg", Qt::white);
    write("10.bmp", Qt::blue, {40, 60});
    start();
    EXPECT_EQ(play(1), QStringList({"1.png"}));
    EXPECT_EQ(timer()->interval(), 4000);
    EXPECT_EQ(play(4), QStringList({"2.jpg", "10.bmp", "1.png", "2.jpg"}));
    context.fields.txtSSSFX = 7;
    EXPECT_EQ(play(1), QStringList({"10.bmp"}));
    EXPECT_EQ(timer()->interval(), 7000);

    const SlidePicture *show = window()->XShow1();
    EXPECT_EQ(show->geometry(), window()->rect());
    EXPECT_EQ(window()->geometry(), m_owner.screen()->geometry());
    EXPECT_EQ(show->picture().height(), show->room().height()) << "as large as it fits";
    QTest::qWait(300); // the cross-fade
    const QImage screen = window()->grab().toImage();
    const QPoint middle = screen.rect().center();
    EXPECT_EQ(screen.pixel(middle), qRgb(0, 0, 255));
    EXPECT_EQ(screen.pixel(5, middle.y()), qRgb(0, 0, 0)) << "centred on black";
    EXPECT_EQ(screen.pixel(screen.width() - 6, middle.y()), qRgb(0, 0, 0));
}

TEST_F(SlideShowTest, PassesOverWhatCannotBeShownAtOnce) {
    write("1.png", Qt::red);
    writeBytes("2.jpg", "no picture");
    writeBytes("3.jpg", {});
    write("4.png", Qt::green);
    start();
    EXPECT_EQ(play(4), QStringList({"1.png", "4.png", "1.png", "4.png"}));

    // A file that changes is shown as it is when its turn comes; the one on the screen stays.
    EXPECT_EQ(colour(), qRgb(0, 255, 0));
    write("4.png", Qt::yellow);
    EXPECT_EQ(colour(), qRgb(0, 255, 0));
    EXPECT_EQ(play(2), QStringList({"1.png", "4.png"}));
    EXPECT_EQ(colour(), qRgb(255, 255, 0));

    // So does the last one when the folder vanishes; the next one may have been decoded before.
    ASSERT_TRUE(QDir().rename(photos(), photos() + "-away"));
    const auto tickThrice = [this] {
        for (int i = 0; i < 3; ++i) {
            test::tick(m_show, "tmrSlideShow");
            QTest::qWait(100);
        }
    };
    tickThrice();
    m_seen.clear();
    tickThrice();
    EXPECT_EQ(m_seen, QStringList());
    EXPECT_FALSE(window()->XShow1()->picture().isNull());
    ASSERT_TRUE(QDir().rename(photos() + "-away", photos()));
    EXPECT_EQ(play(1).size(), 1) << "it goes on when the folder is back";
}

TEST_F(SlideShowTest, AFolderWithoutPicturesStaysBlackUntilEsc) {
    for (const bool broken : {false, true}) {
        if (broken) {
            writeBytes("1.jpg", "no picture");
        }
        start();
        for (int i = 0; i < 3; ++i) {
            QTest::qWait(20);
            test::tick(m_show, "tmrSlideShow");
        }
        EXPECT_EQ(m_show.current(), -1);
        EXPECT_EQ(window()->grab().toImage().pixel(window()->rect().center()), qRgb(0, 0, 0));
        QTest::keyClick(window(), Qt::Key_Escape);
        EXPECT_TRUE(isIdle());
    }
}

TEST_F(SlideShowTest, EscAndAClickEndItAndTheNextStartAsksAgain) {
    write("1.png", Qt::red);
    answerWith({});
    m_show.start();
    EXPECT_TRUE(isIdle()) << "the choice was cancelled";
    start();
    play(1);
    for (const auto key : {Qt::Key_Return, Qt::Key_A, Qt::Key_Right, Qt::Key_F1, Qt::Key_Q}) {
        QTest::keyClick(window(), key);
    }
    QTest::mouseClick(window()->XShow1(), Qt::RightButton);
    EXPECT_FALSE(isIdle()) << "nothing else ends it";
    EXPECT_TRUE(timer()->isActive());
    QTest::keyClick(window(), Qt::Key_Escape);
    EXPECT_TRUE(isIdle());
    start();
    EXPECT_EQ(m_asked, 3);
    EXPECT_EQ(play(1), QStringList({"1.png"})) << "it begins with the first";
    QTest::mouseClick(window()->XShow1(), Qt::LeftButton);
    EXPECT_TRUE(isIdle());
    // A press that belongs to a double click in the folder dialog.
    QApplication::setDoubleClickInterval(60'000);
    start();
    QTest::mouseClick(window()->XShow1(), Qt::LeftButton);
    EXPECT_FALSE(isIdle());
}

TEST_F(SlideShowTest, SpacePausesAndGoesOnWithTheNext) {
    write("1.png", Qt::red);
    write("2.png", Qt::green);
    start();
    play(1);
    auto *sign = window()->findChild<SlideSign *>();
    EXPECT_FALSE(sign->isVisible());
    QTest::keyClick(window(), Qt::Key_Space);
    EXPECT_FALSE(timer()->isActive());
    EXPECT_TRUE(sign->isVisible() && sign->kind() == SlideSign::Kind::Pause);
    EXPECT_EQ(sign->accessibleName(), "Paused");
    EXPECT_EQ(currentName(), "1.png");
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, " ", true);
    QCoreApplication::sendEvent(window(), &held);
    EXPECT_FALSE(timer()->isActive()) << "a key that is held down counts once";
    QTest::keyClick(window(), Qt::Key_Space);
    EXPECT_TRUE(sign->isVisible() && sign->kind() == SlideSign::Kind::Play);
    EXPECT_EQ(timer()->interval(), 4000);
    EXPECT_EQ(play(1), QStringList({"2.png"}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !sign->isVisible(); })) << "it goes by itself";
}

TEST_F(SlideShowTest, ThePointerHidesUntilItMoves) {
    start();
    SlidePicture *show = window()->XShow1();
    const auto moveTo = [&](const QPointF &place) {
        QMouseEvent move(QEvent::MouseMove, place, show->mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(show, &move);
    };
    EXPECT_EQ(show->cursor().shape(), Qt::ArrowCursor);
    test::tick(*show, "tmrPointer");
    EXPECT_EQ(show->cursor().shape(), Qt::BlankCursor);
    moveTo({50, 50});
    EXPECT_EQ(show->cursor().shape(), Qt::ArrowCursor);
    test::tick(*show, "tmrPointer");
    moveTo({50, 50});
    EXPECT_EQ(show->cursor().shape(), Qt::BlankCursor) << "it has not moved";
}

TEST_F(SlideShowTest, AWindowOfAnotherSizeGetsItsOwnPictures) {
    write("1.png", Qt::red, {3000, 300});
    write("2.png", Qt::green, {3000, 300});
    start();
    play(1);
    const SlidePicture *show = window()->XShow1();
    EXPECT_EQ(show->picture().width(), show->room().width());
    window()->setWindowState(Qt::WindowNoState);
    window()->resize(500, 300);
    QTest::qWait(1);
    ASSERT_EQ(show->room(), QSize(500, 300));
    EXPECT_EQ(play(1), QStringList({"2.png"}));
    EXPECT_EQ(show->picture().size(), QSize(500, 50));
}

TEST(SlideShowDelay, IsWholeSecondsThatATimerCanHold) {
    const struct {
        int seconds, milliseconds;
    } cases[] = {{4, 4000},
                 {2000, 2'000'000},
                 {0, 1000},
                 {-5, 1000},
                 {2'147'483, 2'147'483'000},
                 {2'147'484, 2'147'483'000},
                 {2'147'483'647, 2'147'483'000}};
    for (const auto &c : cases) {
        EXPECT_EQ(SlideShow::interval(c.seconds), c.milliseconds) << c.seconds;
    }
}

} // namespace
} // namespace lumora
