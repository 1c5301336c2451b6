// What the references of the effects share.
#pragma once

#include <QColor>

namespace lumora::test {

/// ITU-R BT.601 in 15-bit fractions that add up to 1.
inline int luma(QRgb pixel) {
    return (3736 * qBlue(pixel) + 19235 * qGreen(pixel) + 9797 * qRed(pixel) + 16384) / 32768;
}

inline QRgb withAlphaOf(QRgb pixel, int red, int green, int blue) {
    return qRgba(red, green, blue, qAlpha(pixel));
}

} // namespace lumora::test
