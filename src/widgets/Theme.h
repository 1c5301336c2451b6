// How Lumora looks: its style sheet, its pictures and its measures; its colours are in base/Colours.h.
#pragma once

#include "base/Colours.h"
#include "widgets/Motion.h"

#include <QPixmap>
#include <QString>

class QApplication;
class QPainter;
class QRectF;
class QWidget;

namespace lumora {

inline constexpr int buttonCorner = 12;   ///< pixels
inline constexpr int panelCorner = 18;    ///< pixels
inline constexpr int smallestButton = 48; ///< pixels, width and height of anything to click
inline constexpr int simpleButton = 64;   ///< the same in Simple mode
inline constexpr int titleButton = 44;    ///< pixels, width and height of a button on a title strip
inline constexpr int closePicture = 32;   ///< pixels, a close cross with its margin
inline constexpr int shadowMargin = 18;   ///< pixels that a floating panel leaves around itself for its shadow

/// Pixels of that many twips, at 15 twips a pixel.
constexpr int twips(int value) {
    return value / 15;
}

/// What a user may change of the look.
struct ThemeLook {
    bool highContrast = false; ///< colours::highContrast
    bool easyLetters = false;  ///< 12 pt, farther apart
};

/// Gives the program its style, palette, font (Andika 11 pt; Noto for letters that it lacks) and style sheet. Call
/// before the first window, and later to change the look of all windows at once.
void applyTheme(QApplication &application, const ThemeLook &look = {});

/// What applyTheme has shown last.
const ThemeLook &shownLook();

/// A style sheet in which the names of the colours (@paper, @line …) are replaced by them.
QString withColours(QString sheet);

/// Gives a widget a style sheet of its own with such names, now and whenever the theme changes.
void setThemedSheet(QWidget &widget, const QString &sheet);
/// Shows its words in faintInk, for a remark, now and whenever the theme changes.
void setFaint(QWidget &widget);

/// The drawing ":/icons/NAME.svg" (or the resource itself where `name` begins with ":/"), `size` logical pixels square,
/// sharp at that device pixel ratio; mirrored where it points with the reading direction. Kept between calls. Empty for
/// an unknown name.
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
