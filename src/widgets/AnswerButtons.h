// The animated answers of one window and the timer that moves them: OK and Cancel, Yes and No, Open and Save.
#pragma once

#include "widgets/PictureButton.h"

#include <QList>
#include <QTimer>

namespace lumora {

class AnimatedButton;

/// Part of the window it is made for. The answers show the same frame at every moment; they move while the window is
/// on the screen, and not at all where the desktop asks for less motion.
class AnswerButtons : public QObject {
    Q_OBJECT

  public:
    explicit AnswerButtons(QWidget *window);

    struct Look {
        PictureButton::CaptionPlace captionPlace = PictureButton::CaptionPlace::Beside;
        int pictureSize = 40;     ///< pixels
        double captionPoints = 0; ///< size of the caption; 0 leaves the window's own
        int minimumWidth = 0;     ///< pixels
    };
    /// A new button of the window with that object name and the loop of drawings of that name.
    AnimatedButton *add(const QString &name, const QString &loop, const Look &look);

  Q_SIGNALS:
    /// The answers show that frame now, 1 to 8.
    void frameShown(int frame);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void showNextFrame();

    QWidget *m_window;
    QList<AnimatedButton *> m_buttons;
    QTimer *tmrYes; ///< a child of the window
    int m_frame = 1;
};

} // namespace lumora
