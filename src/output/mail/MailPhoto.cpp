#include "output/mail/MailPhoto.h"

#include "base/basMisc.h"
#include "imaging/PictureFile.h"
#include "imaging/Scale.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <algorithm>
#include <cstdio>

namespace lumora {

namespace {

constexpr int quality = 88;
const QString fileName = QStringLiteral("LU_Photo.jpg");
const QString folderName = QStringLiteral("lumora-mail-");

/// Zero where the photo keeps its size.
int longestSide(MailSize size) {
    switch (size) {
    case MailSize::Small:
        return 1024;
    case MailSize::AsItIs:
        return 0;
    case MailSize::Medium:
        break;
    }
    return 2048;
}

/// Takes the name from whatever has it, once the file is complete.
bool writeAs(const QString &path, const QByteArray &bytes) {
    QTemporaryFile file(QFileInfo(path).path() + "/.LU_Photo-XXXXXX"); // a new file, mode 0600
    return file.open() && file.write(bytes) == bytes.size() && file.flush() &&
           std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData()) == 0;
}

} // namespace

QImage reducedForMail(const QImage &photo, MailSize size) {
    const int side = longestSide(size);
    const int longer = std::max(photo.width(), photo.height());
    if (side == 0 || longer <= side) {
        return photo;
    }
    const auto reduced = [&](int pixels) { return std::max(1, qRound(double(pixels) * side / longer)); };
    return scaled(photo, reduced(photo.width()), reduced(photo.height()));
}

QByteArray mailJpeg(const QImage &picture) {
    return picture.isNull() ? QByteArray() : encodeJpeg(picture, quality);
}

QString writeMailFile(const QByteArray &jpeg) {
    if (jpeg.isEmpty()) {
        return {};
    }
    for (const QString &place : foldersForAMoment()) {
        QString usual = place + '/' + fileName;
        if (writeAs(usual, jpeg)) {
            return usual;
        }
        QTemporaryDir folder(place + '/' + folderName + "XXXXXX");
        QString path = folder.filePath(fileName);
        if (folder.isValid() && writeAs(path, jpeg)) {
            folder.setAutoRemove(false);
            return path;
        }
    }
    return {};
}

void removeMailFile(const QString &path) {
    QFile::remove(path);
    const QDir folder = QFileInfo(path).dir();
    if (folder.dirName().startsWith(folderName)) {
        QDir().rmdir(folder.path());
    }
}

} // namespace lumora
