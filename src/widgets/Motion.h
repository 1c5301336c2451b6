// Whether things may move. Asked by whatever loops or slides.
#pragma once

namespace lumora {

/// False after setCalm(true) and where the desktop asks for less motion: GNOME's "enable-animations", KDE's animation
/// factor 0, GTK's "gtk-enable-animations", or LUMORA_MOTION=0 in the environment. The desktop is asked once; until
/// GNOME has answered (some milliseconds) the answer is true.
bool motionWanted();

/// From now on nothing moves, whatever the desktop says; false leaves it to the desktop again.
void setCalm(bool calm);

} // namespace lumora
