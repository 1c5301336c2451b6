#include "dialogs/frmPrompt.h"

#include "DialogTest.h"

#include <QLabel>

namespace lumora {
namespace {

using frmPromptTest = DialogTest;

struct Question {
    PromptKind kind;
    const char *name, *title, *prompt;
    bool cancelButton;
    Answer enter;
};

const Question questions[] = {
    {PromptKind::Exit, "frmExit", "Exit", "Exit ?", false, Answer::Yes},
    {PromptKind::Save, "frmSave", "Save", "Save Changes?", true, Answer::Yes},
    {PromptKind::SaveBeforeOpen, "frmSave2", "Save", "Save Changes?", true, Answer::Yes},
    {PromptKind::Overwrite, "frmOverwrite", "Warning", "Overwrite?", false, Answer::No},
};

TEST_F(frmPromptTest, EveryWayToAnswerEveryQuestion) {
    struct Way {
        const char *name;
        std::function<void(QWidget &)> hand;
        Answer expected;
    };
    const Way ways[] = {
        {"Yes", [](QWidget &window) { click(window, "cmdYes"); }, Answer::Yes},
        {"No", [](QWidget &window) { click(window, "cmdNo"); }, Answer::No},
        {"Esc", [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Escape); }, Answer::Cancelled},
        {"closed by the window system", [](QWidget &window) { window.close(); }, Answer::Cancelled},
        {"another key",
         [](QWidget &window) {
             QTest::keyClick(&window, Qt::Key_Y);
             EXPECT_TRUE(window.isVisible());
         },
         Answer::Cancelled},
    };
    for (const Question &question : questions) {
        for (const Way &way : ways) {
            Answer answer = Answer::Cancelled;
            play([&] { answer = ask(context(), question.kind, nullptr); }, way.hand);
            EXPECT_EQ(answer, way.expected) << question.name << ": " << way.name;
        }
        Answer answer = Answer::Cancelled;
        play([&] { answer = ask(context(), question.kind, nullptr); },
             [](QWidget &window) { QTest::keyClick(&window, Qt::Key_Return); });
        EXPECT_EQ(answer, question.enter) << question.name << ": Enter never loses anything";
        if (question.cancelButton) {
            play([&] { answer = ask(context(), question.kind, nullptr); },
                 [](QWidget &window) { click(window, "cmdExit"); });
            EXPECT_EQ(answer, Answer::Cancelled) << question.name << ": cmdExit";
        }
    }
}

TEST_F(frmPromptTest, ShowsItsTextsAndOnlyItsButtons) {
    for (const Question &question : questions) {
        play([&] { ask(context(), question.kind, nullptr); },
             [&](QWidget &window) {
                 EXPECT_EQ(window.objectName(), question.name);
                 EXPECT_TRUE(window.isModal());
                 EXPECT_EQ(window.windowTitle(), question.title);
                 EXPECT_EQ(control<QLabel>(window, "lblCaption")->text(), question.title);
                 EXPECT_EQ(control<QLabel>(window, "lblPrompt")->text(), question.prompt);
                 EXPECT_EQ(control<QAbstractButton>(window, "cmdYes")->text(), "Yes");
                 EXPECT_EQ(control<QAbstractButton>(window, "cmdNo")->text(), "No");
                 auto *cmdExit = window.findChild<QAbstractButton *>("cmdExit");
                 EXPECT_EQ(cmdExit != nullptr, question.cancelButton);
                 EXPECT_TRUE(!cmdExit || !cmdExit->accessibleName().isEmpty());
             });
    }
}

TEST_F(frmPromptTest, ShowsThePhotoThatIsAtStake) {
    QImage photo(400, 300, QImage::Format_RGB32);
    photo.fill(QColor(20, 160, 40));
    context().photo.openPicture({photo, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto);
    for (const PromptKind kind : {PromptKind::Save, PromptKind::SaveBeforeOpen}) {
        play([&] { ask(context(), kind, nullptr); },
             [](QWidget &window) {
                 const QImage shown = control<QLabel>(window, "picPrompt")->pixmap().toImage();
                 EXPECT_EQ(shown.size(), QSize(200, 150));
                 EXPECT_EQ(shown.pixelColor(shown.rect().center()), QColor(20, 160, 40));
             });
    }
}

TEST_F(frmPromptTest, ATranslationReachesEveryPart) {
    writeFile("program/language.ini", "[DlgExitTitle]\nCaption=Beenden\n[DlgExitPrompt]\nCaption=Beenden ?\n"
                                      "[DlgExitBtnYes]\nCaption=Ja\n[DlgExitBtnNo]\nCaption=Nein\n");
    AppContext translated(Installation{m_folder.filePath("program")});
    play([&] { ask(translated, PromptKind::Exit, nullptr); },
         [&](QWidget &window) {
             EXPECT_EQ(window.windowTitle(), "Beenden");
             EXPECT_EQ(control<QLabel>(window, "lblPrompt")->text(), "Beenden ?");
             EXPECT_EQ(control<QAbstractButton>(window, "cmdYes")->text(), "Ja");
             EXPECT_EQ(control<QAbstractButton>(window, "cmdNo")->accessibleName(), "Nein");
         });
}

} // namespace
} // namespace lumora
