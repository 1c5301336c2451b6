// The twelve bright colours of the pop-art panel: their table, surprise pairs of them, and the buttons to choose one.
#pragma once

#include "imaging/transforms/PopArtRow.h"

#include <QWidget>
#include <span>

class QButtonGroup;
class QRandomGenerator;

namespace lumora {

/// One colour; adding one is adding a row and its text.
struct PopArtColour {
    const char *key;  ///< of its button
    const char *text; ///< identifier of its name
    std::uint32_t rgb;
    bool dark; ///< suits the dark parts; the others suit the light ones
};

std::span<const PopArtColour> popArtColours();

/// The default pairs of a row.
PopArtPairs usualPopArtPairs();
/// Four pairs of a dark and a light colour, without repeated colours.
PopArtPairs surprisePopArtPairs(QRandomGenerator &random);

/// A colour as the picture of a button: a rounded square, sharp on screens of double density.
QPixmap popArtSwatch(std::uint32_t rgb, QSize size);
inline constexpr QSize popArtSwatchSize(38, 38); // pixels, in panel and palette

class PopArtPalette : public QWidget {
    Q_OBJECT

  public:
    explicit PopArtPalette(QWidget *parent);

    /// Shows that colour as the chosen one without emitting a signal.
    void setColour(std::uint32_t rgb);

  Q_SIGNALS:
    /// The user has chosen a colour, 0xRRGGBB.
    void chosen(quint32 rgb);

  private:
    QButtonGroup *m_buttons;
};

} // namespace lumora
