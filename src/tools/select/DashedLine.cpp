#include "tools/select/DashedLine.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace lumora {

namespace {

constexpr int tile = 64; // device pixels
constexpr double thickness = 2;
constexpr double dash = 6; // both in the view's pixels

double nearest(double value) {
    return std::floor(value + 0.5);
}

/// In 256ths of a pixel, so that rounding errors have no effect.
QPointF snapped(QPointF point) {
    return {nearest(point.x() * 256) / 256, nearest(point.y() * 256) / 256};
}

} // namespace

void DashedLine::clear(QSize surface, qreal devicePixelRatio) {
    m_devicePixels = devicePixelRatio;
    m_thickness = std::max(1, qRound(thickness * devicePixelRatio));
    m_dash = std::clamp(qRound(dash * devicePixelRatio), 2, 120); // a palette has 256 places
    if (m_pixels.size() != surface) {
        m_pixels = QImage(surface, QImage::Format_Indexed8);
        m_pixels.fill(0);
    } else {
        for (const QRect &part : parts()) {
            for (int y = part.top(); y <= part.bottom(); ++y) {
                std::memset(m_pixels.scanLine(y) + part.left(), 0, static_cast<size_t>(part.width()));
            }
        }
    }
    m_grid = QSize((m_pixels.width() + tile - 1) / tile, (m_pixels.height() + tile - 1) / tile);
    m_tiles.assign(static_cast<size_t>(m_grid.width()) * static_cast<size_t>(m_grid.height()), false);
}

void DashedLine::moveTo(QPointF devicePoint) {
    m_at = snapped(devicePoint) - QPointF(m_thickness, m_thickness) / 2;
    m_along = 0;
}

QRect DashedLine::lineTo(QPointF devicePoint) {
    const QPointF from = std::exchange(m_at, snapped(devicePoint) - QPointF(m_thickness, m_thickness) / 2);
    const QPointF way = m_at - from;
    const bool flat = std::abs(way.x()) >= std::abs(way.y());
    // One pixel for each column of a flat line, for each row of a steep one; only those on the surface are visited.
    const auto along = [flat](QPointF point) { return flat ? point.x() : point.y(); };
    const auto across = [flat](QPointF point) { return flat ? point.y() : point.x(); };
    const double first = nearest(along(from));
    const double steps = std::abs(nearest(along(m_at)) - first);
    const double direction = along(way) < 0 ? -1 : 1;
    const double slope = along(way) == 0 ? 0 : across(way) / along(way);
    const double before = -m_thickness; // the last place whose stroke does not reach the surface
    const double end = flat ? m_pixels.width() : m_pixels.height();
    const double acrossEnd = flat ? m_pixels.height() : m_pixels.width();
    const double base = std::floor(across(from)); // separate: halves round the same way at every position
    const auto [low, high] = std::minmax({across(from), across(m_at)});
    const double begin = direction > 0 ? before + 1 - first : first - end + 1;
    const double last = direction > 0 ? end - 1 - first : first - before - 1;
    QRect touched;
    if (nearest(low) < acrossEnd && nearest(high) > before) {
        for (double i = std::max(0.0, begin); i <= std::min(steps, last); ++i) {
            const double place = first + direction * i;
            const double aside = base + nearest(across(from) - base + (place - along(from)) * slope);
            if (aside > before && aside < acrossEnd) {
                const QPoint at = flat ? QPoint(int(place), int(aside)) : QPoint(int(aside), int(place));
                stamp(at.x(), at.y(), static_cast<int>(std::fmod(m_along + i, 2 * m_dash)) + 1);
                touched |= QRect(at, QSize(m_thickness, m_thickness));
            }
        }
    }
    m_along = std::fmod(m_along + steps, 2 * m_dash);
    return touched & m_pixels.rect();
}

void DashedLine::stamp(int x, int y, int place) {
    const QRect square = QRect(x, y, m_thickness, m_thickness) & m_pixels.rect();
    if (square.isEmpty()) {
        return;
    }
    for (int row = square.top(); row <= square.bottom(); ++row) {
        std::memset(m_pixels.scanLine(row) + square.left(), place, static_cast<size_t>(square.width()));
    }
    for (const QPoint corner : {square.topLeft(), square.topRight(), square.bottomLeft(), square.bottomRight()}) {
        m_tiles[static_cast<size_t>(corner.y() / tile) * static_cast<size_t>(m_grid.width()) +
                static_cast<size_t>(corner.x() / tile)] = true;
    }
}

std::vector<QRect> DashedLine::parts() const {
    std::vector<QRect> parts;
    size_t at = 0;
    for (int row = 0; row < m_grid.height(); ++row) {
        bool goesOn = false; // adjacent tiles are merged
        for (int column = 0; column < m_grid.width(); ++column, ++at) {
            const QRect square = QRect(column * tile, row * tile, tile, tile) & m_pixels.rect();
            if (m_tiles[at] && goesOn) {
                parts.back() |= square;
            } else if (m_tiles[at]) {
                parts.push_back(square);
            }
            goesOn = m_tiles[at];
        }
    }
    return parts;
}

bool DashedLine::isEmpty() const {
    return std::ranges::find(m_tiles, true) == m_tiles.end();
}

void DashedLine::paint(QPainter &painter, int steps) {
    QList<QRgb> colours(2 * m_dash + 1, qRgb(255, 255, 255));
    colours[0] = qRgba(0, 0, 0, 0);
    for (int place = 0; place < m_dash; ++place) {
        colours[(place + qRound(steps * m_devicePixels)) % (2 * m_dash) + 1] = qRgb(0, 0, 0);
    }
    m_pixels.setColorTable(colours);
    for (const QRect &part : parts()) {
        painter.drawImage(QRectF(QPointF(part.topLeft()) / m_devicePixels, QSizeF(part.size()) / m_devicePixels),
                          m_pixels, part);
    }
}

} // namespace lumora
