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
    void make();
    double roomy() const;

    AppContext &m_context;
    QButtonGroup *m_choices;
    IdeaPicture *m_picture;
    QWidget *m_guide = nullptr; ///< title, steps and what follows them
    QLabel *m_title;
    std::array<Step, 5> m_steps{};
    QLabel *m_then;
    PictureButton *cmdMakePopArt;
    QLabel *m_needsPhoto;
    AnimatedButton *cmdYes;
};

} // namespace lumora
