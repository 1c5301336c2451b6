// Whether captions of the main window are whole in several languages, and in one with long words: the colour focus
// panel, the tip of the crop panel, and Simple mode's tool column, which fills its height.
#include "window/frmMain.h"

#include "base/Texts.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "view/PhotoView.h"
#include "widgets/FittingLabel.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/Theme.h"

#include <QFile>
#include <QTest>
#include <QTextLayout>
#include <map>

namespace lumora {
namespace {

class MainCaptions : public test::Shell, public testing::WithParamInterface<const char *> {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); } // the font that the captions have
    void SetUp() override {
        test::Shell::SetUp();
        const QString language = GetParam();
        const QString shipped = qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/";
        const QString file = m_folder.filePath("language.ini");
        if (language == "long") {
            writeLongTexts(file);
        } else {
            ASSERT_TRUE(QFile::copy(
                shipped + (language == "en" ? "language.ini" : "languages/language-" + language + ".ini"), file));
        }
        m_context = std::make_unique<AppContext>(Installation{m_folder.path()});
        test::writeSetting(*m_context, "Tips", "Crop", "1");
    }
    /// Half as long again, with the words that are there.
    static void writeLongTexts(const QString &file) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        for (const TextRow &row : allTexts()) {
            const QString text = row.defaultText;
            const QString more = text.contains('%') ? QString() : ' ' + text.left(text.size() / 2).trimmed();
            out.write(QStringLiteral("[%1]\nCaption=%2\n").arg(row.identifier, text + more).toUtf8());
        }
    }
    void show(frmMain &window, QSize size = {1024, 768}) {
        window.setStartupPhotoPath("/no/such/photo.jpg");
        window.show();
        QTest::qWait(1); // it was maximised
        window.setGeometry(QRect({}, size));
        m_context->photo.openPicture({.picture = test::photoLike(600, 400), .reason = {}},
                                     PhotoDocument::OpenRoute::LoadPhoto);
        window.fitPhoto();
        QTest::qWait(1);
        ASSERT_EQ(window.size(), size);
    }
    template <typename Control> Control *control(const frmMain &window, const QString &name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    static QRect inWindow(const QWidget &part) { return {part.mapTo(part.window(), QPoint()), part.size()}; }
    /// In one line, or below its picture in two.
    static bool isCaptionWhole(const PictureButton &button) {
        const bool below = button.captionPlace() == PictureButton::CaptionPlace::Below;
        const QString caption = plainCaption(button.text());
        if (!below) {
            return button.width() >= button.sizeHint().width();
        }
        QTextLayout layout(caption, button.font());
        const int room = button.width() - 6;
        int lines = 0;
        bool fits = true;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine(), ++lines) {
            line.setLineWidth(room);
            fits = fits && line.naturalTextWidth() <= room;
        }
        layout.endLayout();
        return fits && lines <= 2;
    }
    SlidingPanel *openPanel(const frmMain &window, const char *tool, const char *name) {
        control<PictureButton>(window, tool)->click();
        auto *panel = control<SlidingPanel>(window, name);
        EXPECT_TRUE(QTest::qWaitFor([&] { return panel->isOpen() && !panel->isSliding(); }));
        QCoreApplication::processEvents(); // the layout
        return panel;
    }

    std::unique_ptr<AppContext> m_context;
};

TEST_P(MainCaptions, ColourFocusSaysAllOfIt) {
    frmMain window(*m_context);
    show(window);
    const SlidingPanel *panel = openPanel(window, "cmdTool11", "pnlColourFocus");
    int looked = 0;
    for (const QLabel *label : panel->findChildren<QLabel *>()) {
        if (!label->isVisible() || label->text().isEmpty()) {
            continue;
        }
        ++looked;
        const auto *fitting = qobject_cast<const FittingLabel *>(label);
        const QSize needed =
            label->fontMetrics()
                .boundingRect({0, 0, label->width(), 1000}, label->wordWrap() ? Qt::TextWordWrap : 0, label->text())
                .size();
        const bool whole = fitting != nullptr ? fitting->isTextWhole()
                                              : needed.width() <= label->width() && needed.height() <= label->height();
        EXPECT_TRUE(whole) << label->objectName().toStdString() << ": " << label->text().toStdString();
        EXPECT_TRUE(window.rect().contains(inWindow(*label))) << label->objectName().toStdString();
    }
    EXPECT_GE(looked, 4);
    for (const PictureButton *button : panel->findChildren<PictureButton *>()) {
        if (button->isVisible() && !button->text().isEmpty() &&
            button->captionPlace() != PictureButton::CaptionPlace::None) {
            EXPECT_TRUE(isCaptionWhole(*button)) << button->text().toStdString();
            EXPECT_TRUE(window.rect().contains(inWindow(*button))) << button->text().toStdString();
        }
    }
}

TEST_P(MainCaptions, TheCropTipCoversNeitherTitleNorButton) {
    frmMain window(*m_context);
    for (const QSize size : {QSize(1024, 768), QSize(1920, 1080)}) {
        show(window, size);
        const SlidingPanel *panel = openPanel(window, "cmdTool3", "pnlCrop");
        QTest::keyClick(window.view(), Qt::Key_Right);
        const auto *tip = control<QWidget>(window, "picTip2");
        ASSERT_TRUE(QTest::qWaitFor([&] { return tip->isVisible(); }));
        const QRect bubble = tip->geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
        EXPECT_TRUE(window.rect().contains(bubble));
        EXPECT_FALSE(bubble.intersects(inWindow(*control<QWidget>(window, "cmdCropNow"))));
        const QLabel *title = panel->titleLabel();
        QRect words = inWindow(*title);
        words.setHeight(title->fontMetrics().ascent());
        words.moveCenter(inWindow(*title).center());
        EXPECT_FALSE(bubble.intersects(words));
        control<PictureButton>(window, "cmdpnlCropExit")->click();
    }
}

TEST_P(MainCaptions, SimpleModesToolsFillTheColumn) {
    const std::map<QString, int> tops = {{"cmdTool2", 850},  {"cmdTool4", 1650}, {"cmdTool5", 2440}, {"cmdTool7", 3240},
                                         {"cmdTool8", 3240}, {"cmdTool10", 4040}}; // twips, before stretching
    for (const SimpleStart start : {SimpleStart::CommandLine, SimpleStart::Launcher}) {
        for (const QSize size : {QSize(1024, 768), QSize(1920, 1080)}) {
            SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height());
            frmMain window(*m_context);
            window.applySimpleLayout(start);
            show(window, size);
            const auto *column = control<QWidget>(window, "SidePanel1");
            EXPECT_FALSE(control<QWidget>(window, "cmdPageDown")->isVisible());
            const auto *last =
                control<PictureButton>(window, start == SimpleStart::Launcher ? "cmdTool10" : "cmdCropCut");
            EXPECT_NEAR(inWindow(*last).bottom(), inWindow(*column).bottom(), 6);
            const double scale = control<QWidget>(window, "cmdTool10")->y() / 4040.0;
            const int axis = control<QWidget>(window, "cmdTool1")->geometry().center().x();
            for (const auto &[name, top] : tops) {
                const auto *button = control<PictureButton>(window, name);
                EXPECT_NEAR(button->y(), top * scale, 1) << name.toStdString();
                EXPECT_TRUE(isCaptionWhole(*button)) << button->text().toStdString();
                EXPECT_EQ(button->captionPlace(), PictureButton::CaptionPlace::Below);
                EXPECT_GE(button->pictureSize().width(), 24) << name.toStdString();
                EXPECT_LE(button->leastHeightAt(button->width()), button->height()) << name.toStdString();
                if (name != "cmdTool7" && name != "cmdTool8") {
                    EXPECT_EQ(button->geometry().center().x(), axis) << name.toStdString();
                }
            }
            const auto *seven = control<PictureButton>(window, "cmdTool7");
            const auto *eight = control<PictureButton>(window, "cmdTool8");
            EXPECT_EQ(seven->pictureSize(), eight->pictureSize());
            EXPECT_FALSE(seven->geometry().intersects(eight->geometry()));
            for (const auto &[tool, bar] : {std::pair("cmdTool7", "FT5"), std::pair("cmdTool8", "FT3")}) {
                control<PictureButton>(window, tool)->click();
                const auto *shown = control<FloatingToolbar>(window, bar);
                ASSERT_TRUE(shown->isVisible());
                const QRect panel =
                    shown->geometry().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
                EXPECT_FALSE(panel.intersects(inWindow(*column))) << bar;
                control<PictureButton>(window, tool)->click();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, MainCaptions, testing::Values("en", "de", "fr", "ar", "ja", "long"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace
} // namespace lumora
