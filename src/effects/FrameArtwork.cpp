#include "effects/FrameArtwork.h"

#include "effects/FrameDrawing.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"

#include <QMargins>
#include <QRectF>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <tbb/parallel_for.h>

namespace lumora {

namespace {

/// One frame. Lengths are in units of the drawing: its side is the picture's shorter side. Adding one is adding a row
/// and a drawing.
struct FrameRow {
    const char *drawing; ///< in the binary, below :/frames
    QMargins corners;    ///< how far the corners reach along the sides
    QMargins depth;      ///< how far the sides reach inwards including their shadow, at most as far as the corners
    int repeats;         ///< of the pattern along a side of the drawing
};

const FrameRow rows[frameCount] = {
    {"film", {190, 210, 190, 190}, {100, 180, 90, 160}, 8},
    {"mount", {240, 240, 240, 240}, {220, 225, 215, 215}, 4},
    {"torn", {220, 220, 220, 220}, {200, 205, 195, 190}, 2},
    {"hearts", {240, 240, 240, 240}, {165, 170, 160, 160}, 2},
    {"night", {290, 290, 290, 290}, {150, 190, 150, 170}, 2},
    {"leaves", {240, 240, 240, 240}, {170, 175, 170, 165}, 2},
    {"instant-photo", {240, 240, 240, 240}, {100, 105, 95, 235}, 2},
    {"comic", {280, 280, 280, 280}, {205, 210, 200, 200}, 2},
};

/// Smaller frames are drawn faster than a second thread can read their drawing.
constexpr qint64 worthThreads = 1'000'000; // pixels

/// A corner and the pattern beside it, drawn together so that each drawing is rendered only four times.
struct Part {
    QRectF shown;
    QRect corner;  ///< of the part's picture
    QRect pattern; ///< of the part's picture, as deep as the side
    QPoint cornerAt;
    QPoint sideAt; ///< where the side begins
    int sideLength;
    bool across;
};

/// Copies `from` of a picture to its place in the frame.
void lay(const QImage &picture, const QRect &from, const PixelView &frame, QPoint at) {
    for (int y = 0; y < from.height(); ++y) {
        std::memcpy(frame.row(at.y() + y) + std::ptrdiff_t(4) * at.x(),
                    picture.constScanLine(from.y() + y) + std::ptrdiff_t(4) * from.x(), std::size_t(from.width()) * 4);
    }
}

/// Fills a side with the pattern, a whole number of times. Returns false when memory allocation fails.
bool repeat(const QImage &pattern, const Part &part, const PixelView &frame) {
    const int natural = part.across ? pattern.width() : pattern.height();
    const int times = std::max(1, static_cast<int>(std::lround(static_cast<double>(part.sideLength) / natural)));
    const auto edge = [&](int n) { return static_cast<int>(std::int64_t(part.sideLength) * n / times); };
    QImage fitted; // lengths differ by a pixel at most
    for (int i = 0; i < times; ++i) {
        const int length = edge(i + 1) - edge(i);
        const QSize size = part.across ? QSize(length, pattern.height()) : QSize(pattern.width(), length);
        if (fitted.size() != size) {
            fitted = scaled(pattern, size.width(), size.height());
            if (fitted.isNull()) {
                return false;
            }
        }
        lay(fitted, fitted.rect(), frame, part.sideAt + (part.across ? QPoint(edge(i), 0) : QPoint(0, edge(i))));
    }
    return true;
}

/// Lengths of a frame in pixels.
struct Measures {
    QMargins corners;
    QMargins depth;
    QSize pattern; ///< of the sides above and below, and of those at the left and right, before it is fitted
};

Measures measure(const FrameRow &row, QSizeF pattern, QSize size) {
    const int shorter = std::min(size.width(), size.height());
    const auto pixels = [&](double units) {
        return static_cast<int>(std::lround(units * shorter / FrameDrawing::side));
    };
    const int most = (shorter - 1) / 2; // some of the photo stays visible
    const auto margins = [&](const QMargins &units) {
        return QMargins(std::min(most, pixels(units.left())), std::min(most, pixels(units.top())),
                        std::min(most, pixels(units.right())), std::min(most, pixels(units.bottom())));
    };
    return {margins(row.corners), margins(row.depth),
            QSize(std::max(1, pixels(pattern.width())), std::max(1, pixels(pattern.height())))};
}

/// The four corners clockwise from the upper left one, each with the pattern of the side that follows it.
std::array<Part, 4> partsOf(const FrameRow &row, QSize size) {
    const double side = FrameDrawing::side;
    const QMargins u = row.corners;
    const QSizeF pattern((side - u.left() - u.right()) / row.repeats, (side - u.top() - u.bottom()) / row.repeats);
    const auto [c, d, n] = measure(row, pattern, size);
    const int right = size.width() - c.right();
    const int bottom = size.height() - c.bottom();
    const int between = right - c.left();
    const int down = bottom - c.top();
    return {{
        {{0, 0, u.left() + pattern.width(), double(u.top())},
         {0, 0, c.left(), c.top()},
         {c.left(), 0, n.width(), d.top()},
         {0, 0},
         {c.left(), 0},
         between,
         true},
        {{side - u.right(), 0, double(u.right()), u.top() + pattern.height()},
         {0, 0, c.right(), c.top()},
         {c.right() - d.right(), c.top(), d.right(), n.height()},
         {right, 0},
         {size.width() - d.right(), c.top()},
         down,
         false},
        {{side - u.right() - pattern.width(), side - u.bottom(), u.right() + pattern.width(), double(u.bottom())},
         {n.width(), 0, c.right(), c.bottom()},
         {0, c.bottom() - d.bottom(), n.width(), d.bottom()},
         {right, bottom},
         {c.left(), size.height() - d.bottom()},
         between,
         true},
        {{0, side - u.bottom() - pattern.height(), double(u.left()), u.bottom() + pattern.height()},
         {0, n.height(), c.left(), c.bottom()},
         {0, 0, d.left(), n.height()},
         {0, bottom},
         {0, c.top()},
         down,
         false},
    }};
}

/// Returns false when memory allocation fails.
bool draw(FrameDrawing &drawing, const Part &part, const PixelView &frame) {
    const QImage picture = drawing.part(part.shown, part.corner.united(part.pattern).size());
    if (picture.isNull()) {
        return false;
    }
    lay(picture, part.corner, frame, part.cornerAt);
    return part.pattern.isEmpty() || repeat(picture.copy(part.pattern), part, frame);
}

} // namespace

FrameArtwork::FrameArtwork() = default;
FrameArtwork::~FrameArtwork() = default;

QImage FrameArtwork::picture(int n, QSize size) {
    if (n < 1 || n > frameCount) {
        return {};
    }
    QImage frame = newPicture(size.width(), size.height(), false);
    const PixelView pixels = writeView(frame);
    if (pixels.isEmpty()) {
        return {};
    }
    frame.fill(0);
    const FrameRow &row = rows[n - 1];
    std::unique_ptr<FrameDrawing> &drawing = m_drawings[std::size_t(n - 1)];
    if (!drawing) {
        drawing = std::make_unique<FrameDrawing>(QStringLiteral(":/frames/%1.svg").arg(QLatin1String(row.drawing)));
    }
    const auto parts = partsOf(row, size); // they are adjacent in the frame
    std::array<bool, 4> drawn{};
    const auto drawPart = [&](std::size_t i) {
        drawn[i] = parts[i].corner.isEmpty() || draw(*drawing, parts[i], pixels);
    };
    if (qint64(size.width()) * size.height() >= worthThreads) {
        tbb::parallel_for(std::size_t(0), parts.size(), drawPart);
    } else {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            drawPart(i);
        }
    }
    return std::ranges::all_of(drawn, std::identity()) ? frame : QImage();
}

} // namespace lumora
