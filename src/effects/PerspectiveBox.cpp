#include "effects/PerspectiveBox.h"

#include "imaging/EffectEngine.h"
#include "widgets/Accessibility.h"
#include "widgets/ColourPicker.h"
#include "widgets/PictureButton.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>

#include <cstdlib>

namespace lumora {

namespace {

constexpr int mostDegrees = 60;
constexpr int styleDegrees = 30; // of the pictures, and of a style chosen while the angle is 0
constexpr QSize stylePicture(64, 48);
constexpr int narrowestStyle = 60; // pixels, in a narrow window
constexpr int widestStyle = 140;   // so that the two stay side by side in a wide panel

} // namespace

PerspectiveBox::PerspectiveBox(const Effect &effect, QWidget *parent)
    : EffectBox(effect, parent), m_effect(effect), m_values(effect.advanced) {
    row()->setSpacing(12);
    row()->addWidget(makeAngle(), 1);
    addStyles();
    CP1 = new ColourPicker("CP1", this);
    auto *sentence = new QLabel(this);
    sentence->setObjectName("lblPerspective");
    sentence->setWordWrap(true);
    sentence->setFixedWidth(CP1->sizeHint().width());
    auto *colours = new QVBoxLayout;
    colours->setSpacing(4);
    colours->addWidget(sentence);
    colours->addWidget(CP1);
    row()->addLayout(colours);
    connect(CP1, &ColourPicker::chosen, this, &PerspectiveBox::setColour);
    setValues(m_values);
}

QWidget *PerspectiveBox::makeAngle() {
    auto *field = new QWidget(this);
    auto *caption = new QLabel(field);
    caption->setObjectName("lblAngle");
    txtAngle = new QLineEdit(field);
    txtAngle->setObjectName("txtAngle");
    txtAngle->setFixedWidth(68);
    txtAngle->setAlignment(Qt::AlignCenter);
    txtAngle->setValidator(new QRegularExpressionValidator(QRegularExpression("-?[0-9]{0,2}"), txtAngle));
    caption->setBuddy(txtAngle);
    m_angleSlider = new QSlider(Qt::Horizontal, field);
    m_angleSlider->setObjectName("sldAngle");
    m_angleSlider->setRange(-mostDegrees, mostDegrees);
    auto *grid = new QGridLayout(field);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(caption, 0, 0, Qt::AlignLeading);
    grid->addWidget(txtAngle, 0, 1, Qt::AlignTrailing);
    grid->addWidget(m_angleSlider, 1, 0, 1, 2);
    field->setMinimumWidth(124);
    field->setMaximumWidth(320);
    connect(txtAngle, &QLineEdit::textEdited, this, &PerspectiveBox::readAngle);
    connect(txtAngle, &QLineEdit::editingFinished, this, &PerspectiveBox::showAngle);
    connect(m_angleSlider, &QSlider::valueChanged, this, [this](int degrees) {
        setAngle(degrees);
        showAngle();
    });
    return field;
}

void PerspectiveBox::addStyles() {
    for (size_t i = 0; i < m_styles.size(); ++i) {
        auto *button = new PictureButton("tool10", PictureButton::CaptionPlace::Below, this);
        button->setObjectName(QStringLiteral("optPerspective%1").arg(i + 1));
        button->setPictureSize(stylePicture);
        button->setMinimumWidth(narrowestStyle);
        button->setMaximumWidth(widestStyle);
        button->setCheckable(true);
        setAccessibleRole(*button, QAccessible::RadioButton);
        const int sign = i == 0 ? -1 : 1; // the first recedes to the left, the second to the right
        connect(button, &QAbstractButton::clicked, this, [this, sign] {
            const int degrees = std::abs(m_values[0]);
            setAngle(sign * (degrees == 0 ? styleDegrees : degrees));
            showAngle();
        });
        m_styles.at(i) = button;
        row()->addWidget(button);
    }
}

/// Called while typing: a text that is not a number yet does not change the angle.
void PerspectiveBox::readAngle() {
    bool isNumber = false;
    const int degrees = txtAngle->text().toInt(&isNumber);
    if (isNumber) {
        setAngle(qBound(-mostDegrees, degrees, mostDegrees));
    }
}

void PerspectiveBox::setAngle(int degrees) {
    if (m_values[0] != degrees) {
        m_values[0] = degrees;
        Q_EMIT valueChanged(0, degrees);
    }
    const QSignalBlocker quiet(m_angleSlider);
    m_angleSlider->setValue(degrees);
    m_styles[0]->setChecked(degrees < 0);
    m_styles[1]->setChecked(degrees > 0);
}

void PerspectiveBox::showAngle() {
    txtAngle->setText(QString::number(m_values[0]));
}

void PerspectiveBox::setColour(const QColor &colour) {
    m_values = {m_values[0], colour.red(), colour.green(), colour.blue()};
    for (size_t i = 1; i < m_values.size(); ++i) {
        Q_EMIT valueChanged(static_cast<int>(i), m_values.at(i));
    }
    showStyles();
}

void PerspectiveBox::setValues(const EffectValues &values) {
    const QSignalBlocker quiet(this);
    setAngle(values[0]);
    showAngle();
    m_values = values;
    CP1->setColour(QColor(values[1], values[2], values[3]));
    showStyles();
}

void PerspectiveBox::setPhoto(const QImage &photo) {
    m_photo = photo;
    showStyles();
}

void PerspectiveBox::showStyles() {
    for (size_t i = 0; i < m_styles.size(); ++i) {
        EffectEngine engine;
        engine.setPicture(m_photo);
        EffectValues values = m_values;
        values[0] = i == 0 ? -styleDegrees : styleDegrees;
        const bool done = engine.apply(operationOf(m_effect, true, values, 1), false);
        m_styles.at(i)->setPicture(done ? QPixmap::fromImage(engine.picture()) : QPixmap());
    }
}

} // namespace lumora
