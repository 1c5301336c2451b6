// The colours of everything that is drawn by code, of the style sheets and of the guide.
#pragma once

#include <QColor>

namespace lumora::colours {

/// One colour for each thing that is painted.
struct Set {
    // There are two surfaces: a warm white that people work on (the table, windows, panels, fields), and one tint for
    // what is round it (title, command row, tool column, status line) and for what cannot be written in. Ink on any of
    // them has a contrast of at least 4.5 : 1.
    QColor paper{252, 250, 243};
    QColor parchment{236, 233, 216};
    QColor line{207, 201, 174};
    QColor ink{43, 40, 64};
    QColor faintInk{100, 96, 112};     ///< hints and notes; 5 : 1 on parchment
    QColor disabledInk{126, 122, 114}; ///< words that can still be read: 3 : 1 on parchment
    // Crayons: icons and states. Ink is written on sun and coral, white on the others.
    QColor sky{47, 128, 237};
    QColor sun{255, 197, 61};
    QColor leaf{52, 178, 123};
    QColor coral{255, 107, 87};
    QColor plum{138, 92, 246};
    QColor link{33, 91, 169};
    QColor focus{36, 98, 182};     ///< the ring round what has the keyboard
    QColor hover{255, 240, 200};   ///< what the pointer is over: paper in the sun
    QColor litEdge{255, 197, 61};  ///< the line round that
    QColor pressed{255, 222, 140}; ///< what is held down
    QColor checked{176, 208, 250}; ///< what is switched on, and selected words and rows, below ink
    QColor checkedEdge{176, 208, 250};
    QColor grip{180, 175, 151}; ///< of a scroll bar
};

inline constexpr Set usual;

/// Black, white and yellow, with a dark blue for what the keyboard and links need: ink on every surface, and every line
/// on white, have a contrast of at least 7 : 1. Both surfaces are white: the drawings are made for a light one.
inline constexpr Set highContrast{
    .paper = QColor(255, 255, 255),
    .parchment = QColor(255, 255, 255),
    .line = QColor(0, 0, 0),
    .ink = QColor(0, 0, 0),
    .faintInk = QColor(51, 51, 51),
    .disabledInk = QColor(85, 85, 85),
    .sky = QColor(0, 46, 140),
    .sun = QColor(255, 221, 0),
    .leaf = QColor(0, 90, 40),
    .coral = QColor(255, 176, 0),
    .plum = QColor(80, 0, 140),
    .link = QColor(0, 46, 140),
    .focus = QColor(0, 46, 140),
    .hover = QColor(255, 245, 150),
    .litEdge = QColor(0, 0, 0),
    .pressed = QColor(255, 200, 0),
    .checked = QColor(255, 221, 0),
    .checkedEdge = QColor(0, 0, 0),
    .grip = QColor(85, 85, 85),
};

/// The set that is shown now; applyTheme changes it. Painting asks for a colour each time, by the names below.
inline Set shown = usual;

inline bool isHighContrast() {
    return shown.line == highContrast.line;
}

inline constexpr const QColor &paper = shown.paper;
inline constexpr const QColor &parchment = shown.parchment;
inline constexpr const QColor &line = shown.line;
inline constexpr const QColor &ink = shown.ink;
inline constexpr const QColor &faintInk = shown.faintInk;
inline constexpr const QColor &disabledInk = shown.disabledInk;
inline constexpr const QColor &sky = shown.sky;
inline constexpr const QColor &sun = shown.sun;
inline constexpr const QColor &leaf = shown.leaf;
inline constexpr const QColor &coral = shown.coral;
inline constexpr const QColor &plum = shown.plum;
inline constexpr const QColor &link = shown.link;
inline constexpr const QColor &focus = shown.focus;
inline constexpr const QColor &hover = shown.hover;
inline constexpr const QColor &litEdge = shown.litEdge;
inline constexpr const QColor &pressed = shown.pressed;
inline constexpr const QColor &checked = shown.checked;
inline constexpr const QColor &checkedEdge = shown.checkedEdge;
inline constexpr const QColor &grip = shown.grip;

} // namespace lumora::colours
