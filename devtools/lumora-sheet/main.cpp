// lumora-sheet OUTFOLDER [PHOTO...]: contact sheets of all artwork in the binary, on light and dark ground, at 100 %
// and 200 %, drawn by the functions that the program uses. With photos: those with what is painted, woven and framed
// instead, at 1, 12 and 24 megapixels, whole and in a part of one to one.
#include "effects/EffectTable.h"
#include "effects/FrameArtwork.h"
#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/effects/Texture.h"
#include "session/AppContext.h"
#include "tools/canvas/TargetCursor.h"
#include "widgets/AnimatedButton.h"
#include "widgets/ApplicationIcon.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QPainter>
#include <QTextStream>
#include <algorithm>
#include <cmath>
#include <functional>

namespace lumora {
namespace {

/// A name and its pictures side by side, made for a device pixel ratio.
struct Row {
    QString name;
    std::function<QList<QPixmap>(qreal)> pictures;
};
using FromFile = QList<QPixmap> (*)(const QString &path, qreal ratio);

constexpr int gap = 12;        // pixels
constexpr int nameHeight = 22; // pixels

QSize logicalSize(const QPixmap &picture) {
    return picture.deviceIndependentSize().toSize();
}

/// The rows in so many columns of equal cells.
QImage sheet(const QList<Row> &rows, int columns, qreal ratio, const QColor &ground, const QColor &ink) {
    QSize cell(90, 0);
    QList<QList<QPixmap>> drawn;
    for (const Row &row : rows) {
        drawn << row.pictures(ratio);
        int width = gap;
        for (const QPixmap &picture : drawn.last()) {
            width += logicalSize(picture).width() + gap;
            cell = cell.expandedTo({width, logicalSize(picture).height() + nameHeight + gap});
        }
    }
    const int lines = (int(rows.size()) + columns - 1) / columns;
    QImage image(QSize(cell.width() * columns, cell.height() * lines) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(ground);
    QPainter painter(&image);
    painter.setPen(ink);
    for (int i = 0; i < rows.size(); ++i) {
        QPoint at(i % columns * cell.width() + gap, i / columns * cell.height());
        painter.drawText(QRect(at, QSize(cell.width() - gap, nameHeight)), Qt::AlignVCenter, rows[i].name);
        for (const QPixmap &picture : drawn[i]) {
            painter.drawPixmap(at + QPoint(0, nameHeight), picture);
            at.rx() += logicalSize(picture).width() + gap;
        }
    }
    return image;
}

/// A row for every file of a folder of the binary that matches.
QList<Row> files(const QString &folder, const QString &pattern, FromFile pictures) {
    QList<Row> rows;
    for (const QString &file : QDir(folder).entryList({pattern}, QDir::Files, QDir::Name)) {
        rows << Row{file, [=](qreal ratio) { return pictures(folder + "/" + file, ratio); }};
    }
    return rows;
}

/// At the sizes of the program, the last one disabled.
QList<QPixmap> icon(const QString &path, qreal ratio) {
    QList<QPixmap> pictures;
    for (const int size : {24, 32, 40, 64}) {
        pictures << iconPixmap(path, size, ratio);
    }
    return pictures << disabledPixmap(pictures[2]);
}

QList<QPixmap> loop(const QString &firstFrame, qreal ratio) {
    QList<QPixmap> pictures;
    for (int frame = 1; frame <= AnimatedButton::frames; ++frame) {
        pictures << iconPixmap(QString(firstFrame).replace("-1.", QString("-%1.").arg(frame)), 96, ratio);
    }
    return pictures;
}

/// At its size, and four times as large with a cross at its hot spot.
QList<QPixmap> cursor(const QString &path, qreal ratio) {
    const QCursor shown = targetCursor(path.at(path.size() - 5).digitValue(), ratio);
    QPixmap large = iconPixmap(path, 128, ratio);
    QPainter painter(&large);
    painter.setPen(colours::coral);
    const QPoint spot = shown.hotSpot() * 4;
    painter.drawLine(spot - QPoint(9, 0), spot + QPoint(9, 0));
    painter.drawLine(spot - QPoint(0, 9), spot + QPoint(0, 9));
    return {shown.pixmap(), large};
}

/// The first of the sample photos beside the program; a grey one without them.
QImage photo(QSize size) {
    QDirIterator samples(QCoreApplication::applicationDirPath() + "/My Photos", {"*.jpg"}, QDir::Files,
                         QDirIterator::Subdirectories);
    const QImage sample(samples.hasNext() ? samples.next() : QString());
    QImage photo(size, QImage::Format_RGB32);
    photo.fill(Qt::gray);
    QPainter(&photo).drawImage(photo.rect(), sample);
    return photo;
}

QPixmap sharp(QImage image, qreal ratio) {
    image.setDevicePixelRatio(ratio);
    return QPixmap::fromImage(image);
}

QList<QPixmap> frame(int n, qreal ratio) {
    QList<QPixmap> pictures;
    for (const QSize size : {QSize(480, 360), QSize(270, 360), QSize(360, 360), QSize(900, 300)}) {
        pictures << sharp(FrameArtwork::around(n, photo(size * ratio)), ratio);
    }
    return pictures;
}

/// By itself and on a photo, with threads for a photo of so many thousand pixels.
QList<QPixmap> canvas(double unit, qreal ratio) {
    QList<QPixmap> pictures;
    QImage grey(QSize(800, 600) * ratio, QImage::Format_RGB32);
    grey.fill(Qt::gray);
    for (const QImage &picture : {grey, photo(grey.size())}) {
        EffectEngine engine;
        engine.setPicture(picture);
        engine.apply({applyTexture, {unit * ratio}}, false);
        pictures << sharp(engine.picture(), ratio);
    }
    return pictures;
}

QList<QPixmap> sign(qreal ratio) {
    QList<QPixmap> pictures;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        pictures << sharp(applicationIcon().pixmap(QSize(size, size) * ratio).toImage(), ratio);
    }
    return pictures;
}

/// What a click makes of a photo.
struct Look {
    QString name;
    std::function<QImage(const QImage &photo)> draw;
    int frame = 0; ///< its number, of frames
};

/// As the floating bars call it.
QString nameOf(const QString &key) {
    static const AppContext context{Installation{QCoreApplication::applicationDirPath()}};
    return context.texts.text(key);
}

Look lookOf(const Effect &effect, const QString &name, const EffectValues &values) {
    return {name, [&effect, values](const QImage &photo) {
                EffectEngine engine;
                engine.setPicture(photo);
                engine.apply(operationOf(effect, false, values, effectUnit(photo.size())), false);
                return engine.picture();
            }};
}

QList<Look> effectLooks() {
    QList<Look> all{{"photo", [](const QImage &photo) { return photo; }}};
    for (const EffectGroup group : {EffectGroup::Basic, EffectGroup::Special}) {
        for (const Effect &effect : effects(group)) {
            const bool isBasic = group == EffectGroup::Basic;
            const QString name = nameOf(isBasic ? QString("BasicEffects%1").arg(effect.number) : effect.name);
            all << lookOf(effect, QString(name).replace("&&", "&"), effect.basic);
        }
    }
    const Effect &reflection = *findEffect(EffectGroup::Special, "keySFX12");
    for (const int way : {2, 3, 4}) {
        all << lookOf(reflection, QString("%1 %2").arg(nameOf(reflection.name)).arg(way), {way});
    }
    return all;
}

QList<Look> frameLooks() {
    QList<Look> all;
    for (int n = 1; n <= frameCount; ++n) {
        all << Look{nameOf(QString("Frame%1").arg(n)), [n](const QImage &p) { return FrameArtwork::around(n, p); }, n};
    }
    return all;
}

/// What is shown one to one of the photo of that number: of effects the middle, of frames their first corner, the
/// photo's corner in them and their last corner.
QRect partOf(const Look &look, QSize photo, int number, QSize shown) {
    QRect part(QPoint(), shown);
    if (look.frame == 0) {
        part.moveCenter(QRect(QPoint(), photo).center());
    } else if (number == 1) {
        part.moveCenter(FrameArtwork::placeOfPhoto(look.frame, photo).topLeft());
    } else if (number == 2) {
        part.moveBottomRight({photo.width() - 1, photo.height() - 1});
    }
    return part;
}

/// One look on all photos with so many pixels.
QList<QPixmap> lookOn(const Look &look, const QStringList &photos, double pixels) {
    constexpr QSize shown(240, 180);
    QList<QPixmap> pictures;
    for (const QString &file : photos) {
        const QImage read = toPicture(QImage(file));
        const double scale = std::sqrt(pixels / (double(read.width()) * read.height()));
        const QImage result = look.draw(scaled(read, qRound(read.width() * scale), qRound(read.height() * scale)));
        const QSize fit = result.size().scaled(shown, Qt::KeepAspectRatio);
        const QRect part = partOf(look, result.size(), int(pictures.size()) / 2, shown);
        pictures << QPixmap::fromImage(scaled(result, fit.width(), fit.height()))
                 << QPixmap::fromImage(result.copy(part));
    }
    return pictures;
}

/// As good as it can be in a file that documents can carry.
bool saveSmall(const QImage &sheet, const QString &path) {
    constexpr qint64 mostBytes = 580'000;
    for (int quality = 90; quality >= 30; quality -= 5) {
        if (!sheet.save(path, nullptr, quality)) {
            return false;
        }
        if (QFileInfo(path).size() <= mostBytes) {
            return true;
        }
    }
    return false;
}

bool drawLooks(const QDir &folder, const QStringList &photos) {
    const std::pair<const char *, QList<Look>> sheets[] = {{"effects", effectLooks()}, {"frames", frameLooks()}};
    bool saved = true;
    for (const int megapixels : {1, 12, 24}) {
        for (const auto &[name, looks] : sheets) {
            QList<Row> rows;
            for (const Look &look : looks) {
                rows << Row{look.name, [=](qreal) { return lookOn(look, photos, megapixels * 1e6); }};
            }
            saved &= saveSmall(sheet(rows, 1, 1, colours::parchment, colours::ink),
                               folder.filePath(QString("%1-%2-megapixels.jpg").arg(name).arg(megapixels)));
        }
    }
    return saved;
}

bool drawSheets(const QDir &folder) {
    QList<Row> frames;
    for (int n = 1; n <= frameCount; ++n) {
        frames << Row{QString("frame %1").arg(n), [n](qreal ratio) { return frame(n, ratio); }};
    }
    QList<Row> canvases;
    for (const int unit : {1, 4, 6}) {
        canvases << Row{QString("canvas %1").arg(unit), [unit](qreal ratio) { return canvas(unit, ratio); }};
    }
    const FromFile scene = [](const QString &path, qreal ratio) { return QList{iconPixmap(path, 460, ratio)}; };
    const std::tuple<QString, QList<Row>, int> sheets[] = {
        {"icons", files(":/icons", "*.svg", icon), 4},
        {"stickers", files(":/stickers", "*.svg", icon), 6},
        {"loops", files(":/loops", "*-1.svg", loop), 1},
        {"cursors", files(":/cursors", "target?.svg", cursor), 3},
        {"frames", frames, 1},
        {"canvas", canvases, 1},
        {"scenes", files(":/scenes", "*.svg", scene), 3},
        {"application-icon", {{"lumora", sign}}, 1},
    };
    bool saved = true;
    for (const auto &[name, rows, columns] : sheets) {
        for (const int ratio : {1, 2}) {
            const QString file = folder.filePath("%1-%2-" + QString::number(100 * ratio) + ".png").arg(name);
            saved &= sheet(rows, columns, ratio, colours::parchment, colours::ink).save(file.arg("light"));
            saved &= sheet(rows, columns, ratio, colours::ink, colours::parchment).save(file.arg("dark"));
        }
    }
    return saved;
}

} // namespace
} // namespace lumora

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    lumora::applyTheme(*qApp);
    const QStringList arguments = QCoreApplication::arguments();
    const bool made = arguments.size() >= 2 && QDir().mkpath(arguments[1]);
    if (!made || !(arguments.size() > 2 ? lumora::drawLooks(QDir(arguments[1]), arguments.mid(2))
                                        : lumora::drawSheets(QDir(arguments[1])))) {
        QTextStream(stderr) << "usage: lumora-sheet OUTFOLDER [PHOTO...] (a folder that can be written to)\n";
        return 1;
    }
    return 0;
}
