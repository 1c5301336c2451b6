// How different two pictures look.
#pragma once

#include <QImage>

namespace lumora::test {

/// CIE L*a*b* of an sRGB colour, white D65.
struct LabColour {
    double L = 0;
    double a = 0;
    double b = 0;
};
LabColour labOf(QRgb colour);

/// CIEDE2000 with kL = kC = kH = 1 (G. Sharma, W. Wu, E. Dalal, "The CIEDE2000 color-difference formula", 2005). 1 is
/// about what an eye can just tell apart.
double colourDifference(const LabColour &first, const LabColour &second);

/// The mean difference of the pixels of two pictures of one size; of every `step`th across and down.
double meanColourDifference(const QImage &first, const QImage &second, int step = 1);

} // namespace lumora::test
