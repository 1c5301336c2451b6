// The order in which people expect file names. Used by the lists of photos and the slideshow.
#pragma once

#include <QStringList>

namespace lumora {

/// Sorts file names by the rules of the user's language, digits as numbers (photo2 before photo10), upper and lower
/// case alike. Names that are equal by these rules are in the order of their characters.
void sortByName(QStringList &names);

} // namespace lumora
