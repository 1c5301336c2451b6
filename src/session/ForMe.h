// What each user has set for themselves on the page "For me": how Lumora looks to them and how it is handled.
#pragma once

#include "session/Settings.h"

namespace lumora {

struct ForMe {
    ButtonSize size = ButtonSize::Usual;
    bool calm = false;           ///< nothing moves by itself
    bool easyLetters = false;    ///< larger letters, farther apart
    bool capitals = false;       ///< all words in capital letters
    bool highContrast = false;   ///< black, white and yellow
    bool clickMoveClick = false; ///< a click takes what would be dragged, the next one lets it go
    bool largePointer = false;
    bool readAloud = false; ///< the names of buttons are spoken

    bool operator==(const ForMe &) const = default;
};

ForMe readForMe(const Settings &settings);
/// Writes what differs from what is there.
void writeForMe(Settings &settings, const ForMe &forMe);

} // namespace lumora
