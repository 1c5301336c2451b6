// The panel of the colour focus: the chosen colour, four strengths on the user's own photo, a slider for those
// between them, and Apply.
#pragma once

#include "widgets/SlidingPanel.h"

#include <QColor>
#include <QImage>

class QButtonGroup;

namespace lumora {

class CaptionedSlider;
class ColourFocusSwatch;

class ColourFocusPanel : public SlidingPanel {
    Q_OBJECT

  public:
    static constexpr int strengths = 4;
    static constexpr QSize pictureSize{72, 54}; ///< pixels of a strength's small photo

    explicit ColourFocusPanel(QWidget *window);

    /// The colour focus's tolerance of a strength, 1 to 4, in degrees of hue: the largest distance to the chosen colour
    /// at which colours stay.
    static int levelOf(int strength);
    /// The tolerance that is set, by a strength or by the slider.
    int level() const { return m_level; }
    void setLevel(int level);
    /// Resets to the default strength.
    void resetLevel();

    /// An invalid colour is none.
    void setColour(const QColor &colour);
    /// The small photo of picCM1 to picCM4.
    void setPicture(int strength, const QImage &picture);

  Q_SIGNALS:
    void levelChanged();
    void applyWanted();

  private:
    void buildStrengths();

    int m_level = 0;
    ColourFocusSwatch *picChosenColour;
    QButtonGroup *m_strengths;
    CaptionedSlider *m_slider;
};

} // namespace lumora
