// pnlRedEye: how large the red eyes are, and a picture of that size.
#pragma once

#include "widgets/SlidingPanel.h"

namespace lumora {

class CaptionedSlider;
class RedEyeCircle;

class RedEyePanel : public SlidingPanel {
    Q_OBJECT

  public:
    explicit RedEyePanel(QWidget *window);

    /// Of the circle in which red is taken out, in pixels of the photo: the value of sldRD.
    int radius() const { return m_radius; }

  Q_SIGNALS:
    void radiusChanged(int radius);

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    int m_radius = 0;
    RedEyeCircle *picRedEye;
};

} // namespace lumora
