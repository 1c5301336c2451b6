#include "widgets/ColourPicker.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QPainter>

#include <iterator>

namespace lumora {

namespace {

/// One colour; adding one is adding a row.
struct SwatchRow {
    const char *key;
    QColor colour;
};
const SwatchRow rows[] = {
    {"white", QColor(255, 255, 255)}, {"yellow", QColor(255, 221, 51)}, {"orange", QColor(255, 140, 26)},
    {"red", QColor(226, 42, 42)},     {"pink", QColor(255, 143, 186)},  {"purple", QColor(138, 92, 246)},
    {"black", QColor(0, 0, 0)},       {"grey", QColor(140, 140, 140)},  {"brown", QColor(121, 76, 42)},
    {"green", QColor(40, 160, 80)},   {"sky", QColor(120, 205, 255)},   {"blue", QColor(30, 80, 200)},
};
constexpr int columns = 6;
constexpr int swatchSize = 30;    // pixels
constexpr QSize cellSize(46, 44); // of a button; twelve of them fit the smallest screen

QPixmap swatch(const QColor &colour) {
    constexpr int twice = 2 * swatchSize; // sharp on screens of double density
    QPixmap pixmap(twice, twice);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::faintInk, 3));
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(2, 2, twice - 4, twice - 4));
    return pixmap;
}

} // namespace

ColourPicker::ColourPicker(const QString &name, QWidget *parent) : QWidget(parent), m_swatches(new QButtonGroup(this)) {
    setObjectName(name);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    for (int i = 0; i < static_cast<int>(std::size(rows)); ++i) {
        auto *button = new PictureButton(this);
        button->setProperty("key", QLatin1StringView(rows[i].key));
        button->setAccessibleName(QLatin1StringView(rows[i].key));
        button->setPictureSize(swatchSize);
        button->setFixedSize(cellSize);
        button->setPicture(swatch(rows[i].colour));
        button->setCheckable(true);
        m_swatches->addButton(button, i);
        grid->addWidget(button, i / columns, i % columns);
    }
    connect(m_swatches, &QButtonGroup::idClicked, this, [this] { Q_EMIT chosen(colour()); });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QColor ColourPicker::colour() const {
    const int id = m_swatches->checkedId();
    return id < 0 ? QColor() : rows[id].colour;
}

void ColourPicker::setColour(const QColor &colour) {
    m_swatches->setExclusive(false);
    for (int i = 0; i < static_cast<int>(std::size(rows)); ++i) {
        m_swatches->button(i)->setChecked(rows[i].colour == colour);
    }
    m_swatches->setExclusive(true);
}

} // namespace lumora
