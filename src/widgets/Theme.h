// How Lumora looks: its colours, its style sheet, its pictures and its measures. Everything that paints asks here.
#pragma once

#include "widgets/Motion.h"

#include <QColor>
#include <QPixmap>
#include <QString>

class QApplication;
class QPainter;
class QRectF;

namespace lumora {

/// Surfaces are paper, states and icons are crayons; ink on any surface has a contrast of at least 4.5 : 1.
namespace colours {
inline constexpr QColor parchment(236, 233, 216);
inline constexpr QColor paper(247, 245, 234);
inline constexpr QColor line(207, 201, 174);
inline constexpr QColor ink(43, 40, 64);
inline constexpr QColor faintInk(100, 96, 112); ///< hints and notes; 5 : 1 on parchment
inline constexpr QColor sky(47, 128, 237);
inline constexpr QColor sun(255, 197, 61);
inline constexpr QColor leaf(52, 178, 123);
inline constexpr QColor coral(255, 107, 87);
inline constexpr QColor plum(138, 92, 246);
inline constexpr QColor hover(255, 240, 200);   ///< what the pointer is over: paper in the sun
inline constexpr QColor pressed(255, 222, 140); ///< what is held down
inline constexpr QColor checked(214, 230, 250); ///< what is switched on
inline constexpr QColor chosen(176, 208, 250);  ///< selected words and rows, below ink
} // namespace colours

inline constexpr int buttonCorner = 12;   ///< pixels
inline constexpr int panelCorner = 18;    ///< pixels
inline constexpr int smallestButton = 48; ///< pixels, width and height of anything to click
inline constexpr int shadowMargin = 18;   ///< pixels that a floating panel leaves around itself for its shadow

/// Pixels of that many twips, at 15 twips a pixel.
constexpr int twips(int value) {
    return value / 15;
}

/// Gives the program its style, palette, font (Andika 11 pt) and style sheet. Call once, before the first window.
void applyTheme(QApplication &application);

/// The drawing ":/icons/NAME.svg" (or the resource itself where `name` begins with ":/"), `size` logical pixels square,
/// sharp at that device pixel ratio. Kept between calls. Empty for an unknown name.
QPixmap iconPixmap(const QString &name, int size, qreal devicePixelRatio);

/// The same picture as something that cannot be clicked: grey and faint.
QPixmap disabledPixmap(const QPixmap &pixmap);

/// A caption as it is read: "&&" is one ampersand, a single "&" marks a key and is not shown.
QString plainCaption(const QString &text);

/// Paints the soft shadow of a floating panel around `panel`, within shadowMargin pixels of it.
void paintSoftShadow(QPainter &painter, const QRectF &panel, qreal corner);

/// Paints a panel: paper with a line around it.
void paintPanel(QPainter &painter, const QRectF &panel, qreal corner, const QColor &surface = colours::paper);

} // namespace lumora
