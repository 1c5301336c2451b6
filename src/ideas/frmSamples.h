// The ideas: eight projects, each with its finished example and a few short steps told by the pictures of their tools.
// The main window's toolbar shows it.
#pragma once

#include "ideas/Ideas.h"
#include "widgets/BorderlessDialog.h"

#include <array>

class QButtonGroup;
class QLabel;

namespace lumora {

class AnimatedButton;
class IdeaPicture;
class PictureButton;
struct AppContext;

class frmSamples : public BorderlessDialog {
    Q_OBJECT

  public:
    frmSamples(AppContext &context, QWidget *owner);

    /// Shows it modally over its owner; it is deleted when it is closed.
    static frmSamples *showModal(AppContext &context, QWidget *owner);
    void LoadLanguage();

  Q_SIGNALS:
    /// The photo on the table is to become a pop-art row. The window is closed by then.
    void popArtWanted();
    /// The steps of that project are to be done now. The window is closed by then.
    void ideaChosen(const lumora::Idea &idea);
    /// After ideaChosen(): the tool of that name in the table is to be started on the photo.
    void toolWanted(const QString &tool);

  private:
    struct Step {
        QLabel *icon;
        QLabel *text;
    };
    QWidget *makeChoices();
    QWidget *makeSteps();
    void choose(int index);
    void showSteps(const Idea &idea);
    void reserveRoom();
    const Idea &chosen() const;
    void make();
    double roomy() const;

    AppContext &m_context;
    QButtonGroup *m_choices;
    IdeaPicture *m_picture;
    QWidget *m_guide = nullptr; ///< title, steps and what follows them
    QLabel *m_title;
    std::array<Step, mostIdeaSteps> m_steps{};
    QLabel *m_then;
    PictureButton *cmdMakePopArt;
    PictureButton *cmdIdeaStickers; ///< of an idea with a step that opens its tool
    QLabel *m_needsPhoto;
    AnimatedButton *cmdYes;
};

} // namespace lumora
