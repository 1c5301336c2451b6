// The settings boxes SFXBox1, SFXBox2 ... of the effects panel, made from the effects' table.
#pragma once

#include "effects/EffectTable.h"

#include <QImage>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QSlider;

namespace lumora {

class CaptionedSlider;

/// The controls of one effect. Sliders share the width.
class EffectBox : public QWidget {
    Q_OBJECT

  public:
    /// The box that the row of the effect asks for.
    static EffectBox *make(const Effect &effect, QWidget *parent);

    /// Sets the values without emitting valueChanged.
    virtual void setValues(const EffectValues &values);
    /// The user's photo, reduced, for boxes that preview a style on it.
    virtual void setPhoto(const QImage &photo);
    /// Whether setPhoto has an effect.
    virtual bool showsPhoto() const { return false; }

  Q_SIGNALS:
    void valueChanged(int index, int value);

  protected:
    /// With the sliders and the sentence of the row.
    EffectBox(const Effect &effect, QWidget *parent);
    QHBoxLayout *row() const { return m_row; }
    /// A sentence in the box; `label` is its object name.
    void addSentence(const char *label, int width);

  private:
    void addSlider(const EffectSlider &slider, int index);

    QHBoxLayout *m_row;
    std::vector<CaptionedSlider *> m_sliders; ///< one for each value
};

/// A slider below its caption and its value. Each change emits `changed`.
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
