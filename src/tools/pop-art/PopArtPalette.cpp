#include "tools/pop-art/PopArtPalette.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QPainter>
#include <QRandomGenerator>
#include <algorithm>
#include <vector>

namespace lumora {

namespace {

const PopArtColour colourRows[] = {
    {"navy", "PopArtNavy", 0x2A1A8A, true},      {"blue", "PopArtBlue", 0x1D5FE6, true},
    {"purple", "PopArtPurple", 0x7A1FD0, true},  {"red", "PopArtRed", 0xD3123F, true},
    {"black", "PopArtBlack", 0x1C1A2B, true},    {"green", "PopArtGreen", 0x00695F, true},
    {"orange", "PopArtOrange", 0xFF9D1E, false}, {"pink", "PopArtPink", 0xFF9EC4, false},
    {"white", "PopArtWhite", 0xFFFFFF, false},   {"aqua", "PopArtAqua", 0x7FE9E0, false},
    {"lime", "PopArtLime", 0xB9EA3A, false},     {"yellow", "PopArtYellow", 0xFFD91A, false},
};
constexpr int columns = 4;

/// The dark or the light colours in random order.
std::vector<std::uint32_t> mixed(bool dark, QRandomGenerator &random) {
    std::vector<std::uint32_t> colours;
    for (const PopArtColour &colour : colourRows) {
        if (colour.dark == dark) {
            colours.push_back(colour.rgb);
        }
    }
    std::ranges::shuffle(colours, random);
    return colours;
}

} // namespace

std::span<const PopArtColour> popArtColours() {
    return colourRows;
}

PopArtPairs usualPopArtPairs() {
    return {{{0x2A1A8A, 0xFFD91A}, {0xD3123F, 0x7FE9E0}, {0x00695F, 0xFF9EC4}, {0x7A1FD0, 0xFF9D1E}}};
}

PopArtPairs surprisePopArtPairs(QRandomGenerator &random) {
    const std::vector<std::uint32_t> dark = mixed(true, random);
    const std::vector<std::uint32_t> light = mixed(false, random);
    PopArtPairs pairs;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        pairs.at(i) = {dark.at(i), light.at(i)};
    }
    return pairs;
}

QPixmap popArtSwatch(std::uint32_t rgb, QSize size) {
    constexpr int density = 2;
    QPixmap pixmap(size * density);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::faintInk, 3));
    painter.setBrush(QColor::fromRgb(rgb));
    painter.drawRoundedRect(QRectF(pixmap.rect()).adjusted(2, 2, -2, -2), buttonCorner, buttonCorner);
    return pixmap;
}

PopArtPalette::PopArtPalette(QWidget *parent) : QWidget(parent), m_buttons(new QButtonGroup(this)) {
    setObjectName("popArtPalette");
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    for (int i = 0; i < static_cast<int>(std::size(colourRows)); ++i) {
        auto *button = new PictureButton(this);
        button->setProperty("key", QLatin1StringView(colourRows[i].key));
        button->setPictureSize(popArtSwatchSize);
        button->setPicture(popArtSwatch(colourRows[i].rgb, popArtSwatchSize));
        button->setFixedSize(smallestButton, smallestButton);
        button->setCheckable(true);
        m_buttons->addButton(button, i);
        grid->addWidget(button, i / columns, i % columns);
    }
    connect(m_buttons, &QButtonGroup::idClicked, this, [this](int id) { Q_EMIT chosen(colourRows[id].rgb); });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void PopArtPalette::setColour(std::uint32_t rgb) {
    m_buttons->setExclusive(false);
    for (int i = 0; i < static_cast<int>(std::size(colourRows)); ++i) {
        m_buttons->button(i)->setChecked(colourRows[i].rgb == rgb);
    }
    m_buttons->setExclusive(true);
}

} // namespace lumora
