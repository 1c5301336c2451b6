#include "imaging/files/Orientation.h"

#include "imaging/transforms/Transform.h"

namespace lumora {

namespace {

// What EXIF 2.32, tag 0x0112, says of the stored row 0 and column 0.
constexpr Turn turns[9] = {{},
                           {false, false, false},
                           {false, true, false},
                           {false, true, true},
                           {false, false, true},
                           {true, false, false},
                           {true, true, false},
                           {true, true, true},
                           {true, false, true}};

} // namespace

bool swapsSides(int orientation) {
    return orientation >= 5 && orientation <= 8;
}

QImage turnedUpright(const QImage &picture, int orientation) {
    if (orientation < 2 || orientation > 8) {
        return picture;
    }
    return turned(picture, turns[orientation]);
}

} // namespace lumora
