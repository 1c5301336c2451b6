#include "app/PersonalLook.h"

#include "app/InterfaceScale.h"
#include "session/ForMe.h"
#include "widgets/ClickMoveClick.h"
#include "widgets/Motion.h"
#include "widgets/Pointers.h"
#include "widgets/Theme.h"

#include <QApplication>

namespace lumora {

void showPersonalLook(QApplication &application, const ForMe &forMe) {
    scaleInterface(forMe.size);
    setCalm(forMe.calm);
    ClickMoveClick::setOn(forMe.clickMoveClick);
    setLargePointers(forMe.largePointer);
    applyTheme(application, {.highContrast = forMe.highContrast, .easyLetters = forMe.easyLetters});
}

} // namespace lumora
