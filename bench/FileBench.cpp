// Rows for picture files: from bytes to pixels and back, all in memory.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "document/RecoveryFolder.h"
#include "imaging/PictureFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

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

/// A file type as Lumora writes it and as Qt's plugin for it does with the usual library, on one core.
void addWriterRows(const std::string &name, const QString &extension, int compression) {
    // To a file in memory where the machine has such a folder: the disk is not what is measured.
    const auto folder = std::make_shared<QTemporaryDir>("/dev/shm/lumora-bench-XXXXXX");
    const QString path = folder->filePath("a." + extension);
    addRows((name + "Encode").c_str(), [folder, path](const QImage &picture) {
        if (!writePicture(picture, path).ok()) {
            std::abort();
        }
    });
    addRows((name + "EncodeByQt").c_str(), [folder, path, compression](const QImage &picture) {
        QImageWriter writer(path);
        writer.setCompression(compression);
        if (!writer.write(picture)) {
            std::abort();
        }
    });
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
    addWriterRows("Png", "png", 11); // of 100: deflate's level 1, as Lumora packs
    addWriterRows("Tiff", "tif", 1);
    addWriterRows("Bmp", "bmp", 0);
    // To a file in memory, then where temporary files are: until it would survive a power cut.
    for (const auto &[name, parent] :
         {std::pair("RecoveryCopy", QString("/dev/shm")), std::pair("RecoveryCopyOnDisk", QDir::tempPath())}) {
        const auto folder = std::make_shared<QTemporaryDir>(parent + "/lumora-bench-XXXXXX");
        addRows(name, [folder, copy = std::make_shared<RecoveryFolder>(folder->path())](const QImage &picture) {
            if (!copy->write({picture})) {
                std::abort();
            }
        });
    }
    addRows("GifEncode",
            [folder = std::make_shared<QTemporaryDir>("/dev/shm/lumora-bench-XXXXXX")](const QImage &picture) {
                if (!writePicture(picture, folder->filePath("a.gif")).ok()) {
                    std::abort();
                }
            });
    addRows("JpegEncode90",
            [](const QImage &picture) { benchmark::DoNotOptimize(encodeJpeg(picture, 90).constData()); });
    addRows("JpegEncode90ByQt", [](const QImage &picture) {
        QBuffer buffer;
        QImageWriter writer(&buffer, "jpg");
        writer.setQuality(90);
        if (!writer.write(picture)) {
            std::abort();
        }
    });
}

} // namespace lumora
