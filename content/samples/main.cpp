// lumora-samples OUTFOLDER [WIDTH] [NAME]: paints the sample photos into OUTFOLDER/<group>/<name>.jpg, WIDTH pixels
// wide (1600 when not given) and three quarters as high; with NAME only the picture of that name.
// lumora-samples --sheet PHOTOS FILE: one picture of all photos in the folders of PHOTOS.
#include "Gallery.h"
#include "Painter.h"
#include "imaging/PictureFile.h"
#include "imaging/Scale.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QTextStream>

namespace {

bool write(const QString &path, const QByteArray &bytes) {
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

/// All photos of the collection in rows, by group and name; null when one cannot be read.
QImage contactSheet(const QString &photos) {
    constexpr int Columns = 9;
    constexpr int Gap = 4; // pixels
    constexpr QSize Tile(220, 165);
    QStringList files;
    for (QDirIterator it(photos, {"*.jpg"}, QDir::Files, QDirIterator::Subdirectories); it.hasNext();) {
        files << it.next();
    }
    files.sort();
    const int rows = (int(files.size()) + Columns - 1) / Columns;
    QImage all(Columns * (Tile.width() + Gap), rows * (Tile.height() + Gap), QImage::Format_RGB32);
    all.fill(QColor(0xF2, 0xF0, 0xE6));
    QPainter painter(&all);
    for (int i = 0; i < files.size(); ++i) {
        const QImage photo(files[i]);
        if (photo.isNull()) {
            return {};
        }
        const QPoint at(i % Columns * (Tile.width() + Gap), i / Columns * (Tile.height() + Gap));
        painter.drawImage(at + QPoint(Gap / 2, Gap / 2),
                          lumora::scaled(photo.convertToFormat(QImage::Format_RGB32), Tile.width(), Tile.height()));
    }
    return all;
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream out(stdout);
    if (arguments.size() == 4 && arguments[1] == "--sheet") {
        const QImage sheet = contactSheet(arguments[2]);
        return !sheet.isNull() && write(arguments[3], lumora::encodeJpeg(sheet, 88)) ? 0 : 1;
    }
    const int width = arguments.size() > 2 ? arguments[2].toInt() : 1600;
    if (arguments.size() < 2 || arguments.size() > 4 || width < 16 || width > 10000) {
        out << "usage: lumora-samples OUTFOLDER [WIDTH 16..10000] [NAME]\n"
               "       lumora-samples --sheet PHOTOS FILE\n";
        return 2;
    }
    for (const lumora::samples::Sample &sample : lumora::samples::gallery()) {
        if (arguments.size() == 4 && arguments[3] != QLatin1String(sample.name)) {
            continue;
        }
        QElapsedTimer timer;
        timer.start();
        const QDir folder(arguments[1] + "/" + sample.folder);
        const QString path = folder.filePath(QString::fromLatin1(sample.name) + ".jpg");
        const QImage picture = lumora::samples::paint(*sample.make(), width, width * 3 / 4);
        if (!folder.mkpath(".") || !write(path, lumora::encodeJpeg(picture, 90))) {
            out << "cannot write " << path << "\n";
            return 1;
        }
        out << path << "  " << timer.elapsed() / 1000 << " s\n" << Qt::flush;
    }
    return 0;
}
