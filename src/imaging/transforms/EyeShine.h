// The shine of a flash in eyes that is not red: the pupil alone gets dark.
#pragma once

#include <QImage>

namespace lumora {

/// The colour that the pupil shines in: orange and pink in people, green and white in cats and dogs.
enum class EyeShine { Orange, Pink, Green, White };

enum class EyeShineOutcome {
    Done,
    NotFound, ///< nothing in the disc shines like that, or it reaches beyond the disc on most sides; nothing changed
    NoMemory, ///< nothing changed
};

/// Darkens the pupil at pixel (x, y): the connected area of one colour, the brightest of its kind near the click,
/// within the radius (pixels of the picture; any integers). It is grown from that place by the distance in CIE L*a*b*
/// (R. Adams, L. Bischof, "Seeded region growing", 1994), up to half the distance to the colours at the disc's edge.
/// Its edge is soft. The glint in it and everything around it, lids, skin, fur, the white and the iris, stay as they
/// are. Alpha stays.
EyeShineOutcome darkenEyeShine(QImage &picture, int x, int y, int radius, EyeShine shine);

} // namespace lumora
