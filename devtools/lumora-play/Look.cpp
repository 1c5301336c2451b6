#include "Look.h"

#include <QPainter>
#include <algorithm>
#include <cstdlib>

namespace lumora::play {

namespace {

constexpr int side = 48; // pixels
constexpr double mostMean = 0.5;
constexpr int noticed = 12; // of 255, in any channel
constexpr int oneInSoMany = 50;
const QString sizeKey = QStringLiteral("PictureSize");

QString sizeOf(const QImage &look) {
    return look.text(sizeKey);
}

} // namespace

QImage lookOf(const QImage &picture) {
    QImage look(2 * side, side, QImage::Format_ARGB32);
    look.fill(Qt::transparent);
    QImage whole = picture.convertToFormat(QImage::Format_ARGB32);
    whole.setDevicePixelRatio(1);
    QPainter painter(&look);
    if (!whole.isNull()) {
        const QSize reduced = whole.size().scaled(whole.size().boundedTo({side, side}), Qt::KeepAspectRatio);
        painter.drawImage(0, 0,
                          whole.scaled(reduced.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        const QRect detail(whole.width() * 2 / 5 - side / 2, whole.height() * 3 / 5 - side / 2, side, side);
        painter.drawImage(side, 0, whole.copy(detail & whole.rect()));
    }
    painter.end();
    look.setText(sizeKey, QString("%1x%2").arg(picture.width()).arg(picture.height()));
    return look;
}

QString difference(const QImage &look, const QImage &expected) {
    if (expected.isNull()) {
        return "there is no picture to compare with";
    }
    if (sizeOf(look) != sizeOf(expected) || look.size() != expected.size()) {
        return QString("it is %1, not %2").arg(sizeOf(look), sizeOf(expected));
    }
    // With alpha multiplied in: what cannot be seen makes no difference.
    const QImage a = look.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = expected.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    qint64 sum = 0;
    int off = 0;
    int offInWhole = 0;
    int shown = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            const int apart[] = {std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                                 std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))};
            const int most = *std::max_element(std::begin(apart), std::end(apart));
            sum += most;
            off += most > noticed ? 1 : 0;
            offInWhole += most > noticed && x < side ? 1 : 0;
            shown += p != 0 || q != 0 ? 1 : 0;
        }
    }
    const double mean = static_cast<double>(sum) / std::max(1, shown);
    return mean <= mostMean && offInWhole == 0 && off * oneInSoMany <= shown
               ? QString()
               : QString("it looks different: by %1 of 255 in the mean, and %2 of %3 pixels clearly")
                     .arg(mean, 0, 'f', 1)
                     .arg(off)
                     .arg(shown);
}

} // namespace lumora::play
