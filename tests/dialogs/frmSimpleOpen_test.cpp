#include "dialogs/frmSimpleOpen.h"

#include "DialogTest.h"
#include "base/FileName.h"
#include "dialogs/PhotoList.h"
#include "document/DiscardedPhotos.h"
#include "document/RecoveryFolder.h"
#include "document/SavedPhotos.h"
#include "widgets/AnimatedButton.h"

#include <QLabel>
#include <QLineEdit>

namespace lumora {
namespace {

class frmSimpleOpenTest : public DialogTest {
  protected:
    frmSimpleOpen::Result open(const std::function<void(QWidget &)> &hand, const QString &form = "frmSimpleOpen") {
        frmSimpleOpen::Result result{};
        play(
            [&] {
                frmSimpleOpen dialog(context(), form, nullptr);
                result = dialog.ask();
            },
            hand);
        return result;
    }
    static QStringList names(QWidget &window) {
        QStringList names;
        const auto *list = control<PhotoList>(window, "File1");
        for (int row = 0; row < list->count(); ++row) {
            names += list->item(row)->text();
        }
        return names;
    }
    static QString text(QWidget &window, const char *name) { return control<QLineEdit>(window, name)->text(); }
    static void clickRow(QWidget &window, int row, bool twice = false) {
        auto *list = control<PhotoList>(window, "File1");
        const QPoint place = list->visualItemRect(list->item(row)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
        if (twice) {
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
        }
    }
};

TEST_F(frmSimpleOpenTest, ListsThePhotosOfTheFolderAndNothingElse) {
    for (const char *name : {"photo10.jpg", "photo2.JPG", "Cat.png", "dog.bmp", "tree.GIF", "scan.tif", "notes.txt",
                             "film.jpeg", "jpg", ".hidden.jpg", "paint.tga", "phone.HEIC", "notes.doc"}) {
        writeFile(QString("photos/") + name, "x");
    }
    QDir().mkpath(photos() + "/folder.jpg");
    open([&](QWidget &window) {
        EXPECT_EQ(names(window), (QStringList{".hidden.jpg", "Cat.png", "dog.bmp", "film.jpeg", "paint.tga",
                                              "phone.HEIC", "photo2.JPG", "photo10.jpg", "scan.tif", "tree.GIF"}));
        EXPECT_EQ(text(window, "txtPath"), photos());
        EXPECT_EQ(control<QLabel>(window, "lblCaption")->text(), "Open - " + photos());
    });
}

TEST_F(frmSimpleOpenTest, UnusualNamesAreListedAndChosen) {
    const QImage picture = test::photoLike(20, 20);
    for (const QByteArray bytes : {"a\\b:c*d?e\"f<g>h|i.png", "caf\xE9.png"}) {
        const QString path = photos() + '/' + fileNameOf(bytes);
        ASSERT_TRUE(writePicture(picture, path).ok());
        open([&](QWidget &window) {
            EXPECT_EQ(names(window), QStringList(fileNameOf(bytes)));
            clickRow(window, 0);
            click(window, "cmdOK");
        });
        EXPECT_EQ(readPicture(context().fields.txtSimplePath).picture, picture) << bytes.constData();
        ASSERT_EQ(std::remove(fileNameBytes(path).constData()), 0);
    }
}

TEST_F(frmSimpleOpenTest, StartsWhereTheSettingsSay) {
    qputenv("HOME", m_folder.filePath("home").toUtf8());
    const std::pair<const char *, QString> rows[] = {
        {"0", photos()}, {"1", GetSpecialFolderPath(5)}, {nullptr, GetSpecialFolderPath(5)}};
    for (const auto &[value, folder] : rows) {
        const QByteArray myDocs = value ? QByteArray("[MyDocs]\nValue=") + value + "\n" : QByteArray();
        writeFile("program/Lumora.ini", myDocs + "[Working Directory]\nPath=" + photos().toUtf8() + "\n");
        open([&, expected = folder](QWidget &window) { EXPECT_EQ(text(window, "txtPath"), expected); });
    }
}

TEST_F(frmSimpleOpenTest, EveryWayToCloseIt) {
    using Result = frmSimpleOpen::Result;
    writePhoto("photos/one.png");
    writePhoto("photos/two.png");
    struct Row {
        const char *name;
        std::function<void(QWidget &)> hand;
        Result result;
        QString path;
    };
    const QString one = photos() + "/one.png";
    const QString two = photos() + "/two.png";
    const Row rows[] = {
        {"click and Open", [](QWidget &w) { clickRow(w, 1), click(w, "cmdOK"); }, Result::Open, two},
        {"double click", [](QWidget &w) { clickRow(w, 0, true); }, Result::Open, one},
        {"typed name", [](QWidget &w) { QTest::keyClicks(control<QLineEdit>(w, "txtFile"), "x y"), click(w, "cmdOK"); },
         Result::Open, photos() + "/x y"},
        {"typed name and Enter",
         [](QWidget &w) {
             QTest::keyClicks(control<QLineEdit>(w, "txtFile"), "one.png");
             QTest::keyClick(control<QLineEdit>(w, "txtFile"), Qt::Key_Return);
         },
         Result::Open, one},
        {"arrow keys and Enter",
         [](QWidget &w) {
             auto *list = control<PhotoList>(w, "File1");
             list->setFocus();
             QTest::keyClick(list, Qt::Key_Right);
             QTest::keyClick(list, Qt::Key_Return);
         },
         Result::Open, two},
        {"Open without a name", [](QWidget &w) { click(w, "cmdOK"); }, Result::Cancelled, {}},
        {"Cancel", [](QWidget &w) { clickRow(w, 0), click(w, "cmdCancel"); }, Result::Cancelled, {}},
        {"Esc", [](QWidget &w) { clickRow(w, 0), QTest::keyClick(&w, Qt::Key_Escape); }, Result::Cancelled, {}},
        {"More...", [](QWidget &w) { clickRow(w, 0), click(w, "cmdAdvCMDLG"); }, Result::More, {}},
    };
    for (const Row &row : rows) {
        for (const char *form : {"frmSimpleOpen", "frmSimpleOpen2"}) {
            context().fields.txtSimplePath.clear();
            context().photo.CurrentFileName = "before";
            const Result result = open(
                [&](QWidget &window) {
                    EXPECT_EQ(window.objectName(), form);
                    row.hand(window);
                },
                form);
            EXPECT_EQ(result, row.result) << row.name;
            EXPECT_EQ(context().fields.txtSimplePath, row.path) << row.name;
            EXPECT_EQ(context().photo.CurrentFileName, row.result == Result::More ? photos() : QString("before"));
        }
    }
}

TEST_F(frmSimpleOpenTest, OpenIsEnabledWhileThereIsAName) {
    open([&](QWidget &window) {
        auto *txtFile = control<QLineEdit>(window, "txtFile");
        const auto *cmdOK = control<QAbstractButton>(window, "cmdOK");
        EXPECT_FALSE(cmdOK->isEnabled());
        QTest::keyClicks(txtFile, "a");
        EXPECT_TRUE(cmdOK->isEnabled());
        QTest::keyClick(txtFile, Qt::Key_Backspace);
        EXPECT_FALSE(cmdOK->isEnabled());
    });
}

TEST_F(frmSimpleOpenTest, SampleGroupsLeadToTheirFolders) {
    const char *folders[] = {"animals", "backgrounds for stories", "geographical features", "machines",
                             "old buildings"};
    for (const char *folder : folders) {
        writePhoto(QString("program/My Photos/%1/in %1.png").arg(folder));
    }
    open([&](QWidget &window) {
        const auto *list = control<PhotoList>(window, "File1");
        for (int n = 1; n <= 5; ++n) {
            click(window, qPrintable(QString("cmdGrp%1").arg(n)));
            EXPECT_EQ(list->accessibleDescription(), "");
            EXPECT_EQ(text(window, "txtPath"), samples() + '/' + folders[n - 1]);
            EXPECT_EQ(names(window), QStringList(QString("in %1.png").arg(folders[n - 1])));
        }
    });
}

TEST_F(frmSimpleOpenTest, WithoutOwnPhotosItBeginsWithTheFirstGroupThatHasAny) {
    open([&](QWidget &window) {
        EXPECT_EQ(text(window, "txtPath"), photos()) << "without samples";
        EXPECT_FALSE(control<PhotoList>(window, "File1")->accessibleDescription().isEmpty())
            << "the empty list says where pictures are";
    });
    writePhoto("program/My Photos/backgrounds for stories/castle.png");
    writePhoto("program/My Photos/machines/tractor.png");
    open([&](QWidget &window) {
        EXPECT_EQ(text(window, "txtPath"), samples() + "/backgrounds for stories");
        EXPECT_EQ(names(window), QStringList("castle.png"));
        EXPECT_TRUE(control<QAbstractButton>(window, "cmdGrp2")->isChecked());
        EXPECT_FALSE(control<QAbstractButton>(window, "cmdOK")->isEnabled());
    });
    writePhoto("photos/mine.png");
    open([&](QWidget &window) {
        EXPECT_EQ(text(window, "txtPath"), photos());
        EXPECT_EQ(names(window), QStringList("mine.png"));
    });
}

TEST_F(frmSimpleOpenTest, MyPicturesComeFromEverywhereTheNewestFirst) {
    const QString state = m_folder.filePath("recovery");
    context().installation.recoveryFolder = state;
    writePhoto("photos/mine.png");
    open([&](QWidget &window) {
        click(window, "cmdMyPictures");
        EXPECT_EQ(control<PhotoList>(window, "File1")->accessibleDescription(), context().texts.text("NoMyPictures"));
        EXPECT_EQ(control<QLabel>(window, "lblCaption")->text(), "Open - My Pictures");
    });
    for (const char *name : {"photos/mine.png", "elsewhere/mine.png", "elsewhere/gone.png"}) {
        writePhoto(name);
        SavedPhotos(state).add(m_folder.filePath(name));
        QTest::qWait(2); // another millisecond
    }
    ASSERT_TRUE(QFile::remove(m_folder.filePath("elsewhere/gone.png")));
    RecoveryFolder copy(state);
    ASSERT_TRUE(copy.write({test::photoLike(64, 48)}));
    const QString thrownAway = DiscardedPhotos(state).take(copy);
    const auto chosenAt = [&](int row) {
        open([&](QWidget &window) {
            click(window, "cmdMyPictures");
            EXPECT_TRUE(control<QAbstractButton>(window, "cmdMyPictures")->isChecked());
            auto *list = control<PhotoList>(window, "File1");
            EXPECT_EQ(names(window).mid(1), QStringList({"mine.png", "mine.png"}));
            EXPECT_TRUE(names(window).value(0).startsWith("Today, ")) << names(window).value(0).toStdString();
            EXPECT_EQ(list->item(0)->toolTip(), context().texts.text("PictureThrownAway"));
            ASSERT_TRUE(QTest::qWaitFor([&] { return !list->thumbnail(thrownAway).isNull(); }));
            clickRow(window, row);
            click(window, "cmdOK");
        });
        return context().fields.txtSimplePath;
    };
    EXPECT_EQ(chosenAt(0), thrownAway);
    EXPECT_EQ(chosenAt(1), m_folder.filePath("elsewhere/mine.png"));
    EXPECT_EQ(chosenAt(2), m_folder.filePath("photos/mine.png"));
    open([&](QWidget &window) { // a typed name is one of the folder, whatever is listed
        click(window, "cmdMyPictures");
        QTest::keyClicks(control<QLineEdit>(window, "txtFile"), "typed.png");
        click(window, "cmdOK");
    });
    EXPECT_EQ(context().fields.txtSimplePath, photos() + "/typed.png");
}

TEST_F(frmSimpleOpenTest, OpenInvitesWhoHasChosenAPicture) {
    writePhoto("photos/one.png");
    open([&](QWidget &window) {
        auto *cmdOK = control<AnimatedButton>(window, "cmdOK");
        EXPECT_FALSE(cmdOK->isInviting());
        clickRow(window, 0);
        EXPECT_TRUE(cmdOK->isInviting());
        for (const int frame : {1, 5}) { // on the ground and in the air
            cmdOK->setFrame(frame);
            const QImage inviting = cmdOK->grab().toImage();
            cmdOK->setInviting(false);
            EXPECT_NE(cmdOK->grab().toImage(), inviting) << frame;
            cmdOK->setInviting(true);
        }
        QTest::keyClicks(control<QLineEdit>(window, "txtFile"), "x");
        EXPECT_FALSE(cmdOK->isInviting()) << "another name is being typed";
    });
}

TEST_F(frmSimpleOpenTest, AMissingSampleFolderIsReportedTwiceAndChangesNothing) {
    writePhoto("photos/mine.png");
    open([&](QWidget &window) {
        const QStringList messages = messagesDuring([&] { click(window, "cmdGrp4"); });
        ASSERT_EQ(messages.size(), 2);
        EXPECT_TRUE(messages[0].startsWith("critical/Error/" + samples() + "/machines")) << messages[0].toStdString();
        EXPECT_EQ(messages[1], "critical/Error/Please reinstall this software.");
        EXPECT_EQ(names(window), QStringList("mine.png"));
        EXPECT_EQ(text(window, "txtPath"), photos());
    });
}

TEST_F(frmSimpleOpenTest, AMissingFolderAtTheStartIsReportedOnceAndTheDialogStays) {
    QDir(photos()).removeRecursively();
    bool shown = false;
    const QStringList messages = messagesDuring([&] {
        QTimer closer; // open() would operate the message box
        QObject::connect(&closer, &QTimer::timeout, [&] {
            auto *window = qobject_cast<frmSimpleOpen *>(QApplication::activeModalWidget());
            if (window) {
                shown = true;
                window->close();
            }
        });
        closer.start(5);
        frmSimpleOpen dialog(context(), "frmSimpleOpen", nullptr);
        EXPECT_EQ(dialog.ask(), frmSimpleOpen::Result::Cancelled);
    });
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith("critical/Error/" + photos()));
    EXPECT_TRUE(shown);
}

TEST_F(frmSimpleOpenTest, AFileThatIsNotAPictureCannotBeChosen) {
    writeFile("photos/broken.jpg", "no picture at all");
    writePhoto("photos/whole.png");
    open([&](QWidget &window) {
        auto *list = control<PhotoList>(window, "File1");
        clickRow(window, 0); // chosen before its thumbnail was tried
        EXPECT_EQ(text(window, "txtFile"), "broken.jpg");
        ASSERT_TRUE(QTest::qWaitFor([&] { return !list->thumbnail(photos() + "/whole.png").isNull(); }));
        ASSERT_TRUE(QTest::qWaitFor([&] { return list->isUnreadable(photos() + "/broken.jpg"); }));
        EXPECT_EQ(text(window, "txtFile"), "");
        clickRow(window, 0);
        EXPECT_EQ(text(window, "txtFile"), "");
        EXPECT_FALSE(control<QAbstractButton>(window, "cmdOK")->isEnabled());
        clickRow(window, 1);
        EXPECT_EQ(text(window, "txtFile"), "whole.png");
    });
}

TEST_F(frmSimpleOpenTest, OnlyThumbnailsInViewAreMade) {
    for (int n = 0; n < 300; ++n) {
        writePhoto(QString("photos/%1.bmp").arg(n));
    }
    open([&](QWidget &window) {
        auto *list = control<PhotoList>(window, "File1");
        ASSERT_EQ(list->count(), 300);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !list->thumbnail(photos() + "/0.bmp").isNull(); }));
        EXPECT_TRUE(list->thumbnail(photos() + "/299.bmp").isNull());
        list->scrollToBottom();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !list->thumbnail(photos() + "/299.bmp").isNull(); }));
        EXPECT_TRUE(list->thumbnail(photos() + "/150.bmp").isNull());
    });
}

TEST_F(frmSimpleOpenTest, ThumbnailsOfEveryFormatFillTheSameRoom) {
    const QString names[] = {"photos/wide.png", "photos/tall.png", "photos/line.png"};
    const QSize sizes[] = {{400, 100}, {90, 160}, {1, 300}};
    for (int i = 0; i < 3; ++i) { // red above, blue in the lower half
        QImage picture(sizes[i], QImage::Format_RGB32);
        picture.fill(Qt::red);
        for (int y = picture.height() / 2; y < picture.height(); ++y) {
            std::fill_n(reinterpret_cast<QRgb *>(picture.scanLine(y)), picture.width(), qRgb(0, 0, 255));
        }
        ASSERT_TRUE(writePicture(picture, m_folder.filePath(names[i])).ok());
    }
    open([&](QWidget &window) {
        auto *list = control<PhotoList>(window, "File1");
        const auto thumbnail = [&](const QString &name) { return list->thumbnail(photos() + '/' + name); };
        const auto made = [&](const QString &name) { return !thumbnail(name).isNull(); };
        ASSERT_TRUE(QTest::qWaitFor([&] { return made("wide.png") && made("tall.png") && made("line.png"); }));
        const QImage tall = thumbnail("tall.png").toImage();
        EXPECT_GT(tall.width(), tall.height());
        EXPECT_EQ(thumbnail("wide.png").size(), tall.size());
        EXPECT_EQ(thumbnail("line.png").size(), tall.size());
        EXPECT_EQ(tall.pixelColor(2, 2), QColor(Qt::red));
        EXPECT_EQ(tall.pixelColor(2, tall.height() * 2 / 3), QColor(Qt::red)) << "more of the upper half is shown";
        EXPECT_EQ(tall.pixelColor(2, tall.height() - 2), QColor(Qt::blue));
    });
}

} // namespace
} // namespace lumora
