#include "document/PictureDifference.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace lumora {

namespace {

const QRgb *row(const QImage &picture, int y) {
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

bool sameRow(const QImage &a, const QImage &b, int y) {
    return std::memcmp(row(a, y), row(b, y), sizeof(QRgb) * static_cast<size_t>(a.width())) == 0;
}

} // namespace

QRect differingRect(const QImage &a, const QImage &b) {
    if (a.constBits() == b.constBits()) {
        return {};
    }
    const int width = a.width();
    int top = 0;
    while (top < a.height() && sameRow(a, b, top)) {
        ++top;
    }
    if (top == a.height()) {
        return {};
    }
    int bottom = a.height() - 1;
    while (sameRow(a, b, bottom)) {
        --bottom;
    }
    // Each row is looked at only outside the columns already known to differ: nothing is left to look at soon when
    // everything changed.
    int left = width;
    int right = -1;
    for (int y = top; y <= bottom && (left > 0 || right < width - 1); ++y) {
        const QRgb *const one = row(a, y);
        const QRgb *const two = row(b, y);
        left = static_cast<int>(std::mismatch(one, one + left, two).first - one);
        const auto fromRight = std::make_reverse_iterator(one + width);
        const auto toKnown = std::make_reverse_iterator(one + right + 1);
        const auto found = std::mismatch(fromRight, toKnown, std::make_reverse_iterator(two + width)).first;
        right = width - 1 - static_cast<int>(found - fromRight);
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}

} // namespace lumora
