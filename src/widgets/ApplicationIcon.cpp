#include "widgets/ApplicationIcon.h"

#include "widgets/Theme.h"

namespace lumora {

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
        icon.addPixmap(iconPixmap(size <= 24 ? "lumora-small" : "lumora", size, 1));
    }
    return icon;
}

} // namespace lumora
