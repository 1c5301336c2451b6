#include "session/DoEvents.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace lumora {

namespace {
int depth = 0; // the user interface has one thread, and so has this
}

void DoEvents() {
    ++depth;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    --depth;
}

bool isInDoEvents() {
    return depth > 0;
}

} // namespace lumora
