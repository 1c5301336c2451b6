// The status line's text about the photo.
#pragma once

#include <QString>

namespace lumora {

struct AppContext;

/// Which of the line's patterns shows the photo's size: after a resize by the panel a second bracket opens.
enum class PhotoStatusKind { Usual, Resized };

/// The program's caption, twenty spaces, the version and, while a photo is loaded, its size in pixels and, at the
/// screen's resolution of `dotsPerInch` (96 on most), in whole millimetres.
QString photoStatus(const AppContext &context, double dotsPerInch, PhotoStatusKind kind = PhotoStatusKind::Usual);

/// The photo as a screen reader says it: the name of its file where it has one, its size, the zoom and what is marked
/// of it. Empty without a photo.
QString spokenPhoto(const AppContext &context);

} // namespace lumora
