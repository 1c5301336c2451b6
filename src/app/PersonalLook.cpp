#include "app/PersonalLook.h"

#include "app/InterfaceScale.h"
#include "session/ForMe.h"
#include "widgets/Motion.h"
#include "widgets/Theme.h"

#include <QApplication>

namespace lumora {

void showPersonalLook(QApplication &application, const ForMe &forMe) {
    scaleInterface(forMe.size);
    setCalm(forMe.calm);
    applyTheme(application, {.highContrast = forMe.highContrast, .easyLetters = forMe.easyLetters});
}

} // namespace lumora
