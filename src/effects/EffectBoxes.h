// The settings boxes SFXBox1 to SFXBox12 of the effects panel: which sliders there are, one row each, and the boxes
// made of them.
#pragma once

#include "effects/SpecialEffects.h"

#include <QImage>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QSlider;

namespace lumora {

/// One slider of a settings box. Adding one is adding a row in EffectBoxes.cpp.
struct EffectSlider {
    int effect;       ///< 1 to 12
    int index;        ///< of the effect's values
    const char *name; ///< object name
    const char *label;
    int least;
    int most;
    bool showsRest = false; ///< shows how far it is from `most`, and grows to the other side
};

std::span<const EffectSlider> effectSliders();

/// The controls of one effect. Sliders share the width.
class EffectBox : public QWidget {
    Q_OBJECT

  public:
    /// Makes the box of effect 1 to 12, with its sliders and its sentence.
    static EffectBox *make(int number, QWidget *parent);

    /// Shows these values; tells nobody.
    virtual void setValues(const EffectValues &values);
    /// The user's photo, made small, for boxes that show what a style does to it.
    virtual void setPhoto(const QImage &photo);
    /// True where setPhoto shows it.
    virtual bool showsPhoto() const { return false; }

  Q_SIGNALS:
    void valueChanged(int index, int value);

  protected:
    EffectBox(int number, QWidget *parent);
    QHBoxLayout *row() const { return m_row; }
    /// A sentence in the box; `label` is its object name.
    void addSentence(const char *label, int width);

  private:
    void addSlider(const EffectSlider &slider);

    int m_number;
    QHBoxLayout *m_row;
};

/// A slider below its caption and its value. Each change is told with `changed`.
class CaptionedSlider : public QWidget {
    Q_OBJECT

  public:
    CaptionedSlider(const EffectSlider &slider, QWidget *parent);

    void setValue(int value);

  Q_SIGNALS:
    void changed(int value);

  private:
    void showValue(int value);

    EffectSlider m_row;
    QSlider *m_slider;
    QLabel *m_value;
};

} // namespace lumora
