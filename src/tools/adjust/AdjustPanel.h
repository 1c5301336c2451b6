// pnlColmgr: one slider for brightness, contrast, saturation or how much better, previews of the photo with and without
// it, and Apply.
#pragma once

#include "widgets/SlidingPanel.h"

#include <QImage>
#include <vector>

namespace lumora {

class AdjustSlider;
class PictureButton;

class AdjustPanel : public SlidingPanel {
    Q_OBJECT

  public:
    static constexpr QSize pictureSize{84, 56}; ///< pixels of the small photo

    explicit AdjustPanel(QWidget *window);

    /// Shows the slider of that kind, a number of the adjustments' table, at the value that it begins with. Where that
    /// changes the photo, the photo without it is shown as well.
    void showKind(int kind, const QString &title);
    /// Of the slider of that kind.
    int value(int kind) const;
    /// Resets the slider to 0; emits its signal like any move.
    void resetValue(int kind);
    /// The small photo as it is, picAJP2, and as the slider would make it, picAJP1.
    void setPictures(const QImage &before, const QImage &after);

  Q_SIGNALS:
    void valueChanged();
    void applyWanted();
    /// A preview is held down to see the photo without the change, or is released.
    void compared(bool before);

  private:
    void showValue(const AdjustSlider &slider);
    AdjustSlider *slider(int kind) const { return m_sliders.at(size_t(kind) - 1); }

    std::vector<AdjustSlider *> m_sliders; ///< one for each adjustment
    QLabel *m_icon;
    QLabel *m_value;
    PictureButton *picAJP1;
    PictureButton *picAJP2;
    PictureButton *cmdApplyBCS;
};

} // namespace lumora
