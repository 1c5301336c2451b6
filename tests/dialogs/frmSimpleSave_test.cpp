#include "dialogs/frmSimpleSave.h"

#include "DialogTest.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace lumora {
namespace {

class frmSimpleSaveTest : public DialogTest {
  protected:
    struct Outcome {
        frmSimpleSave::Result result;
        QString path;
    };
    Outcome save(const std::function<void(QWidget &)> &hand, const QString &form = "frmSimpleSave") {
        Outcome outcome{};
        play(
            [&] {
                frmSimpleSave dialog(context(), form, nullptr);
                outcome.result = dialog.ask();
                outcome.path = dialog.path();
            },
            hand);
        return outcome;
    }
    static void type(QWidget &window, const QString &name) {
        QTest::keyClicks(control<QLineEdit>(window, "txtFile"), name);
    }
};

TEST_F(frmSimpleSaveTest, TheTypeAlwaysAppendsItsExtension) {
    struct Row {
        int position;
        const char *entry;
        const char *typed;
        const char *name;
    };
    const Row rows[] = {
        {0, "BMP Files (*.bmp)", "trip", "trip.bmp"},           {1, "JPEG Files (*.jpg)", "trip", "trip.jpg"},
        {2, "PNG Files (*.png)", "trip", "trip.png"},           {3, "GIF Files (*.gif)", "trip", "trip.gif"},
        {4, "TIFF Files (*.tif)", "trip", "trip.tif"},          {5, "TGA Files (*.tga)", "trip", "trip.tga"},
        {0, "BMP Files (*.bmp)", "beach.jpg", "beach.jpg.bmp"}, {1, "JPEG Files (*.jpg)", "a.jpg", "a.jpg.jpg"},
        {2, "PNG Files (*.png)", "our day", "our day.png"},
    };
    for (const char *form : {"frmSimpleSave", "frmSimpleSave2"}) {
        for (const Row &row : rows) {
            const Outcome outcome = save(
                [&](QWidget &window) {
                    EXPECT_EQ(window.objectName(), form);
                    auto *cboFilter = control<QComboBox>(window, "cboFilter");
                    EXPECT_EQ(cboFilter->count(), 6);
                    EXPECT_EQ(cboFilter->itemText(row.position), row.entry);
                    cboFilter->setCurrentIndex(row.position);
                    type(window, row.typed);
                    EXPECT_EQ(control<QLabel>(window, "lblResult")->text(), row.name) << "shown before Save is pressed";
                    click(window, "cmdOK");
                },
                form);
            EXPECT_EQ(outcome.result, frmSimpleSave::Result::Save);
            EXPECT_EQ(outcome.path, photos() + '/' + row.name);
        }
    }
    EXPECT_EQ(simpleSaveName("trip", -1), "");
    EXPECT_EQ(simpleSaveName("trip", 6), "trip.pdf");
    EXPECT_EQ(simpleSaveName("trip", 7), "");
}

TEST_F(frmSimpleSaveTest, APageIsSavedAsAPdfFileOnly) {
    QString path;
    play(
        [&] {
            frmSimpleSave dialog(context(), "frmSimpleSave", nullptr, frmSimpleSave::Saves::PdfPage);
            EXPECT_EQ(dialog.ask(), frmSimpleSave::Result::Save);
            path = dialog.path();
        },
        [](QWidget &window) {
            const auto *types = control<QComboBox>(window, "cboFilter");
            EXPECT_EQ(types->count(), 1);
            EXPECT_EQ(types->currentText(), "PDF Files (*.pdf)");
            EXPECT_TRUE(control<QWidget>(window, "cmdAdvCMDLG")->isHidden()) << "the system's dialog is for photos";
            click(window, "cmdOK");
        });
    EXPECT_EQ(path, photos() + "/my picture.pdf");
}

TEST_F(frmSimpleSaveTest, BeginsAsAJpegWithANameThatIsNew) {
    const auto look = [&](const QString &name) {
        save([&](QWidget &window) {
            auto *txtFile = control<QLineEdit>(window, "txtFile");
            EXPECT_EQ(control<QComboBox>(window, "cboFilter")->currentIndex(), 1);
            EXPECT_EQ(control<QLabel>(window, "lblCaption")->text(), "Save As - " + photos());
            EXPECT_EQ(control<QLineEdit>(window, "txtPath")->text(), photos());
            EXPECT_EQ(txtFile->text(), name);
            EXPECT_EQ(control<QLabel>(window, "lblResult")->text(), name + ".jpg");
            auto *cmdOK = control<QAbstractButton>(window, "cmdOK");
            EXPECT_TRUE(cmdOK->isEnabled());
            type(window, "a");
            EXPECT_EQ(txtFile->text(), "a") << "typing replaces it";
            QTest::keyClick(txtFile, Qt::Key_Backspace);
            EXPECT_FALSE(cmdOK->isEnabled());
        });
    };
    look("my picture");
    // Taken by a file of any type, and in any spelling.
    for (const char *taken : {"My Picture.png", "my picture 2.JPG", "my picture 4.jpg"}) {
        QFile file(photos() + '/' + taken);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    look("my picture 3");
    EXPECT_EQ(freeSaveName(photos() + "/nowhere", "my picture"), "my picture");
}

TEST_F(frmSimpleSaveTest, OffersATypeThatKeepsTheHolesAndShowsThem) {
    QImage photo(120, 90, QImage::Format_ARGB32);
    photo.fill(Qt::transparent);
    photo.setPixel(0, 0, qRgb(255, 0, 0));
    context().photo.openPicture({photo, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
    for (const char *form : {"frmSimpleSave", "frmSimpleSave2"}) {
        save(
            [](QWidget &window) {
                auto *types = control<QComboBox>(window, "cboFilter");
                EXPECT_EQ(types->currentText(), "PNG Files (*.png)");
                for (int type = 0; type < types->count(); ++type) {
                    types->setCurrentIndex(type);
                    const QImage shown = control<QLabel>(window, "picPhoto")->pixmap().toImage();
                    bool white = true;
                    for (int x = shown.width() / 4; x < shown.width(); ++x) {
                        white = white && shown.pixelColor(x, shown.height() / 2) == Qt::white;
                    }
                    EXPECT_EQ(white, type < 2) << types->currentText().toStdString(); // BMP and JPEG
                }
            },
            form);
    }
}

TEST_F(frmSimpleSaveTest, OtherWaysToCloseIt) {
    using Result = frmSimpleSave::Result;
    struct Row {
        const char *name;
        std::function<void(QWidget &)> hand;
        Result result;
    };
    const Row rows[] = {
        {"Enter", [](QWidget &w) { QTest::keyClick(control<QLineEdit>(w, "txtFile"), Qt::Key_Return); }, Result::Save},
        {"Cancel", [](QWidget &w) { click(w, "cmdCancel"); }, Result::Cancelled},
        {"Esc", [](QWidget &w) { QTest::keyClick(&w, Qt::Key_Escape); }, Result::Cancelled},
        {"More...", [](QWidget &w) { click(w, "cmdAdvCMDLG"); }, Result::More},
        {"no type",
         [](QWidget &w) {
             control<QComboBox>(w, "cboFilter")->setCurrentIndex(-1);
             click(w, "cmdOK");
             EXPECT_TRUE(w.isVisible());
         },
         Result::Cancelled},
    };
    for (const Row &row : rows) {
        context().photo.CurrentFileName = "before";
        const Outcome outcome = save([&](QWidget &window) {
            type(window, "trip");
            row.hand(window);
        });
        EXPECT_EQ(outcome.result, row.result) << row.name;
        EXPECT_EQ(context().photo.CurrentFileName, row.result == Result::More ? photos() : QString("before"));
    }
    EXPECT_TRUE(QDir(photos()).isEmpty()) << "the dialog writes nothing";
}

TEST_F(frmSimpleSaveTest, InvalidFileNameCharactersAreRemoved) {
    const std::pair<QString, QString> rows[] = {
        {"a/b", "ab"},        {"../up", "..up"}, {"/", ""}, {QString("x%1y").arg(QChar(QChar::Null)), "xy"},
        {"Möwe 🐦", "Möwe 🐦"},
    };
    save([&](QWidget &window) {
        auto *txtFile = control<QLineEdit>(window, "txtFile");
        for (const auto &[typed, kept] : rows) {
            txtFile->clear();
            txtFile->insert(typed);
            EXPECT_EQ(txtFile->text(), kept);
        }
        txtFile->setText(QString::fromUtf8("🐦").repeated(200));
        EXPECT_LE(txtFile->text().toUtf8().size(), 251);
        EXPECT_TRUE(txtFile->text().endsWith(QString::fromUtf8("🐦"))) << "no half of a character is left";
    });
}

TEST_F(frmSimpleSaveTest, AMissingFolderIsCreatedAndAnInvalidOneReported) {
    QDir(photos()).removeRecursively();
    const auto saveTrip = [](QWidget &window) {
        type(window, "trip");
        click(window, "cmdOK");
    };
    EXPECT_EQ(save(saveTrip).result, frmSimpleSave::Result::Save);
    EXPECT_TRUE(QFileInfo(photos()).isDir());

    QDir(photos()).removeRecursively();
    writeFile("photos", "a file stands where the folder should");
    save([&](QWidget &window) {
        type(window, "trip");
        const QStringList messages = messagesDuring([&] { click(window, "cmdOK"); });
        ASSERT_EQ(messages.size(), 1);
        EXPECT_TRUE(messages[0].startsWith("critical/Error/" + photos()));
        EXPECT_TRUE(window.isVisible()) << "another try is possible";
    });
}

} // namespace
} // namespace lumora
