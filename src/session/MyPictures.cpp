#include "session/MyPictures.h"

#include "document/DiscardedPhotos.h"
#include "document/SavedPhotos.h"
#include "session/AppContext.h"

#include <QLocale>
#include <algorithm>

namespace lumora {

namespace {

/// The day of the week says it: nothing is kept for longer than one.
QString captionOf(const Texts &texts, const QDateTime &when) {
    const QLocale locale(texts.text("Language"));
    const QString time = locale.toString(when.time(), QLocale::ShortFormat);
    const bool today = when.date() == QDate::currentDate();
    return texts.text("PictureWhen")
        .arg(today ? texts.text("PictureToday") : locale.toString(when.date(), QStringLiteral("dddd")), time);
}

} // namespace

QList<MyPicture> myPictures(const AppContext &context) {
    QList<MyPicture> pictures;
    for (const SavedPhoto &photo : SavedPhotos(context.installation.recoveryFolder).list()) {
        pictures += {photo.path, photo.path.section(QLatin1Char('/'), -1), photo.when};
    }
    for (const DiscardedPhoto &photo : DiscardedPhotos(context.installation.recoveryFolder).list()) {
        pictures += {photo.path, captionOf(context.texts, photo.when), photo.when, true};
    }
    std::stable_sort(pictures.begin(), pictures.end(),
                     [](const MyPicture &a, const MyPicture &b) { return a.when > b.when; });
    return pictures;
}

void noteSaved(AppContext &context, const QString &path) {
    context.tasks.run([&] { SavedPhotos(context.installation.recoveryFolder).add(path); });
}

ThrownAway thrownAway(const AppContext &context) {
    ThrownAway all;
    for (const DiscardedPhoto &photo : DiscardedPhotos(context.installation.recoveryFolder).list()) {
        ++all.photos;
        all.bytes += photo.bytes;
    }
    return all;
}

void emptyThrownAway(const AppContext &context) {
    DiscardedPhotos(context.installation.recoveryFolder).clear();
}

} // namespace lumora
