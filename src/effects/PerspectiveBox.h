// SFXBox11: the angle of the perspective, as a slider, as a number and as two styles, and the background colour.
#pragma once

#include "effects/EffectBoxes.h"

class QLineEdit;

namespace lumora {

class ColourPicker;
class PictureButton;

class PerspectiveBox : public EffectBox {
    Q_OBJECT

  public:
    PerspectiveBox(const Effect &effect, QWidget *parent);

    void setValues(const EffectValues &values) override;
    void setPhoto(const QImage &photo) override;
    bool showsPhoto() const override { return true; }

  private:
    QWidget *makeAngle();
    void addStyles();
    void readAngle();
    void setAngle(int degrees);
    void setColour(const QColor &colour);
    void showAngle();
    void showStyles();

    QLineEdit *txtAngle = nullptr;
    QSlider *m_angleSlider = nullptr;
    std::array<PictureButton *, 2> m_styles{};
    ColourPicker *CP1 = nullptr;
    QImage m_photo;
    const Effect &m_effect;
    EffectValues m_values;
};

} // namespace lumora
