// The steps of the chosen project at the side of the main window, while they are done: those that are done have a tick,
// the next one is marked.
#pragma once

#include "ideas/IdeaProgress.h"

#include <QWidget>
#include <array>

class QLabel;
class QScrollArea;

namespace lumora {

class IdeaPicture;
class PictureButton;
struct AppContext;

/// Part of the main window's layout; hidden until begin(). It sees itself when a photo is opened, saved or stepped
/// back; what a tool has changed it is told. A main window that becomes too narrow for it puts it away.
class IdeaGuide : public QWidget {
    Q_OBJECT

  public:
    static constexpr int guideWidth = 212;      ///< pixels
    static constexpr int narrowestWindow = 960; ///< pixels that the window must have for it

    IdeaGuide(AppContext &context, QWidget *window);

    /// Shows the steps of that project whose tools are on the screen, unless the window is too narrow.
    void begin(const Idea &idea);
    /// A tool of the table, and an item of its floating bar if it has one, has changed the photo.
    void photoChangedBy(const QString &tool, const QString &item);
    void LoadLanguage();

  Q_SIGNALS:
    /// The photo is to become a pop-art row.
    void popArtWanted();
    /// The tool of that name in the table is to be started: it has no other button.
    void toolWanted(const QString &tool);

  protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    class StepRow;
    bool hasRoom() const;
    void refresh();

    AppContext &m_context;
    IdeaProgress m_progress;
    QLabel *m_title;
    PictureButton *m_close;
    IdeaPicture *m_picture;
    QScrollArea *m_area;
    std::array<StepRow *, mostIdeaSteps> m_rows{};
    PictureButton *m_make; ///< for the project that Lumora makes itself
    QLabel *m_then;
};

} // namespace lumora
