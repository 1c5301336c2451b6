// The pointers of the program: those of the system, or drawings of twice their size for whoever looks for them.
#pragma once

#include <QCursor>

namespace lumora {

/// From now on every widget of this program, also the ones that come later, shows a large pointer where it would show
/// one of the system's; false gives these back. While it is off nothing is installed.
void setLargePointers(bool large);

/// How much larger than usual a pointer is to be drawn: 1 or 2. For the pointers that a tool draws itself.
int pointerScale();

/// The large drawing that stands for the system's pointer of that shape; that pointer itself where there is none.
QCursor largePointer(Qt::CursorShape shape, qreal devicePixelRatio);

} // namespace lumora
