// Oil painting: the effect of that name.
#pragma once

#include "imaging/Region.h"

namespace lumora {

struct OilPainting {
    double brush = 6; ///< the radius in pixels, 0 (nothing changes) to 1000; clamped
    double unit = 1;  ///< pixels that are one to the eye when the whole picture is seen
};

/// Paints the picture again with strokes that follow what is in it: an anisotropic Kuwahara filter (Kyprianidis, Kang
/// and Doellner, "Image and Video Abstraction by Anisotropic Kuwahara Filtering", Computer Graphics Forum 28, 2009; the
/// weights of the sectors as in Kyprianidis, Semmo, Kang and Doellner, "Anisotropic Kuwahara Filtering with Polynomial
/// Weighting Functions", 2010). A pixel becomes the mean of what lies in eight sectors of an ellipse around it, of
/// which those of even colour count most; the ellipse is twice the brush long where the picture has a clear direction.
/// The traces of bristles run along the strokes, lit from the upper left.
///
/// A brush of 16 pixels or more (12 from a unit of 6 on) paints a copy that is reduced by a power of two, which is then
/// enlarged, so that a picture reduced beforehand, painted with a brush reduced likewise, looks the same. Pictures that
/// are not opaque are painted with their colours multiplied by alpha. Source and target have equal size and contain
/// area; an area is painted as it is in the whole picture. Throws std::bad_alloc when memory for the blocks is refused.
void applyOilPainting(const OilPainting &parameters, ConstPixelView source, PixelView target, PixelRect area,
                      bool opaque);

} // namespace lumora
