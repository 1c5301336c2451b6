// A picture button whose drawing moves in a gentle loop of eight frames: the Yes and No of the prompts, Open and Save.
#pragma once

#include "widgets/PictureButton.h"

namespace lumora {

/// Frames are ":/loops/NAME-1.svg" to "-8.svg"; AnswerButtons and the launcher count them. Where the desktop asks for
/// less motion the button stays on frame 1.
class AnimatedButton : public PictureButton {
    Q_OBJECT

  public:
    static constexpr int frames = 8;
    static constexpr int interval = 120; ///< milliseconds between frames

    using PictureButton::PictureButton;

    /// The loop's name; the button starts on frame 1.
    void setLoop(const QString &name);
    const QString &loop() const { return m_loop; }

    /// Shows that frame, 1 to 8; other numbers change nothing. The first one where nothing is to move.
    void setFrame(int number);
    int frame() const { return m_frame; }

    /// While it is inviting and enabled it asks for the next press: its drawing hops and a sunny ring swells and fades
    /// with the frames. Where the desktop asks for less motion the ring stands still.
    void setInviting(bool inviting);
    bool isInviting() const { return m_inviting && isEnabled(); }

    /// The frame after `number`: 1 follows 8.
    static constexpr int nextFrame(int number) { return number >= frames ? 1 : number + 1; }

  protected:
    QPixmap currentPicture(QSize size, qreal devicePixelRatio) const override;
    void paintEvent(QPaintEvent *event) override;

  private:
    QString m_loop;
    /// 0 on the first frame to 1 in the middle of the loop and back.
    double swing() const;

    int m_frame = 1;
    bool m_inviting = false;
};

} // namespace lumora
