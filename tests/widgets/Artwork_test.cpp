// The drawings in the binary: all can be drawn, nothing of them is cut off, and the loops go round without a jump.
#include "widgets/AnimatedButton.h"
#include "widgets/Theme.h"

#include <QDir>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

namespace lumora {
namespace {

/// The drawing with a quarter more on every side of its grid.
QImage withSurroundings(const QString &file, int side) {
    QSvgRenderer drawing(file);
    const QRectF grid = drawing.viewBoxF();
    drawing.setViewBox(grid.adjusted(-grid.width() / 4, -grid.height() / 4, grid.width() / 4, grid.height() / 4));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    return image;
}

TEST(Artwork, EveryDrawingLiesWithinItsGrid) {
    constexpr int side = 192; // two thirds of it are the grid
    const QRect grid = QRect(0, 0, side, side).adjusted(side / 6, side / 6, -side / 6, -side / 6);
    for (const QString folder : {":/icons", ":/loops", ":/cursors"}) {
        const QStringList files = QDir(folder).entryList({"*.svg"});
        EXPECT_FALSE(files.isEmpty());
        for (const QString &file : files) {
            const QImage image = withSurroundings(folder + "/" + file, side);
            int inside = 0;
            int outside = 0;
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    const bool painted = qAlpha(image.pixel(x, y)) > 64;
                    inside += painted && grid.contains(x, y);
                    outside += painted && !grid.contains(x, y);
                }
            }
            EXPECT_GT(inside, side * side / 60) << file.toStdString();
            EXPECT_EQ(outside, 0) << file.toStdString();
        }
    }
}

/// The mean difference of two pictures, in levels.
double difference(const QPixmap &one, const QPixmap &other) {
    const QImage a = one.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage b = other.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            sum += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
        }
    }
    return sum / a.width() / a.height();
}

TEST(Artwork, LoopsHaveEightFramesAndNoJump) {
    const QStringList firsts = QDir(":/loops").entryList({"*-1.svg"});
    EXPECT_GE(firsts.size(), 7);
    for (const QString &first : firsts) {
        const auto frame = [&](int n) {
            return iconPixmap(":/loops/" + QString(first).replace("-1.", QString("-%1.").arg(n)), 96, 1);
        };
        double sum = 0;
        double largest = 0;
        for (int n = 1; n <= AnimatedButton::frames; ++n) {
            ASSERT_FALSE(frame(n).isNull()) << first.toStdString() << ", frame " << n;
            const double step = difference(frame(n), frame(AnimatedButton::nextFrame(n)));
            EXPECT_GT(step, 0) << first.toStdString() << " does not move at frame " << n;
            sum += step;
            largest = std::max(largest, step);
        }
        EXPECT_LT(largest, 2 * sum / AnimatedButton::frames) << first.toStdString() << " jumps";
    }
}

} // namespace
} // namespace lumora
