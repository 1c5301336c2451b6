#include "imaging/Region.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace lumora {

namespace {

/// An edge of a lasso's polygon over the pixel rows whose centres it crosses.
struct Edge {
    double x;     ///< where it intersects the centre of row 0
    double slope; ///< pixels to the right for each row down
    int firstRow;
    int endRow;
    int direction; ///< 1 where the line goes down, -1 where it goes up
};

/// Far outside every picture, and small enough to avoid overflow.
constexpr double farthest = 1e9;

/// The first of the `count` pixels of a line whose centre is not before the position; `count` when all are.
int pixelFrom(double position, int count) {
    return static_cast<int>(std::clamp(std::ceil(position - 0.5), 0.0, double(count)));
}

std::vector<Edge> edgesOf(std::span<const PicturePoint> points, int pictureHeight) {
    std::vector<PicturePoint> corners;
    corners.reserve(points.size());
    for (const PicturePoint &point : points) {
        if (!std::isnan(point.x) && !std::isnan(point.y)) {
            corners.push_back({std::clamp(point.x, -farthest, farthest), std::clamp(point.y, -farthest, farthest)});
        }
    }
    std::vector<Edge> edges;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const PicturePoint from = corners[i];
        const PicturePoint to = corners[(i + 1) % corners.size()];
        const int firstRow = pixelFrom(std::min(from.y, to.y), pictureHeight);
        const int endRow = pixelFrom(std::max(from.y, to.y), pictureHeight);
        if (firstRow < endRow) {
            const double slope = (to.x - from.x) / (to.y - from.y);
            edges.push_back({from.x + (0.5 - from.y) * slope, slope, firstRow, endRow, to.y > from.y ? 1 : -1});
        }
    }
    std::ranges::sort(edges, {}, &Edge::firstRow);
    return edges;
}

} // namespace

void Region::addSpan(int y, Span span) {
    if (m_rowStarts.empty()) {
        m_bounds = {span.begin, y, span.end, y};
        m_rowStarts.push_back(0);
    }
    for (; m_bounds.bottom <= y; ++m_bounds.bottom) {
        m_rowStarts.push_back(m_spans.size());
    }
    m_bounds.left = std::min(m_bounds.left, span.begin);
    m_bounds.right = std::max(m_bounds.right, span.end);
    m_spans.push_back(span);
    m_rowStarts.back() = m_spans.size();
}

Region Region::rectangle(int pictureWidth, int pictureHeight, int left, int top, int right, int bottom) {
    const Span columns{std::max(std::min(left, right), 0), std::min(std::max(left, right), pictureWidth)};
    const int firstRow = std::max(std::min(top, bottom), 0);
    const int endRow = std::min(std::max(top, bottom), pictureHeight);
    Region region;
    for (int y = firstRow; y < endRow && columns.begin < columns.end; ++y) {
        region.addSpan(y, columns);
    }
    return region;
}

Region Region::ellipse(int pictureWidth, int pictureHeight, int x1, int y1, int x2, int y2) {
    const double centreX = (double(x1) + x2) / 2;
    const double centreY = (double(y1) + y2) / 2;
    const double radiusX = std::abs(double(x2) - x1) / 2;
    const double radiusY = std::abs(double(y2) - y1) / 2;
    Region region;
    const int firstRow = std::max(std::min(y1, y2), 0);
    const int endRow = std::min(std::max(y1, y2), pictureHeight);
    for (int y = firstRow; y < endRow; ++y) {
        const double across = (y + 0.5 - centreY) / radiusY;
        const double half = radiusX * std::sqrt(std::max(0.0, 1 - across * across));
        // Columns whose centre x + 0.5 is inside centreX +- half.
        const double begin = std::clamp(std::ceil(centreX - half - 0.5), 0.0, double(pictureWidth));
        const double end = std::clamp(std::floor(centreX + half - 0.5) + 1, 0.0, double(pictureWidth));
        if (begin < end) {
            region.addSpan(y, {int(begin), int(end)});
        }
    }
    return region;
}

Region Region::lasso(int pictureWidth, int pictureHeight, std::span<const PicturePoint> points) {
    const std::vector<Edge> edges = edgesOf(points, pictureHeight);
    Region region;
    if (edges.empty() || pictureWidth < 1) {
        return region;
    }
    std::vector<const Edge *> crossing;
    // The change of the winding number at each column of the row: no sorting, however often the line crosses it.
    std::vector<int> changes(std::size_t(pictureWidth) + 1);
    auto next = edges.begin();
    for (int y = edges.front().firstRow; next != edges.end() || !crossing.empty(); ++y) {
        std::erase_if(crossing, [y](const Edge *edge) { return edge->endRow <= y; });
        for (; next != edges.end() && next->firstRow == y; ++next) {
            crossing.push_back(&*next);
        }
        int first = pictureWidth;
        int last = 0;
        for (const Edge *edge : crossing) {
            const int column = pixelFrom(edge->x + edge->slope * y, pictureWidth);
            changes[std::size_t(column)] += edge->direction;
            first = std::min(first, column);
            last = std::max(last, column);
        }
        int winding = 0;
        int begin = first;
        for (int column = first; column <= last; ++column) {
            const int change = std::exchange(changes[std::size_t(column)], 0);
            if (winding == 0 && change != 0) {
                begin = column;
            } else if (winding != 0 && winding + change == 0) {
                region.addSpan(y, {begin, column});
            }
            winding += change;
        }
    }
    return region;
}

std::span<const Region::Span> Region::row(int y) const {
    if (y < m_bounds.top || y >= m_bounds.bottom) {
        return {};
    }
    const std::size_t index = std::size_t(y) - std::size_t(m_bounds.top);
    return std::span(m_spans).subspan(m_rowStarts[index], m_rowStarts[index + 1] - m_rowStarts[index]);
}

bool Region::contains(int x, int y) const {
    const std::span<const Span> spans = row(y);
    const auto after = std::ranges::upper_bound(spans, x, {}, &Span::begin);
    return after != spans.begin() && x < std::prev(after)->end;
}

} // namespace lumora
