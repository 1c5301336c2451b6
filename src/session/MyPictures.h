// The user's own pictures: those that were saved lately, and those whose changes were thrown away and can be fetched
// back. What "My Pictures" of the open dialog lists and the options empty.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

namespace lumora {

struct AppContext;

struct MyPicture {
    QString path;
    QString caption; ///< the file's name, or when it was thrown away, in the user's language
    QDateTime when;
    bool thrownAway = false;
};

/// All of them, the newest first.
QList<MyPicture> myPictures(const AppContext &context);

/// Notes in the background that a photo was saved.
void noteSaved(AppContext &context, const QString &path);

struct ThrownAway {
    int photos = 0;
    qint64 bytes = 0;
};
/// How much can be fetched back.
ThrownAway thrownAway(const AppContext &context);
/// Removes it for good.
void emptyThrownAway(const AppContext &context);

} // namespace lumora
