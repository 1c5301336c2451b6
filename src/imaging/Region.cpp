#include "imaging/Region.h"

#include <algorithm>
#include <cmath>

namespace lumora {

void Region::addRow(int y, Span span) {
    if (m_rowStarts.empty()) {
        m_bounds = {span.begin, y, span.end, y};
        m_rowStarts.push_back(0);
    }
    m_bounds.left = std::min(m_bounds.left, span.begin);
    m_bounds.right = std::max(m_bounds.right, span.end);
    m_bounds.bottom = y + 1;
    m_spans.push_back(span);
    m_rowStarts.push_back(m_spans.size());
}

Region Region::rectangle(int pictureWidth, int pictureHeight, int left, int top, int right, int bottom) {
    const Span columns{std::max(std::min(left, right), 0), std::min(std::max(left, right), pictureWidth)};
    const int firstRow = std::max(std::min(top, bottom), 0);
    const int endRow = std::min(std::max(top, bottom), pictureHeight);
    Region region;
    for (int y = firstRow; y < endRow && columns.begin < columns.end; ++y) {
        region.addRow(y, columns);
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
        // Columns whose centre x + 0.5 lies within centreX +- half.
        const double begin = std::clamp(std::ceil(centreX - half - 0.5), 0.0, double(pictureWidth));
        const double end = std::clamp(std::floor(centreX + half - 0.5) + 1, 0.0, double(pictureWidth));
        if (begin < end) {
            region.addRow(y, {int(begin), int(end)});
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
    return std::ranges::any_of(row(y), [x](Span span) { return x >= span.begin && x < span.end; });
}

} // namespace lumora
