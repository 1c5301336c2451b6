// pnlRedEye: how large the eyes are that shine, in which colour, and a picture of that.
#pragma once

#include "imaging/transforms/EyeShine.h"
#include "widgets/SlidingPanel.h"

#include <optional>

class QButtonGroup;
class QHBoxLayout;

namespace lumora {

class CaptionedSlider;
class RedEyeCircle;

class RedEyePanel : public SlidingPanel {
    Q_OBJECT

  public:
    explicit RedEyePanel(QWidget *window);

    /// Of the circle around a click, in pixels of the photo: the value of sldRD.
    int radius() const { return m_radius; }
    /// The shine that the next click darkens; none for red, which is taken out of the whole circle.
    std::optional<EyeShine> shine() const;

  Q_SIGNALS:
    void radiusChanged(int radius);
    void shineChanged();

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void buildShines(QHBoxLayout *row);
    void showShine();

    int m_radius = 0;
    QButtonGroup *m_shines;
    RedEyeCircle *picRedEye;
};

} // namespace lumora
