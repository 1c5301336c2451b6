// Every window, with a language file that changes every text: anything still shown unchanged is hard-coded.
#include "app/frmLauncher.h"
#include "app/frmSplash.h"
#include "dialogs/frmPrompt.h"
#include "dialogs/frmSimpleOpen.h"
#include "dialogs/frmSimpleSave.h"
#include "guide/frmHelp.h"
#include "ideas/frmSamples.h"
#include "options/frmMailServer.h"
#include "options/frmOptions.h"
#include "output/mail/frmMailPassword.h"
#include "support/ShellCheck.h"
#include "support/TestPictures.h"
#include "support/TextCheck.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/PictureButton.h"
#include "window/frmMain.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>

namespace lumora {
namespace {

class VisibleTexts : public test::Shell {
  protected:
    void SetUp() override {
        Shell::SetUp();
        ASSERT_TRUE(test::writeChangedLanguageFile(context.installation.languageFile()));
        context.photo.openPicture({.picture = test::photoLike(120, 80), .reason = {}},
                                  PhotoDocument::OpenRoute::LoadPhoto);
    }
    static void look(QWidget &window, const QString &when = {}) {
        window.show();
        QCoreApplication::processEvents();
        const QStringList found = test::textsOfTheCode(window);
        EXPECT_TRUE(found.isEmpty()) << qPrintable(window.objectName() + ' ' + when + ": " + found.join("\n"));
        window.hide();
    }
};

TEST_F(VisibleTexts, OfTheCodeAreFound) {
    QWidget window;
    auto *label = new QLabel("640 x 480", &window);
    label->setObjectName("lblSize");
    label->setToolTip("/home/anna/Photos");
    (new QLineEdit(&window))->setText("my cat");
    auto *list = new QComboBox(&window);
    list->setObjectName("cboTypes");
    list->addItems({context.texts.text("Open") + " (*.bmp)", "Pictures"});
    EXPECT_EQ(test::textsOfTheCode(window), (QStringList{"lblSize text: 640 x 480", "cboTypes item: Pictures"}));
}

TEST_F(VisibleTexts, OfTheWindowsComeFromTheLanguageFile) {
    // The notice of the splash has its texts in the settings file.
    context.settings.write<Setting::ScreenNotice, Writer::Notice>(Switch::Off);
    look(*std::make_unique<frmSplash>(context));
    look(*std::make_unique<frmLauncher>(context));
    look(*std::make_unique<frmOptions>(context, nullptr, "/nonexistent"));
    look(*std::make_unique<frmMailServer>(context, MailServer(), QString(), QString(), nullptr));
    look(*std::make_unique<frmMailPassword>(context, MailServer(), nullptr));
    look(*std::make_unique<frmSimpleOpen>(context, "frmSimpleOpen", nullptr));
    look(*std::make_unique<frmSimpleSave>(context, "frmSimpleSave", nullptr));
    look(*std::make_unique<frmPrompt>(context, PromptKind::Recover, nullptr, test::photoLike(40, 30)));
    look(*std::make_unique<frmHelp>(context, nullptr));
    look(*std::make_unique<frmSamples>(context, nullptr));
    for (const PromptKind kind :
         {PromptKind::Exit, PromptKind::Save, PromptKind::SaveBeforeOpen, PromptKind::Overwrite}) {
        look(*std::make_unique<frmPrompt>(context, kind, nullptr));
    }
}

TEST_F(VisibleTexts, OfTheMainWindowAndItsToolsComeFromTheLanguageFile) {
    context.settings.write<Setting::AdvancedEffects, Writer::Options>(Switch::On);
    context.settings.write<Setting::AdvancedPopart, Writer::Options>(Switch::On);
    frmMain window(context);
    look(window, "at the start");
    window.show();
    const auto press = [&](PictureButton *button, const QString &name) {
        ASSERT_NE(button, nullptr) << qPrintable(name);
        button->click();
        QCoreApplication::processEvents();
        const QStringList found = test::textsOfTheCode(window);
        EXPECT_TRUE(found.isEmpty()) << qPrintable(name + ": " + found.join("\n"));
    };
    const auto click = [&](const QString &name) { press(window.findChild<PictureButton *>(name), name); };
    for (int number = 1; number <= 11; ++number) {
        click(QString("cmdTool%1").arg(number));
    }
    click("cmdCropCut");
    for (const FloatingToolbar *bar : window.findChildren<FloatingToolbar *>()) {
        for (PictureButton *item : bar->findChildren<PictureButton *>()) {
            press(item, item->property("key").toString());
        }
    }
}

TEST_F(VisibleTexts, OfOpenWindowsChangeWithTheLanguage) {
    ASSERT_TRUE(QFile::remove(context.installation.languageFile()));
    context.ini.lookAgain();
    frmMain window(context);
    frmLauncher launcher(context);
    window.show();
    launcher.show();
    const auto openAll = [&] {
        for (int number = 1; number <= 11; ++number) {
            window.findChild<PictureButton *>(QString("cmdTool%1").arg(number))->click();
            QCoreApplication::processEvents();
        }
        window.HideBoxes();
        window.ResetTools();
    };
    openAll();
    EXPECT_FALSE(test::textsOfTheCode(window).isEmpty()) << "the check must fail before";
    ASSERT_TRUE(test::writeChangedLanguageFile(context.installation.languageFile()));
    context.ini.lookAgain();
    for (QWidget *open : std::initializer_list<QWidget *>{&window, &launcher}) {
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(open, &change);
        openAll(); // a panel reads its title when it opens
        const QStringList found = test::textsOfTheCode(*open);
        EXPECT_TRUE(found.isEmpty()) << qPrintable(open->objectName() + ": " + found.join("\n"));
    }
}

} // namespace
} // namespace lumora
