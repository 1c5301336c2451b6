// What Lumora reads in other threads while its windows go on: thumbnails and slides.
#pragma once

#include "Unsaved.h"

namespace lumora::keep {

/// The work: makes a thumbnail and a slide of each file in the folder, as the windows do, and ends as the application
/// does. Prints how many there are of each.
Work picturesWork(const QString &folder);

} // namespace lumora::keep
