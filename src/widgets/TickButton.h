// A large tick box with a picture, for what is switched on and off beside other buttons.
#pragma once

#include "widgets/PictureButton.h"

namespace lumora {

/// The box stands before the drawing, the caption beside both.
class TickButton : public PictureButton {
    Q_OBJECT

  public:
    /// `pixels` is the height of the drawing.
    TickButton(const QString &iconName, int pixels, QWidget *parent = nullptr);

  protected:
    QPixmap currentPicture(QSize size, qreal devicePixelRatio) const override;
};

} // namespace lumora
