// The controls of free rotation, over the photo's lower edge: straighten, cut the corners off.
#pragma once

#include <QWidget>

namespace lumora {

class PhotoView;
class PictureButton;

/// Hidden at first. It stays in its place when the photo scrolls.
class RotateControls : public QWidget {
    Q_OBJECT

  public:
    explicit RotateControls(PhotoView &view);

    /// With nothing switched on.
    void showAtFirst();

    PictureButton *cmdStraighten() const { return m_straighten; }
    PictureButton *chkCutCorners() const { return m_cutCorners; }

  protected:
    void paintEvent(QPaintEvent *event) override;
    bool event(QEvent *event) override;

  private:
    void place();

    PhotoView &m_view;
    PictureButton *m_straighten;
    PictureButton *m_cutCorners;
};

} // namespace lumora
