// Opening, saving, pasting, dropping and leaving, through every question and dialog.
#include "window/PhotoCommands.h"

#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "widgets/CommandBar.h"
#include "widgets/PictureButton.h"
#include "window/Dropping.h"
#include "window/frmMain.h"

#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace lumora {
namespace {

/// Answers modal windows in the order of a list such as "frmSave2 Yes, QFileDialog OK", and records the windows.
class Hand : public QObject {
  public:
    Hand(const QString &answers, QString savePath, QString openPath)
        : m_answers(answers.split(", ", Qt::SkipEmptyParts)), m_savePath(std::move(savePath)),
          m_openPath(std::move(openPath)) {
        lookAgain();
    }

    QString seen() const { return m_seen.join(", "); }
    bool rests() const { return m_answers.isEmpty() && QApplication::activeModalWidget() == nullptr; }
    /// Is run for every window that comes, before it is answered.
    std::function<void(QWidget &)> onWindow = [](QWidget &) {};

  private:
    /// Each time a new timer: one that waits for its own slot would not see the windows that the slot opens.
    void lookAgain() {
        QTimer::singleShot(1, this, [this] { look(); });
    }
    void look() {
        lookAgain();
        QWidget *window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isVisible()) {
            return;
        }
        if (m_met != window) { // answered the next time, when what it set off has happened
            m_met = window;
            onWindow(*window);
            return;
        }
        const QString name = qobject_cast<QFileDialog *>(window)   ? "QFileDialog"
                             : qobject_cast<QMessageBox *>(window) ? "QMessageBox"
                                                                   : window->objectName();
        const QString next = m_answers.isEmpty() ? QString() : m_answers.takeFirst();
        const QString answer = next.section(' ', 1);
        m_seen << name + ' ' + answer;
        if (next.section(' ', 0, 0) != name || !give(*window, answer)) {
            m_seen.last() += '!';
            static_cast<QDialog *>(window)->reject();
        }
    }
    bool give(QWidget &window, const QString &answer) {
        if (answer == "Esc") {
            QTest::keyClick(&window, Qt::Key_Escape);
            return true;
        }
        if (answer == "Close") {
            return window.close();
        }
        if (auto *files = qobject_cast<QFileDialog *>(&window)) {
            const bool saves = files->acceptMode() == QFileDialog::AcceptSave;
            files->findChild<QLineEdit *>("fileNameEdit")->setText(saves ? m_savePath : m_openPath);
            static_cast<QDialog *>(files)->accept();
            return answer == "OK";
        }
        if (auto *question = qobject_cast<QMessageBox *>(&window)) {
            question->button(answer == "Yes" ? QMessageBox::Yes : QMessageBox::No)->click();
            return true;
        }
        if (answer == "OK") {
            fill(window);
        }
        auto *button = window.findChild<QAbstractButton *>(answer == "More" ? "cmdAdvCMDLG" : "cmd" + answer);
        if (button != nullptr) {
            QTest::mouseClick(button, Qt::LeftButton);
        }
        return button != nullptr;
    }
    void fill(QWidget &window) const {
        auto *txtFile = window.findChild<QLineEdit *>("txtFile");
        if (auto *cboFilter = window.findChild<QComboBox *>("cboFilter")) {
            cboFilter->setCurrentText("PNG Files (*.png)");
            txtFile->setText(QFileInfo(m_savePath).completeBaseName());
        } else {
            txtFile->setText(QFileInfo(m_openPath).fileName());
        }
    }

    QStringList m_answers, m_seen;
    QPointer<QWidget> m_met;
    QString m_savePath, m_openPath;
};

enum class Way { Open, Save, Exit, CloseWindow, Drop, Paste };
const char *const wayNames[] = {"Open", "Save", "Exit", "CloseWindow", "Drop", "Paste"};

enum Where { Empty, Taken, Unwritable }; // the place that the photo is saved to

/// What there is at the end.
enum class Photo { Mine, Other };
enum class Changes { None, Unsaved };
enum class File { Untouched, Written };
enum class User { Stays, Leaves };

struct Row {
    QList<Way> ways;
    QList<const char *> styles;
    Changes before;
    const char *answers;
    Photo photo;
    Changes after;
    File file = File::Untouched;
    User user = User::Stays;
    Where where = Empty;
};

class PhotoCommandsTest : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        ASSERT_TRUE(QDir().mkpath(m_photos));
        ASSERT_TRUE(writePicture(m_other, m_photos + "/other.png").ok());
        test::writeSetting(context, "Welcome", "Show", "0");
        test::writeSetting(context, "MyDocs", "Value", "0");
    }
    void TearDown() override { QGuiApplication::clipboard()->clear(); }

    /// Everything as it is before a row.
    void prepare(const char *style, Where where) {
        test::writeSetting(context, "Dialogs", "Style", style);
        // Not even root can write there.
        m_target = where == Unwritable ? "/proc/self" : m_photos;
        test::writeSetting(context, "Working Directory", "Path", m_target);
        m_target += "/trip.png";
        QFile::remove(m_photos + "/trip.png");
        if (where == Taken) {
            ASSERT_TRUE(writePicture(m_old, m_target).ok());
        }
    }
    void open(frmMain &window, Changes changes) {
        context.photo.openPicture({.picture = m_mine, .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        if (changes == Changes::Unsaved) {
            context.photo.changePhoto(m_changed);
        }
        window.fitPhoto();
    }
    void drop(frmMain &window) const {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(m_photos + "/other.png")});
        test::dropOn(window, data); // refused while a question is open
    }
    void go(frmMain &window, Way way) const {
        switch (way) {
        case Way::Open:
            return window.findChild<PictureButton *>("cmdOpen")->click();
        case Way::Save:
            return window.findChild<PictureButton *>("cmdSave")->click();
        case Way::Exit:
            return window.findChild<PictureButton *>("cmdExit")->click();
        case Way::CloseWindow:
            EXPECT_FALSE(window.close()) << "who leaves decides when the window goes";
            return;
        case Way::Drop:
            return drop(window);
        case Way::Paste:
            QGuiApplication::clipboard()->setImage(m_other);
            return window.findChild<CommandBar *>("Toolbar1")->button("keyPaste")->click();
        }
    }
    /// Until all is answered and what the last answer set off has happened.
    static void settle(const Hand &hand) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return hand.rests(); }));
        for (int turn = 0; turn < 5; ++turn) {
            QTest::qWait(0);
        }
        EXPECT_TRUE(QTest::qWaitFor([&] { return hand.rests(); }));
    }
    void play(const Row &row, Way way, const char *style) {
        SCOPED_TRACE(testing::Message() << wayNames[static_cast<int>(way)] << ", style " << style << ", "
                                        << (row.before == Changes::Unsaved ? "changed" : "unchanged") << ": "
                                        << row.answers);
        prepare(style, row.where);
        frmMain window(context);
        window.show();
        open(window, row.before);
        QSignalSpy left(&window, &frmMain::leave);
        int thrownAway = 0;
        QObject::connect(&context.photo, &PhotoDocument::thrownAway, &window, [&](const KeptPhoto &photo) {
            ++thrownAway;
            EXPECT_EQ(photo.picture, m_changed);
        });
        Hand hand(row.answers, m_target, m_photos + "/other.png");
        go(window, way);
        settle(hand);
        EXPECT_EQ(hand.seen(), row.answers);
        const QImage &mine = row.before == Changes::Unsaved ? m_changed : m_mine;
        EXPECT_EQ(context.photo.picCanvas(), row.photo == Photo::Mine ? mine : m_other);
        EXPECT_EQ(context.photo.PhotoModified(), row.after == Changes::Unsaved);
        EXPECT_EQ(left.count(), row.user == User::Leaves ? 1 : 0);
        const bool givenUp = QString(row.answers).contains("No") && row.before == Changes::Unsaved &&
                             (row.photo == Photo::Other || row.user == User::Leaves);
        EXPECT_EQ(thrownAway, givenUp ? 1 : 0) << "once the photo is really gone";
        const QImage file = readPicture(m_target).picture;
        if (row.file == File::Written) {
            EXPECT_EQ(file, mine);
        } else {
            EXPECT_EQ(file, row.where == Taken ? m_old : QImage());
        }
    }

    const QString m_photos = m_folder.filePath("photos");
    const QImage m_mine = test::photoLike(60, 40);
    const QImage m_changed = test::photoLike(40, 60);
    const QImage m_other = test::photoLike(50, 50);
    const QImage m_old = test::photoLike(20, 20);
    QString m_target;
};

TEST_F(PhotoCommandsTest, EveryAnswerOnEveryWay) {
    using enum Way;
    using enum Photo;
    using enum Changes;
    using enum File;
    using enum User;
    const Row rows[] = {
        // Nothing to lose: nothing is asked before a photo comes.
        {{Open}, {"0"}, None, "frmSimpleOpen OK", Other, None},
        {{Open}, {"0"}, None, "frmSimpleOpen Cancel", Mine, None},
        {{Open}, {"0"}, None, "frmSimpleOpen Esc", Mine, None},
        {{Open}, {"0"}, None, "frmSimpleOpen More, QFileDialog OK", Other, None},
        {{Open}, {"0"}, None, "frmSimpleOpen More, QFileDialog Esc", Mine, None},
        {{Open}, {"1"}, None, "QFileDialog OK", Other, None},
        {{Open}, {"1"}, None, "QFileDialog Esc", Mine, None},
        {{Drop, Paste}, {"0", "1", "2"}, None, "", Other, None},
        // An unknown style opens and saves nothing.
        {{Open, Save}, {"2"}, None, "", Mine, None},
        {{Open}, {"2"}, Unsaved, "frmSave2 Yes", Mine, Unsaved},
        {{Open}, {"2"}, Unsaved, "frmSave2 No", Mine, Unsaved},
        {{Exit}, {"2"}, Unsaved, "frmSave Yes", Mine, Unsaved},

        // Changes: staying where one was.
        {{Open, Drop, Paste}, {"0", "1"}, Unsaved, "frmSave2 Esc", Mine, Unsaved},
        {{Open, Drop, Paste}, {"0", "1"}, Unsaved, "frmSave2 Exit", Mine, Unsaved},
        {{Open, Drop, Paste}, {"0", "1"}, Unsaved, "frmSave2 Close", Mine, Unsaved},
        // Giving the changes up. The big open dialog leaves the mark of a change as it is.
        {{Open}, {"0"}, Unsaved, "frmSave2 No, frmSimpleOpen2 OK", Other, Unsaved},
        {{Open}, {"0"}, Unsaved, "frmSave2 No, frmSimpleOpen2 Cancel", Mine, Unsaved},
        {{Open}, {"0"}, Unsaved, "frmSave2 No, frmSimpleOpen2 More, QFileDialog OK", Other, None},
        {{Open}, {"1"}, Unsaved, "frmSave2 No, QFileDialog OK", Other, None},
        {{Open}, {"1"}, Unsaved, "frmSave2 No, QFileDialog Esc", Mine, Unsaved},
        {{Drop, Paste}, {"0", "1"}, Unsaved, "frmSave2 No", Other, None},
        // Saving them first: the other photo comes once that has happened.
        {{Open}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave OK, frmSimpleOpen2 OK", Other, None, Written},
        {{Open}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave OK, frmSimpleOpen2 Esc", Mine, None, Written},
        {{Open},
         {"0"},
         Unsaved,
         "frmSave2 Yes, frmSimpleSave OK, frmOverwrite Yes, frmSimpleOpen2 OK",
         Other,
         None,
         Written,
         Stays,
         Taken},
        {{Open},
         {"0"},
         Unsaved,
         "frmSave2 Yes, frmSimpleSave More, QFileDialog OK, frmSimpleOpen2 OK",
         Other,
         None,
         Written},
        {{Open}, {"1"}, Unsaved, "frmSave2 Yes, QFileDialog OK, QFileDialog OK", Other, None, Written},
        {{Open}, {"1"}, Unsaved, "frmSave2 Yes, QFileDialog OK, QFileDialog Esc", Mine, None, Written},
        {{Drop, Paste}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave OK", Other, None, Written},
        {{Drop, Paste}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave More, QFileDialog OK", Other, None, Written},
        {{Drop, Paste}, {"1"}, Unsaved, "frmSave2 Yes, QFileDialog OK", Other, None, Written},
        // And does not when it was cancelled, refused or failed.
        {{Open, Drop, Paste}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave Cancel", Mine, Unsaved},
        {{Open, Drop, Paste}, {"0"}, Unsaved, "frmSave2 Yes, frmSimpleSave More, QFileDialog Esc", Mine, Unsaved},
        {{Open, Drop, Paste},
         {"0"},
         Unsaved,
         "frmSave2 Yes, frmSimpleSave OK, frmOverwrite No",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Taken},
        {{Open, Drop, Paste},
         {"0"},
         Unsaved,
         "frmSave2 Yes, frmSimpleSave OK, frmOverwrite Esc",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Taken},
        {{Open, Drop, Paste},
         {"0"},
         Unsaved,
         "frmSave2 Yes, frmSimpleSave OK",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Unwritable},
        {{Open, Drop, Paste}, {"1"}, Unsaved, "frmSave2 Yes, QFileDialog Esc", Mine, Unsaved},
        {{Open, Drop, Paste},
         {"1"},
         Unsaved,
         "frmSave2 Yes, QFileDialog OK",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Unwritable},

        // The Save button.
        {{Save}, {"0"}, Unsaved, "frmSimpleSave OK", Mine, None, Written},
        {{Save}, {"0"}, Unsaved, "frmSimpleSave Esc", Mine, Unsaved},
        {{Save}, {"0"}, Unsaved, "frmSimpleSave More, QFileDialog OK", Mine, None, Written},
        {{Save}, {"0"}, Unsaved, "frmSimpleSave OK, frmOverwrite Yes", Mine, None, Written, Stays, Taken},
        {{Save}, {"0"}, Unsaved, "frmSimpleSave OK, frmOverwrite No", Mine, Unsaved, Untouched, Stays, Taken},
        {{Save}, {"0"}, Unsaved, "frmSimpleSave OK", Mine, Unsaved, Untouched, Stays, Unwritable},
        {{Save}, {"1"}, Unsaved, "QFileDialog OK", Mine, None, Written},
        {{Save}, {"1"}, Unsaved, "QFileDialog Esc", Mine, Unsaved},

        // Leaving: by the Exit button, or as the window manager closes a window.
        {{Exit, CloseWindow}, {"0", "1"}, None, "frmExit Yes", Mine, None, Untouched, Leaves},
        {{Exit, CloseWindow}, {"0", "1"}, None, "frmExit No", Mine, None},
        {{Exit, CloseWindow}, {"0", "1"}, None, "frmExit Esc", Mine, None},
        {{Exit, CloseWindow}, {"0", "1"}, None, "frmExit Close", Mine, None},
        {{Exit, CloseWindow}, {"0", "1"}, Unsaved, "frmSave Esc", Mine, Unsaved},
        {{Exit, CloseWindow}, {"0", "1"}, Unsaved, "frmSave Exit", Mine, Unsaved},
        {{Exit, CloseWindow}, {"0", "1"}, Unsaved, "frmSave Close", Mine, Unsaved},
        {{Exit, CloseWindow}, {"0", "1", "2"}, Unsaved, "frmSave No", Mine, Unsaved, Untouched, Leaves},
        {{Exit, CloseWindow}, {"1"}, Unsaved, "frmSave Yes, QFileDialog OK", Mine, None, Written, Leaves},
        {{Exit, CloseWindow}, {"1"}, Unsaved, "frmSave Yes, QFileDialog Esc", Mine, Unsaved},
        {{Exit, CloseWindow},
         {"1"},
         Unsaved,
         "frmSave Yes, QFileDialog OK",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Unwritable},
        // The big save dialog of this way asks nothing more and leaves the mark of a change as it is.
        {{Exit, CloseWindow}, {"0"}, Unsaved, "frmSave Yes, frmSimpleSave2 OK", Mine, Unsaved, Written, Leaves},
        {{Exit, CloseWindow}, {"0"}, Unsaved, "frmSave Yes, frmSimpleSave2 OK", Mine, Unsaved, Written, Leaves, Taken},
        {{Exit, CloseWindow}, {"0"}, Unsaved, "frmSave Yes, frmSimpleSave2 Cancel", Mine, Unsaved},
        {{Exit, CloseWindow},
         {"0"},
         Unsaved,
         "frmSave Yes, frmSimpleSave2 More, QFileDialog OK",
         Mine,
         None,
         Written,
         Leaves},
        {{Exit, CloseWindow}, {"0"}, Unsaved, "frmSave Yes, frmSimpleSave2 More, QFileDialog Esc", Mine, Unsaved},
        {{Exit, CloseWindow},
         {"0"},
         Unsaved,
         "frmSave Yes, frmSimpleSave2 OK",
         Mine,
         Unsaved,
         Untouched,
         Stays,
         Unwritable},
    };
    for (const Row &row : rows) {
        for (const Way way : row.ways) {
            for (const char *style : row.styles) {
                play(row, way, style);
            }
        }
    }
}

TEST_F(PhotoCommandsTest, TheSystemsDialogsBeginWhereTheyShould) {
    struct Case {
        Way way;
        const char *style, *answers, *title, *filter;
        bool workingDirectory; // although the settings say: the documents folder
    };
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", m_folder.path().toUtf8());
    const QString documents = GetSpecialFolderPath(5);
    ASSERT_TRUE(QDir().mkpath(documents));
    const Case cases[] = {
        {Way::Open, "1", "frmSave2 No, QFileDialog Esc", "Open", "All Supported Files (*.gif *.jpg *.png *.tif *.bmp)",
         true},
        {Way::Save, "1", "QFileDialog Esc", "Save", "JPEG Files (*.jpg)", false},
        {Way::Save, "0", "frmSimpleSave More, QFileDialog Esc", "Save", "JPEG Files (*.jpg)", false},
        {Way::Exit, "1", "frmSave Yes, QFileDialog Esc", "Save", "JPEG Files (*.jpg)", false},
        {Way::Exit, "0", "frmSave Yes, frmSimpleSave2 More, QFileDialog Esc", "Save", "PNG Files (*.png)", true},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.answers);
        prepare(one.style, Empty);
        test::writeSetting(context, "MyDocs", "Value", "1");
        context.photo.CurrentFileName.clear();
        frmMain window(context);
        window.show();
        open(window, Changes::Unsaved);
        Hand hand(one.answers, m_target, {});
        int dialogs = 0;
        hand.onWindow = [&](QWidget &modal) {
            if (const auto *files = qobject_cast<QFileDialog *>(&modal)) {
                ++dialogs;
                EXPECT_EQ(files->windowTitle(), one.title);
                EXPECT_EQ(files->findChild<QComboBox *>("fileTypeCombo")->currentText(), one.filter);
                EXPECT_EQ(files->directory().path(), one.workingDirectory ? m_photos : documents);
            }
        };
        go(window, one.way);
        settle(hand);
        EXPECT_EQ(dialogs, 1);
    }
    qputenv("HOME", home);
}

TEST_F(PhotoCommandsTest, ANameGetsTheExtensionOfTheChosenType) {
    struct Case {
        const char *typed;
        int type;          // of the dialog's list
        const char *there; // a file in the same folder, or null
        const char *answers;
        const char *written;
    };
    const Case cases[] = {
        {"Mr. Fox", 2, nullptr, "QFileDialog OK", "Mr. Fox.jpg"},
        {"24.12.2024", 1, nullptr, "QFileDialog OK", "24.12.2024.gif"},
        {"trip", 5, nullptr, "QFileDialog OK", "trip.jpg"},
        {"trip.tga", 2, nullptr, "QFileDialog OK", "trip.tga"},
        {"Trip.JPE", 2, nullptr, "QFileDialog OK", "Trip.JPE"},
        {"trip", 3, "trip.png", "QFileDialog OK, frmOverwrite Yes", "trip.png"},
        {"trip", 3, "trip.png", "QFileDialog OK, frmOverwrite No", nullptr},
        {"trip", 3, "trip", "QFileDialog OK, QMessageBox Yes", "trip.png"},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(testing::Message() << one.typed << ": " << one.answers);
        prepare("1", Empty);
        QDir(m_photos).removeRecursively();
        QDir().mkpath(m_photos);
        if (one.there != nullptr) {
            ASSERT_TRUE(writePicture(m_old, m_folder.filePath("old.png")).ok());
            ASSERT_TRUE(QFile::copy(m_folder.filePath("old.png"), m_photos + '/' + one.there));
        }
        frmMain window(context);
        window.show();
        open(window, Changes::Unsaved);
        Hand hand(one.answers, m_photos + '/' + one.typed, {});
        hand.onWindow = [&](QWidget &modal) {
            if (auto *files = qobject_cast<QFileDialog *>(&modal)) {
                files->selectNameFilter(files->nameFilters().at(one.type));
            }
        };
        go(window, Way::Save);
        settle(hand);
        EXPECT_EQ(hand.seen(), one.answers);
        EXPECT_EQ(context.photo.PhotoModified(), one.written == nullptr);
        QStringList expected = {one.there, one.written};
        expected.removeDuplicates();
        expected.removeAll(QString());
        EXPECT_EQ(QDir(m_photos).entryList(QDir::Files, QDir::Name), expected);
        if (one.there != nullptr && one.written != QByteArray(one.there)) {
            EXPECT_EQ(readPicture(m_photos + '/' + one.there).picture, m_old);
        }
    }
}

TEST_F(PhotoCommandsTest, APhotoDroppedDuringAQuestionIsRefused) {
    for (const char *answers : {"frmSave2 Esc", "frmSave2 Yes, frmSimpleSave Cancel"}) {
        prepare("0", Empty);
        frmMain window(context);
        window.show();
        open(window, Changes::Unsaved);
        Hand hand(answers, m_target, {});
        int drops = 0;
        hand.onWindow = [&](QWidget &) {
            if (drops++ < 2) {
                drop(window);
            }
        };
        go(window, Way::Open);
        settle(hand);
        EXPECT_EQ(hand.seen(), answers);
        EXPECT_EQ(context.photo.picCanvas(), m_changed);
    }
}

} // namespace
} // namespace lumora
