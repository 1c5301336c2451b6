// The pixels of a picture at a scale, for just the part that a view has to paint.
#pragma once

#include <QImage>
#include <QRect>

namespace lumora {

/// How a scaled picture is computed: every result pixel takes the source pixel under its centre, or a blend of the
/// four around it.
enum class Sampling { Nearest, Bilinear };

/// Part of the picture as it looks enlarged or reduced by `scale` (more than 0; bilinear is meant for 0.5 and more).
/// `part` counts result pixels from the scaled picture's top left corner and may reach beyond its edges, where the
/// picture's last pixels are repeated. The same result pixel comes out the same whatever part it is asked for with.
/// Format_RGB32 for an opaque picture, else Format_ARGB32_Premultiplied; null when memory is refused.
QImage sampled(const QImage &picture, double scale, const QRect &part, Sampling sampling);
/// The same for a picture that is only a part of the whole: its top left corner is at `origin` of the whole (in the
/// picture's own pixels), and each axis has its scale.
QImage sampled(const QImage &picture, QSizeF scale, QPointF origin, const QRect &part, Sampling sampling);

} // namespace lumora
