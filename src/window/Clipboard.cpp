#include "window/Clipboard.h"

#include "base/FileName.h"
#include "imaging/Picture.h"
#include "imaging/files/Format.h"

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QPointer>
#include <QUrl>
#include <new>
#include <system_error>

namespace lumora {

namespace {

const QString qtImage = QStringLiteral("application/x-qt-image");
const QString png = QStringLiteral("image/png");
const QString bmp = QStringLiteral("image/bmp");
constexpr qsizetype longestPath = 4096; // characters; PATH_MAX of Linux

// First the formats that keep every pixel and its transparency.
constexpr const char *pictureTypes[] = {"image/png",  "image/tiff",  "image/webp",     "image/bmp",
                                        "image/jpeg", "image/x-bmp", "image/x-MS-bmp", "image/x-ms-bmp",
                                        "image/jpg",  "image/heif",  "image/heic",     "image/gif"};

QByteArray encoded(const QImage &photo, QString (*write)(const QImage &, QIODevice &)) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    try {
        return write(photo, buffer).isEmpty() ? buffer.data() : QByteArray();
    } catch (const std::bad_alloc &) {
        return {};
    }
}

const QMimeData *clipboardData() {
    return QGuiApplication::clipboard()->mimeData();
}

/// The file that a line of text names by its path ("~" is the home folder) or address; empty when it names none.
QString fileNamedBy(QString text) {
    if (text.size() > longestPath) {
        return {};
    }
    text = text.trimmed();
    if (text.size() > 1 && (text.front() == u'"' || text.front() == u'\'') && text.back() == text.front()) {
        text = text.mid(1, text.size() - 2);
    }
    if (text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive)) {
        text = localFileOf(QUrl(text));
    } else if (text.startsWith(QLatin1String("~/"))) {
        text = QDir::homePath() + text.mid(1);
    }
    // A bare name would depend on the program's working directory.
    const bool named = QDir::isAbsolutePath(text) && !text.contains(QChar(u'\0')) && isFile(text);
    return named ? text : QString();
}

/// The first picture file named in the data; empty when there is none.
QString pictureFile(const QMimeData &data) {
    QStringList files;
    if (data.hasUrls()) {
        for (const QUrl &url : data.urls()) {
            files += fileNamedBy(localFileOf(url));
        }
    }
    if (data.hasText()) {
        const QString text = data.text();
        const QString firstLine = text.left(longestPath + 1).trimmed().section(QLatin1Char('\n'), 0, 0);
        files += fileNamedBy(firstLine);
    }
    for (const QString &file : files) {
        if (!file.isEmpty() && readPictureHeader(file).error == PictureError::None) {
            return file;
        }
    }
    return {};
}

/// Whether the data are a picture of a type that is tried below.
bool hasPicture(const QMimeData &data) {
    return data.hasImage() || std::any_of(std::begin(pictureTypes), std::end(pictureTypes),
                                          [&](const char *type) { return data.hasFormat(QLatin1String(type)); });
}

PictureRead decoded(const TaskRunner &run, const std::function<PictureRead()> &decode) {
    PictureRead read;
    run([&] { read = decode(); }, Stopping::Offered);
    return read;
}

PictureRead fromImage(const QImage &image) {
    const QImage picture = qint64{image.width()} * image.height() <= maxPicturePixels ? toPicture(image) : QImage();
    return {picture, picture.isNull() ? PictureError::NotAPicture : PictureError::None, {}};
}

/// While one type is being decoded the clipboard contents may change; then the remaining types are not tried.
PictureRead pictureIn(const QPointer<const QMimeData> &data, const TaskRunner &run) {
    PictureRead read;
    read.error = PictureError::NotAPicture;
    if (const auto *own = qobject_cast<const PhotoMimeData *>(data.data())) {
        return {own->photo(), PictureError::None, {}, own->metadata()};
    }
    const auto isToTry = [&] {
        return data != nullptr && read.error != PictureError::None && read.error != PictureError::Cancelled;
    };
    for (const char *type : pictureTypes) {
        if (isToTry() && data->hasFormat(QLatin1String(type))) {
            const QByteArray bytes = data->data(QLatin1String(type));
            read = decoded(run, [&bytes] { return readPictureFromData(bytes); });
        }
    }
    if (isToTry() && data->hasImage()) {
        const auto image = qvariant_cast<QImage>(data->imageData());
        read = decoded(run, [&image] { return fromImage(image); });
    }
    return read;
}

} // namespace

PhotoMimeData::PhotoMimeData(const QImage &photo, const PictureMetadata &metadata)
    : m_photo(photo), m_metadata(metadata) {
    const auto pack = [photo, control = &m_control] {
        const TaskControl::Scope scope(control);
        return encoded(photo, writePng);
    };
    try {
        m_png = std::async(std::launch::async, pack).share();
    } catch (const std::system_error &) {
        m_png = std::async(std::launch::deferred, pack).share(); // no thread available: encode on request
    }
}

QStringList PhotoMimeData::formats() const {
    return {png, bmp, qtImage};
}

QVariant PhotoMimeData::retrieveData(const QString &type, QMetaType) const {
    if (type == qtImage) {
        return m_photo;
    }
    if (type == png) {
        return m_png.get();
    }
    if (type != bmp) {
        return {};
    }
    if (m_bmp.isEmpty()) {
        m_bmp = encoded(m_photo, writeBmp);
    }
    return m_bmp;
}

void CopyPhoto(const QImage &photo, const PictureMetadata &metadata) {
    if (!photo.isNull()) {
        QGuiApplication::clipboard()->setMimeData(new PhotoMimeData(photo, metadata));
    }
}

bool clipboardHasPicture() {
    const QMimeData *data = clipboardData();
    return data != nullptr && (hasPicture(*data) || !pictureFile(*data).isEmpty());
}

PictureRead readClipboardPicture(const TaskRunner &run) {
    PictureRead read;
    read.error = PictureError::NotAPicture;
    const QPointer<const QMimeData> data = clipboardData();
    if (data == nullptr) {
        return read;
    }
    const QString file = pictureFile(*data);
    read = pictureIn(data, run);
    if (read.error != PictureError::None && read.error != PictureError::Cancelled && !file.isEmpty()) {
        return decoded(run, [&file] { return readPicture(file); });
    }
    return read;
}

} // namespace lumora
