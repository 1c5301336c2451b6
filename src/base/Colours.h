// The colours of everything that is drawn by code, of the style sheets and of the guide.
#pragma once

#include <QColor>

namespace lumora::colours {

// There are two surfaces: a warm white that people work on (the table, windows, panels, fields), and one tint for what
// is round it (title, command row, tool column, status line) and for what cannot be written in. Ink on any of them has
// a contrast of at least 4.5 : 1.
inline constexpr QColor paper(252, 250, 243);
inline constexpr QColor parchment(236, 233, 216);
inline constexpr QColor line(207, 201, 174);
inline constexpr QColor ink(43, 40, 64);
inline constexpr QColor faintInk(100, 96, 112); ///< hints and notes; 5 : 1 on parchment
// Crayons: icons and states.
inline constexpr QColor sky(47, 128, 237);
inline constexpr QColor sun(255, 197, 61);
inline constexpr QColor leaf(52, 178, 123);
inline constexpr QColor coral(255, 107, 87);
inline constexpr QColor plum(138, 92, 246);
inline constexpr QColor hover(255, 240, 200);   ///< what the pointer is over: paper in the sun
inline constexpr QColor pressed(255, 222, 140); ///< what is held down
inline constexpr QColor checked(176, 208, 250); ///< what is switched on
inline constexpr QColor chosen = checked;       ///< selected words and rows, below ink

} // namespace lumora::colours
