// pnlColmgr: one slider for brightness, contrast or saturation, previews of the photo with and without it, and Apply.
#pragma once

#include "widgets/SlidingPanel.h"

#include <QImage>
#include <array>

namespace lumora {

class AdjustSlider;
class PictureButton;

class AdjustPanel : public SlidingPanel {
    Q_OBJECT

  public:
    static constexpr QSize pictureSize{84, 56}; ///< pixels of the small photo

    explicit AdjustPanel(QWidget *window);

    /// Shows the slider of that kind, 1 to 3, at its middle.
    void showKind(int kind, const QString &title);
    /// Of the slider of that kind, -100 to 100.
    int value(int kind) const;
    /// Resets the slider to the middle; emits its signal like any move.
    void resetValue(int kind);
    /// The small photo as it is, picAJP2, and as the slider would make it, picAJP1.
    void setPictures(const QImage &before, const QImage &after);

  Q_SIGNALS:
    void valueChanged();
    void applyWanted();
    /// The preview is held down to see the photo without the change, or is released.
    void compared(bool before);

  private:
    void showValue(int value);

    std::array<AdjustSlider *, 3> m_sliders{};
    QLabel *m_icon;
    QLabel *m_value;
    PictureButton *picAJP1;
    PictureButton *picAJP2;
    PictureButton *cmdApplyBCS;
};

} // namespace lumora
