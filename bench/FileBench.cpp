// Rows for picture files: from bytes to pixels and back, all in memory.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "imaging/PictureFile.h"

#include <map>

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
    addRows("JpegEncode90",
            [](const QImage &picture) { benchmark::DoNotOptimize(encodeJpeg(picture, 90).constData()); });
}

} // namespace lumora
