// "Done" over the photo's lower edge, for tools that have no panel: free rotation and free resizing end with it.
#pragma once

#include "widgets/PictureButton.h"

namespace lumora {

class PhotoView;

/// Hidden at first. It stays in its place when the photo scrolls.
class DoneButton : public PictureButton {
    Q_OBJECT

  public:
    /// Its caption is a text of the table.
    DoneButton(const QString &name, PhotoView &view);

  protected:
    void showEvent(QShowEvent *event) override;

  private:
    void place();

    PhotoView &m_view;
};

} // namespace lumora
