// Picture errors in words that can be read to a child.
#pragma once

#include "imaging/PictureFile.h"

#include <QString>

namespace lumora {

class Texts;

/// The status line's words for a picture that could not be saved.
QString plainWords(const Texts &texts, const PictureWritten &written);

/// The status line's words for an error; an empty text for None.
QString plainWords(const Texts &texts, PictureError error);

} // namespace lumora
