// lumora-samples OUTFOLDER [WIDTH] [NAME]: paints the sample photos into OUTFOLDER/<group>/<name>.jpg, WIDTH pixels
// wide (1600 when not given) and three quarters as high; with NAME only the picture of that name.
#include "Gallery.h"
#include "Painter.h"
#include "imaging/PictureFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSaveFile>
#include <QTextStream>

namespace {

bool write(const QString &path, const QByteArray &bytes) {
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream out(stdout);
    const int width = arguments.size() > 2 ? arguments[2].toInt() : 1600;
    if (arguments.size() < 2 || arguments.size() > 4 || width < 16 || width > 10000) {
        out << "usage: lumora-samples OUTFOLDER [WIDTH 16..10000] [NAME]\n";
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
