// Picture errors in words that can be read to a child.
#pragma once

#include "imaging/PictureFile.h"

#include <QString>

namespace lumora {

class Texts;
enum class Setting;

/// The status line's words for a picture that could not be saved.
QString plainWords(const Texts &texts, const PictureWritten &written);

/// The status line's words for an error; an empty text for None.
QString plainWords(const Texts &texts, PictureError error);

/// Why a button does nothing: that setting is neither "0" nor "1" in the file.
QString oddSetting(const Texts &texts, Setting setting);

} // namespace lumora
