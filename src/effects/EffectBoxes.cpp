#include "effects/EffectBoxes.h"

#include "widgets/FittingLabel.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <QSlider>

namespace lumora {

namespace {

constexpr int narrowestSlider = 120; // pixels
constexpr int widestSlider = 480;
constexpr int boxSpacing = 24;

} // namespace

EffectBox *EffectBox::make(const Effect &effect, QWidget *parent) {
    return effect.makeBox != nullptr ? effect.makeBox(effect, parent) : new EffectBox(effect, parent);
}

EffectBox::EffectBox(const Effect &effect, QWidget *parent) : QWidget(parent), m_row(new QHBoxLayout(this)) {
    setObjectName(QStringLiteral("SFXBox%1").arg(effect.number));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(boxSpacing);
    for (size_t i = 0; i < effect.sliders.size(); ++i) {
        addSlider(effect.sliders.at(i), static_cast<int>(i));
    }
    if (m_row->count() > 0) {
        m_row->addStretch(); // the width beside the sliders in a wide window
    }
    if (effect.sentence != nullptr) {
        addSentence(effect.sentence, 0);
    }
}

void EffectBox::addSlider(const EffectSlider &slider, int index) {
    auto *field = new CaptionedSlider(slider, this);
    connect(field, &CaptionedSlider::changed, this, [this, index](int value) { Q_EMIT valueChanged(index, value); });
    m_sliders.push_back(field);
    m_row->addWidget(field, 1);
}

void EffectBox::addSentence(const char *label, int width) {
    auto *sentence = new QLabel(this);
    sentence->setObjectName(QLatin1StringView(label));
    sentence->setWordWrap(true);
    if (width > 0) {
        sentence->setFixedWidth(width);
    }
    m_row->addWidget(sentence, width > 0 ? 0 : 1);
}

void EffectBox::setValues(const EffectValues &values) {
    const QSignalBlocker quiet(this);
    for (size_t i = 0; i < m_sliders.size(); ++i) {
        m_sliders.at(i)->setValue(values.at(i));
    }
}

void EffectBox::setPhoto(const QImage &) {}

CaptionedSlider::CaptionedSlider(const EffectSlider &row, QWidget *parent)
    : QWidget(parent), m_row(row), m_slider(new QSlider(Qt::Horizontal, this)), m_value(new QLabel(this)) {
    auto *caption = new FittingLabel(this);
    caption->setObjectName(QLatin1StringView(row.label));
    caption->setBuddy(m_slider);
    m_slider->setObjectName(QLatin1StringView(row.name));
    m_slider->setRange(row.least, row.most);
    m_slider->setPageStep(qMax(1, (row.most - row.least) / 10));
    m_slider->setInvertedAppearance(row.showsRest);
    m_slider->setInvertedControls(row.showsRest);
    QFont bold = m_value->font();
    bold.setBold(true);
    m_value->setFont(bold);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    grid->addWidget(caption, 0, 0);
    grid->setColumnStretch(0, 1);
    grid->addWidget(m_value, 0, 1, Qt::AlignTrailing);
    grid->addWidget(m_slider, 1, 0, 1, 2);
    setMinimumWidth(narrowestSlider);
    setMaximumWidth(widestSlider);
    connect(m_slider, &QSlider::valueChanged, this, [this](int value) {
        showValue(value);
        Q_EMIT changed(value);
    });
    showValue(m_slider->value());
}

void CaptionedSlider::setValue(int value) {
    m_slider->setValue(value);
}

void CaptionedSlider::showValue(int value) {
    m_value->setText(locale().toString(m_row.showsRest ? m_row.most - value : value));
}

} // namespace lumora
