// The window of the slideshow: the whole screen, black, with one picture. Shown by SlideShow.
#pragma once

#include <QDialog>

namespace lumora {

class SlidePicture;
class SlideSign;
class Texts;

class frmSlideShow : public QDialog {
    Q_OBJECT

  public:
    frmSlideShow(const Texts &texts, QWidget *owner);

    /// Fills the screen on which the owner is, modal over it. Deleted when it is closed, by Esc or a click.
    void showModal();
    SlidePicture *XShow1() const { return m_show; }
    /// Shows for a moment that the show has paused or goes on.
    void showPaused(bool paused);

  Q_SIGNALS:
    /// The space bar.
    void pauseWanted();
    /// There is more or less room for the pictures.
    void roomChanged();

  protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    const Texts &m_texts;
    SlidePicture *m_show;
    SlideSign *m_sign;
};

} // namespace lumora
