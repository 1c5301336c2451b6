// Shows the program as its user has set it on the page "For me", in all windows at once.
#pragma once

class QApplication;

namespace lumora {

struct ForMe;

/// Call before the first window, and whenever the user's settings have changed: open windows follow at once, but for
/// the words that they show, which are texts.
void showPersonalLook(QApplication &application, const ForMe &forMe);

} // namespace lumora
