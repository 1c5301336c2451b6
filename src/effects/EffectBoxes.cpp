#include "effects/EffectBoxes.h"

#include "effects/PerspectiveBox.h"
#include "effects/ReflectionBox.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <QSlider>

namespace lumora {

namespace {

const EffectSlider sliders[] = {
    {1, 0, "sldSFX1_1", "lblSolarR", 0, 255},
    {1, 1, "sldSFX1_2", "lblSolarG", 0, 255},
    {1, 2, "sldSFX1_3", "lblSolarB", 0, 255},
    {2, 0, "sldSFX2_1", "lblColouriseRed", 0, 255},
    {2, 1, "sldSFX2_2", "lblColouriseGreen", 0, 255},
    {2, 2, "sldSFX2_3", "lblColouriseBlue", 0, 255},
    {4, 0, "sldSFX4_1", "lblMosaicWidth", 1, 100},
    {4, 1, "sldSFX4_2", "lblMosaicHeight", 1, 100},
    {5, 0, "sldSFX5", "lblOil", 1, 30},
    {6, 0, "sldSFX6_1", "lblBlur", 1, 100},
    {7, 0, "sldSFX7", "lblTexture", 0, 100, true}, // its value is how much of the texture fades
    {8, 0, "sldSFX8_1", "lblTilesAcross", 1, 50},
    {8, 1, "sldSFX8_2", "lblTilesDown", 1, 50},
};

/// The sentence of a box without settings.
struct SentenceRow {
    int effect;
    const char *label;
};
const SentenceRow sentences[] = {
    {3, "lblSharpen"},
    {9, "lbl3x3"}, // "No settings" stands here, and not in the box of the 3 x 3 kernel
    {10, "lblColourEmboss"},
};

constexpr int narrowestSlider = 120; // pixels
constexpr int widestSlider = 480;
constexpr int boxSpacing = 24;

} // namespace

std::span<const EffectSlider> effectSliders() {
    return sliders;
}

EffectBox *EffectBox::make(int number, QWidget *parent) {
    switch (number) {
    case 11:
        return new PerspectiveBox(parent);
    case 12:
        return new ReflectionBox(parent);
    default:
        return new EffectBox(number, parent);
    }
}

EffectBox::EffectBox(int number, QWidget *parent) : QWidget(parent), m_number(number), m_row(new QHBoxLayout(this)) {
    setObjectName(QStringLiteral("SFXBox%1").arg(number));
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(boxSpacing);
    for (const EffectSlider &slider : sliders) {
        if (slider.effect == number) {
            addSlider(slider);
        }
    }
    if (m_row->count() > 0) {
        m_row->addStretch(); // what the sliders leave of a wide window
    }
    for (const SentenceRow &sentence : sentences) {
        if (sentence.effect == number) {
            addSentence(sentence.label, 0);
        }
    }
}

void EffectBox::addSlider(const EffectSlider &slider) {
    auto *field = new CaptionedSlider(slider, this);
    connect(field, &CaptionedSlider::changed, this,
            [this, index = slider.index](int value) { Q_EMIT valueChanged(index, value); });
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
    const QList<CaptionedSlider *> fields = findChildren<CaptionedSlider *>();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        fields[i]->setValue(values.at(static_cast<size_t>(i)));
    }
}

void EffectBox::setPhoto(const QImage &) {}

CaptionedSlider::CaptionedSlider(const EffectSlider &row, QWidget *parent)
    : QWidget(parent), m_row(row), m_slider(new QSlider(Qt::Horizontal, this)), m_value(new QLabel(this)) {
    auto *caption = new QLabel(this);
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
    grid->addWidget(caption, 0, 0, Qt::AlignLeading);
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
