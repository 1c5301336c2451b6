#include "effects/FrameArtwork.h"

#include "effects/FrameDrawing.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/kernels/Workers.h"
#include "imaging/transforms/FrameOverlay.h"

#include <QMargins>
#include <QRectF>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <tbb/parallel_for.h>

namespace lumora {

namespace {

/// One frame. Lengths are in units of the drawing. Adding one is adding a row and a drawing.
struct FrameRow {
    const char *drawing; ///< in the binary, below :/frames
    QMargins corners;    ///< how far the corners reach along the sides
    QMargins depth;      ///< how far the sides reach inwards including their shadow, at most as far as the corners
    int repeats;         ///< of the pattern along a side of the drawing
    QMargins opening; ///< from the sides to the photo, which begins under the drawing where that has no straight edge
    double size = 0;  ///< of the drawing's side, of the picture's shorter one
    /// Of a frame with a straight opening, of which the whole photo is in view: the widest bands, as shares of the
    /// picture's shorter side. The drawing is as large as they let it be; where a band is wider than the drawing it
    /// goes on beyond the drawing's edge.
    QMarginsF bands = {};
    int edgeLayer = 0; ///< from that layer on it stays at the picture's edge all the same

    bool isStraight() const { return bands.top() > 0; }
};

const FrameRow rows[frameCount] = {
    {.drawing = "film",
     .corners = {190, 210, 190, 190},
     .depth = {100, 180, 90, 160},
     .repeats = 8,
     .opening = {60, 140, 60, 140},
     .bands = {.11, .11, .11, .11},
     .edgeLayer = 2},
    {.drawing = "mount",
     .corners = {240, 240, 240, 240},
     .depth = {220, 225, 215, 215},
     .repeats = 4,
     .opening = {186, 186, 186, 186},
     .bands = {.12, .12, .12, .12},
     .edgeLayer = 2},
    {.drawing = "torn",
     .corners = {220, 220, 220, 220},
     .depth = {200, 205, 195, 190},
     .repeats = 2,
     .opening = {114, 116, 116, 116},
     .size = .72},
    {.drawing = "hearts",
     .corners = {240, 240, 240, 240},
     .depth = {165, 170, 160, 160},
     .repeats = 2,
     .opening = {84, 84, 84, 84},
     .size = .86},
    {.drawing = "night",
     .corners = {290, 290, 290, 290},
     .depth = {150, 190, 150, 170},
     .repeats = 2,
     .opening = {86, 92, 86, 104},
     .size = .78},
    {.drawing = "leaves",
     .corners = {240, 240, 240, 240},
     .depth = {170, 175, 170, 165},
     .repeats = 2,
     .opening = {48, 48, 48, 48},
     .size = .9},
    {.drawing = "instant-photo",
     .corners = {240, 240, 240, 240},
     .depth = {100, 105, 95, 235},
     .repeats = 2,
     .opening = {71, 71, 71, 211},
     .bands = {.1, .1, .1, .2},
     .edgeLayer = 2},
    {.drawing = "comic",
     .corners = {280, 280, 280, 280},
     .depth = {205, 210, 200, 200},
     .repeats = 2,
     .opening = {108, 108, 108, 108},
     .size = .66},
};

/// The thinnest band of a straight opening, as a share of the picture's shorter side. Beyond some 2.5 : 1 the photo is
/// squeezed for it, at 5 : 1 by a twentieth, where the frame would hardly be seen else.
constexpr double thinnestBand = .045;

constexpr int smallSide = 300; // pixels; a drawing is hardly larger than the shorter side of its picture

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

/// Lays `from` of a picture over its place in the frame, or copies it where the frame is empty. Straight alpha.
void lay(const QImage &picture, const QRect &from, const PixelView &frame, QPoint at, bool empty) {
    for (int y = 0; y < from.height(); ++y) {
        const uchar *over = picture.constScanLine(from.y() + y) + std::ptrdiff_t(4) * from.x();
        std::uint8_t *to = frame.row(at.y() + y) + std::ptrdiff_t(4) * at.x();
        if (empty) {
            std::memcpy(to, over, std::size_t(from.width()) * 4);
            continue;
        }
        for (const uchar *end = over + std::ptrdiff_t(4) * from.width(); over < end; over += 4, to += 4) {
            if (over[3] == 255 || to[3] == 0) {
                std::memcpy(to, over, 4);
            } else if (over[3] > 0) {
                const int rest = (255 - over[3]) * to[3]; // in 255ths
                const int alpha = over[3] * 255 + rest;
                for (int c = 0; c < 3; ++c) {
                    to[c] = static_cast<std::uint8_t>((over[c] * over[3] * 255 + to[c] * rest + alpha / 2) / alpha);
                }
                to[3] = static_cast<std::uint8_t>((alpha + 127) / 255);
            }
        }
    }
}

/// Fills a side with the pattern, a whole number of times. Returns false when memory allocation fails.
bool repeat(const QImage &pattern, const Part &part, const PixelView &frame, bool empty) {
    const int natural = part.across ? pattern.width() : pattern.height();
    const int times = std::max(1, static_cast<int>(std::lround(static_cast<double>(part.sideLength) / natural)));
    const auto edge = [&](int n) { return static_cast<int>(std::int64_t(part.sideLength) * n / times); };
    std::array<QImage, 2> pieces; // lengths differ by a pixel at most
    for (int i = 0; i < times; ++i) {
        const int length = edge(i + 1) - edge(i);
        const QSize size = part.across ? QSize(length, pattern.height()) : QSize(pattern.width(), length);
        QImage &fitted = pieces.at(std::size_t(length - part.sideLength / times));
        if (fitted.isNull()) {
            fitted = scaled(pattern, size.width(), size.height());
            if (fitted.isNull()) {
                return false;
            }
        }
        lay(fitted, fitted.rect(), frame, part.sideAt + (part.across ? QPoint(edge(i), 0) : QPoint(0, edge(i))), empty);
    }
    return true;
}

/// How a frame is laid out in a picture, in pixels.
struct Layout {
    double unit;     ///< of the drawing
    QMargins beyond; ///< how far the bands go on beyond the drawing's edges
    QRect photo;     ///< where it goes
};

QRect rounded(double left, double top, double right, double bottom) {
    const QPoint corner(static_cast<int>(std::lround(left)), static_cast<int>(std::lround(top)));
    return {corner, QPoint(std::max(corner.x(), static_cast<int>(std::lround(right)) - 1),
                           std::max(corner.y(), static_cast<int>(std::lround(bottom)) - 1))};
}

Layout straightLayout(const FrameRow &row, QSize size) {
    const double shorter = std::min(size.width(), size.height());
    const QMarginsF &widest = row.bands;
    const double across = widest.left() + widest.right();
    const double down = widest.top() + widest.bottom();
    // The photo keeps its proportions.
    const double lost = std::min(across * shorter / size.width(), down * shorter / size.height());
    const double least = 2 * thinnestBand * shorter;
    const double x = std::max(lost * size.width(), least) / across;
    const double y = std::max(lost * size.height(), least) / down;
    const QMarginsF bands(widest.left() * x, widest.top() * y, widest.right() * x, widest.bottom() * y);
    const QMargins &o = row.opening;
    const double unit = std::min(
        {bands.left() / o.left(), bands.top() / o.top(), bands.right() / o.right(), bands.bottom() / o.bottom()});
    const auto rest = [&](double band, int units) { return static_cast<int>(std::lround(band - units * unit)); };
    return {unit,
            {rest(bands.left(), o.left()), rest(bands.top(), o.top()), rest(bands.right(), o.right()),
             rest(bands.bottom(), o.bottom())},
            rounded(bands.left(), bands.top(), size.width() - bands.right(), size.height() - bands.bottom())};
}

/// The photo keeps its proportions; what does not fit goes under the drawing.
Layout raggedLayout(const FrameRow &row, QSize size) {
    const double unit = row.size * std::min(size.width(), size.height()) / FrameDrawing::side;
    const QMarginsF bands = QMarginsF(row.opening) * unit;
    const double width = size.width() - bands.left() - bands.right();
    const double height = size.height() - bands.top() - bands.bottom();
    const double scale = std::max(width / size.width(), height / size.height());
    const double left = bands.left() + (width - scale * size.width()) / 2;
    const double top = bands.top() + (height - scale * size.height()) / 2;
    return {unit, {}, rounded(left, top, left + scale * size.width(), top + scale * size.height())};
}

Layout layoutOf(const FrameRow &row, QSize size) {
    const Layout layout = row.isStraight() ? straightLayout(row, size) : raggedLayout(row, size);
    // Too small for a frame.
    return std::min(size.width(), size.height()) < 3 ? Layout{0, {}, QRect({0, 0}, size)} : layout;
}

/// Lengths of a drawing in pixels.
struct Measures {
    QMargins corners;
    QMargins depth;
    QSize pattern; ///< of the sides above and below, and of those at the left and right, before it is fitted
};

Measures measure(const FrameRow &row, QSizeF pattern, QSize size, const Layout &layout) {
    const auto pixels = [&](double units) { return static_cast<int>(std::lround(units * layout.unit)); };
    const int most = (std::min(size.width(), size.height()) - 1) / 2; // some of the photo stays visible
    const auto margins = [&](const QMargins &units) {
        const QMargins &b = layout.beyond;
        return QMargins(std::min(most, pixels(units.left()) + b.left()), std::min(most, pixels(units.top()) + b.top()),
                        std::min(most, pixels(units.right()) + b.right()),
                        std::min(most, pixels(units.bottom()) + b.bottom()));
    };
    return {margins(row.corners), margins(row.depth),
            QSize(std::max(1, pixels(pattern.width())), std::max(1, pixels(pattern.height())))};
}

/// The four corners clockwise from the upper left one, each with the pattern of the side that follows it.
std::array<Part, 4> partsOf(const FrameRow &row, QSize size, const Layout &layout) {
    const double side = FrameDrawing::side;
    const QMargins u = row.corners;
    const QSizeF pattern((side - u.left() - u.right()) / row.repeats, (side - u.top() - u.bottom()) / row.repeats);
    const auto [c, d, n] = measure(row, pattern, size, layout);
    const int right = size.width() - c.right();
    const int bottom = size.height() - c.bottom();
    const int between = right - c.left();
    const int down = bottom - c.top();
    const QMarginsF beyond = layout.unit > 0 ? QMarginsF(layout.beyond) / layout.unit : QMarginsF();
    const double end = side + beyond.right();
    const double foot = side + beyond.bottom();
    const auto shown = [](double x1, double y1, double x2, double y2) { return QRectF(x1, y1, x2 - x1, y2 - y1); };
    return {{
        {shown(-beyond.left(), -beyond.top(), u.left() + pattern.width(), u.top()),
         {0, 0, c.left(), c.top()},
         {c.left(), 0, n.width(), d.top()},
         {0, 0},
         {c.left(), 0},
         between,
         true},
        {shown(side - u.right(), -beyond.top(), end, u.top() + pattern.height()),
         {0, 0, c.right(), c.top()},
         {c.right() - d.right(), c.top(), d.right(), n.height()},
         {right, 0},
         {size.width() - d.right(), c.top()},
         down,
         false},
        {shown(side - u.right() - pattern.width(), side - u.bottom(), end, foot),
         {n.width(), 0, c.right(), c.bottom()},
         {0, c.bottom() - d.bottom(), n.width(), d.bottom()},
         {right, bottom},
         {c.left(), size.height() - d.bottom()},
         between,
         true},
        {shown(-beyond.left(), side - u.bottom() - pattern.height(), u.left(), foot),
         {0, n.height(), c.left(), c.bottom()},
         {0, 0, d.left(), n.height()},
         {0, bottom},
         {0, c.top()},
         down,
         false},
    }};
}

/// Returns false when memory allocation fails.
bool draw(FrameDrawing &drawing, FrameLayers layers, const Part &part, const PixelView &frame) {
    const QImage picture = drawing.part(layers, part.shown, part.corner.united(part.pattern).size());
    if (picture.isNull()) {
        return false;
    }
    const bool empty = layers.first == 1;
    lay(picture, part.corner, frame, part.cornerAt, empty);
    return part.pattern.isEmpty() || repeat(picture.copy(part.pattern), part, frame, empty);
}

/// Draws some layers over what the frame has. Returns false when memory allocation fails.
bool drawLayers(FrameDrawing &drawing, FrameLayers layers, const FrameRow &row, const Layout &layout, QSize size,
                const PixelView &frame) {
    const auto parts = partsOf(row, size, layout); // they are adjacent in the frame
    std::array<bool, 4> drawn{};
    const auto drawPart = [&](std::size_t i) {
        drawn[i] = parts[i].corner.isEmpty() || draw(drawing, layers, parts[i], frame);
    };
    if (qint64(size.width()) * size.height() >= worthThreads) {
        prepareWorkers();
        tbb::parallel_for(std::size_t(0), parts.size(), drawPart);
    } else {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            drawPart(i);
        }
    }
    return std::ranges::all_of(drawn, std::identity());
}

} // namespace

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
    FrameDrawing drawing(QStringLiteral(":/frames/%1.svg").arg(QLatin1String(row.drawing)),
                         std::min(size.width(), size.height()) < smallSide ? FrameShadows::Small : FrameShadows::Large);
    const Layout layout = layoutOf(row, size);
    if (row.edgeLayer == 0) {
        return drawLayers(drawing, {}, row, layout, size, pixels) ? frame : QImage();
    }
    const Layout atEdge{layout.unit, {}, layout.photo};
    const bool drawn = drawLayers(drawing, {.end = row.edgeLayer}, row, layout, size, pixels) &&
                       drawLayers(drawing, {.first = row.edgeLayer}, row, atEdge, size, pixels);
    return drawn ? frame : QImage();
}

QRect FrameArtwork::placeOfPhoto(int n, QSize size) {
    return n < 1 || n > frameCount || size.isEmpty() ? QRect() : layoutOf(rows[n - 1], size).photo;
}

QImage FrameArtwork::around(int n, const QImage &photo) {
    return around(n, photo, picture(n, photo.size()));
}

QImage FrameArtwork::around(int n, const QImage &photo, const QImage &frame) {
    return framed(placedPhoto(photo, placeOfPhoto(n, photo.size())), frame);
}

} // namespace lumora
