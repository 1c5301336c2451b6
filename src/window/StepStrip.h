// The strip of what was done: the undo history as a row of small pictures under the photo. Holding the undo button, or
// Ctrl+H, shows it; the main window goes to the picture that is chosen.
#pragma once

#include <QTimer>
#include <QWidget>

class QListWidget;
class QListWidgetItem;

namespace lumora {

class PhotoDocument;
class PictureButton;
class Texts;
struct PhotoState;

/// The first picture is the photo as it was opened; each one after it is a step, with the icon of what made it. The
/// picture of now has a tick; what was undone is pale. Follows the photo while it shows.
class StepStrip : public QWidget {
    Q_OBJECT

  public:
    StepStrip(PhotoDocument &photo, const Texts &texts, QWidget *parent);

    /// Shows it, with the keyboard on the picture of now.
    void open();
    /// Reads its texts again.
    void LoadLanguage();

  Q_SIGNALS:
    /// The user wants that state of the photo back, see PhotoDocument::goToState.
    void stateWanted(quint64 id);
    void closeWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    void fill();
    QString nameOf(const PhotoState &state, int index, int now) const;
    void choose(const QListWidgetItem *item);

    PhotoDocument &m_photo;
    const Texts &m_texts;
    QListWidget *lstSteps;
    PictureButton *cmdStepsExit;
    QTimer m_fill; ///< once per turn of the event loop
    quint64 m_now = 0;
};

} // namespace lumora
