// SFXBox12: the styles of the reflection, each on the user's own photo.
#pragma once

#include "effects/EffectBoxes.h"

class QButtonGroup;

namespace lumora {

class ReflectionBox : public EffectBox {
    Q_OBJECT

  public:
    ReflectionBox(const Effect &effect, QWidget *parent);

    void setValues(const EffectValues &values) override;
    void setPhoto(const QImage &photo) override;
    bool showsPhoto() const override { return true; }

  private:
    QButtonGroup *m_styles;
};

} // namespace lumora
