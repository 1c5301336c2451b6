// Rows for picture files: from bytes to pixels and back, all in memory.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "imaging/PictureFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstdlib>
#include <map>
#include <memory>

namespace lumora {

namespace {

const QByteArray &jpegOf(const QImage &picture) {
    static std::map<int, QByteArray> files;
    QByteArray &file = files[picture.width()];
    if (file.isEmpty()) {
        file = encodeJpeg(picture, 90);
    }
    return file;
}

} // namespace

void addFileRows() {
    addRows("JpegDecode", [](const QImage &picture) {
        benchmark::DoNotOptimize(readPictureFromData(jpegOf(picture)).picture.constBits());
    });
    // From a file, as folders are shown; the system has it in its cache.
    addRows("JpegThumbnail120", [folder = std::make_shared<QTemporaryDir>()](const QImage &picture) {
        const QString path = folder->filePath(QString("%1.jpg").arg(picture.width()));
        if (!QFile::exists(path)) {
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(jpegOf(picture));
        }
        benchmark::DoNotOptimize(readThumbnail(path, 120).picture.constBits());
    });
    // To a file in memory where the machine has such a folder: the disk is not what is measured.
    addRows("PngEncode",
            [folder = std::make_shared<QTemporaryDir>("/dev/shm/lumora-bench-XXXXXX")](const QImage &picture) {
                if (!writePicture(picture, folder->filePath("a.png")).ok()) {
                    std::abort();
                }
            });
    addRows("JpegEncode90",
            [](const QImage &picture) { benchmark::DoNotOptimize(encodeJpeg(picture, 90).constData()); });
}

} // namespace lumora
