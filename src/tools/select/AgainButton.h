// "Again here" over the photo's lower edge: takes the part that an effect has just changed once more.
#pragma once

#include "document/PhotoSelection.h"
#include "widgets/PictureButton.h"

namespace lumora {

class PhotoView;

/// Hidden at first. It stays in its place when the photo scrolls; its picture is the shape of the part.
class AgainButton : public PictureButton {
    Q_OBJECT

  public:
    explicit AgainButton(PhotoView &view);

    /// The shape of the part; None hides the button.
    void offer(PhotoSelection::Shape shape);

  protected:
    void showEvent(QShowEvent *event) override;
    QPixmap currentPicture(QSize size, qreal devicePixelRatio) const override;

  private:
    void place();

    PhotoView &m_view;
};

} // namespace lumora
