// What went wrong with a picture, in words that a child can be read.
#pragma once

#include "imaging/PictureFile.h"

#include <QString>

namespace lumora {

class Texts;

/// The status line's words for an error; an empty text for None.
QString plainWords(const Texts &texts, PictureError error);

} // namespace lumora
