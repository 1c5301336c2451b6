#include "effects/ReflectionBox.h"

#include "imaging/EffectEngine.h"
#include "imaging/effects/Reflection.h"
#include "widgets/PictureButton.h"

#include <QButtonGroup>
#include <QHBoxLayout>

namespace lumora {

namespace {

constexpr int styles = 4;
constexpr int sentenceWidth = 120;
constexpr QSize reflectionPicture(96, 72);
constexpr int narrowestReflection = 84; // pixels, in a narrow window

} // namespace

ReflectionBox::ReflectionBox(const Effect &effect, QWidget *parent)
    : EffectBox(effect, parent), m_styles(new QButtonGroup(this)) {
    addSentence("lblReflection", sentenceWidth);
    row()->setSpacing(12);
    for (int style = 1; style <= styles; ++style) {
        auto *button = new PictureButton("tool10", PictureButton::CaptionPlace::None, this);
        button->setObjectName(QStringLiteral("optReflection%1").arg(style));
        button->setPictureSize(reflectionPicture);
        button->setMinimumWidth(narrowestReflection);
        button->setCheckable(true);
        m_styles->addButton(button, style);
        row()->addWidget(button);
    }
    row()->addStretch(1);
    connect(m_styles, &QButtonGroup::idClicked, this, [this](int style) { Q_EMIT valueChanged(0, style); });
    setValues(effect.advanced);
}

void ReflectionBox::setValues(const EffectValues &values) {
    if (QAbstractButton *button = m_styles->button(values[0])) {
        button->setChecked(true);
    }
}

void ReflectionBox::setPhoto(const QImage &photo) {
    for (int style = 1; style <= styles; ++style) {
        EffectEngine engine;
        engine.setPicture(photo);
        const bool done = engine.apply({applyReflection, {style}}, false);
        static_cast<PictureButton *>(m_styles->button(style))
            ->setPicture(done ? QPixmap::fromImage(engine.picture()) : QPixmap());
    }
}

} // namespace lumora
