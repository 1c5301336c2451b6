#include "session/PhotoStatus.h"

#include "session/AppContext.h"

#include <cmath>

namespace lumora {

QString photoStatus(const AppContext &context, double dotsPerInch, PhotoStatusKind kind) {
    const Texts &texts = context.texts;
    QString line = texts.text("StatusVersion").arg(texts.text("Statusbar"), versionNumber());
    const QSize pixels = context.photo.picCanvas().size();
    if (!context.photo.PhotoLoaded() || pixels.isEmpty()) {
        return line;
    }
    const auto millimetres = [dotsPerInch](int length) {
        return QString::number(std::lrint(length * 25.4 / (dotsPerInch > 0 ? dotsPerInch : 96.0)));
    };
    return texts.text(kind == PhotoStatusKind::Resized ? "StatusResized" : "StatusPhoto")
        .arg(line, QString::number(pixels.width()), QString::number(pixels.height()), millimetres(pixels.width()),
             millimetres(pixels.height()));
}

} // namespace lumora
