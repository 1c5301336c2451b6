#include "session/PhotoStatus.h"

#include "session/AppContext.h"

#include <cmath>

namespace lumora {

namespace {

const char *markedWord(PhotoSelection::Shape shape) {
    switch (shape) {
    case PhotoSelection::Shape::Rectangle:
        return "Selection1";
    case PhotoSelection::Shape::Ellipse:
        return "Selection2";
    default:
        return "Selection3";
    }
}

} // namespace

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

QString spokenPhoto(const AppContext &context) {
    const Texts &texts = context.texts;
    const PhotoDocument &photo = context.photo;
    if (!photo.PhotoLoaded() || photo.picCanvas().isNull()) {
        return {};
    }
    const auto size = [&texts](QSize pixels) {
        return texts.text("CropSize").arg(pixels.width()).arg(pixels.height());
    };
    QStringList words;
    if (!photo.fileName().isEmpty()) {
        words += photo.fileName();
    }
    words += size(photo.picCanvas().size());
    words += texts.text("ZoomPercent").arg(photo.zoom());
    if (!photo.selection().isEmpty()) {
        words += texts.text(markedWord(photo.selection().shape()));
        words += size(photo.selection().box().size());
    }
    return words.join(QStringLiteral(", "));
}

} // namespace lumora
