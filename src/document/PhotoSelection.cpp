#include "document/PhotoSelection.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumora {

void PhotoSelection::mark(Shape shape, const QRect &box) {
    m_points.clear();
    m_region.reset();
    const bool nothing = shape == Shape::None || box.isEmpty();
    m_shape = nothing ? Shape::None : shape;
    m_box = nothing ? QRect(0, 0, 0, 0) : box;
    if (!nothing) {
        m_drawn = 1;
        m_visible = true;
    }
}

void PhotoSelection::markLasso(std::vector<PicturePoint> points) {
    std::erase_if(points, [](const PicturePoint &at) { return !std::isfinite(at.x) || !std::isfinite(at.y); });
    if (points.size() < 3) {
        clear();
        return;
    }
    const auto [left, right] = std::ranges::minmax(points, {}, &PicturePoint::x);
    const auto [top, bottom] = std::ranges::minmax(points, {}, &PicturePoint::y);
    const auto whole = [](double value) { return static_cast<int>(std::clamp(value, -1e9, 1e9)); };
    const auto down = [whole](double value) { return whole(std::floor(value)); };
    const auto up = [whole](double value) { return whole(std::ceil(value)); };
    mark(Shape::Lasso, QRect(QPoint(down(left.x), down(top.y)), QPoint(up(right.x) - 1, up(bottom.y) - 1)));
    if (!isEmpty()) {
        m_points = std::move(points);
    }
}

void PhotoSelection::hide() {
    clear();
    m_drawn = 0;
    m_visible = false;
}

const Region &PhotoSelection::region(QSize picture) const {
    if (m_region == nullptr || m_regionFor != picture) {
        // A box may end beyond what a whole number holds; no picture reaches that far.
        const auto end = [](int first, int length) {
            return static_cast<int>(std::min<qint64>(qint64(first) + length, std::numeric_limits<int>::max()));
        };
        const int right = end(m_box.x(), m_box.width());
        const int bottom = end(m_box.y(), m_box.height());
        const auto of = [&](auto make) {
            return make(picture.width(), picture.height(), m_box.x(), m_box.y(), right, bottom);
        };
        m_region = std::make_shared<const Region>(
            m_shape == Shape::Lasso ? Region::lasso(picture.width(), picture.height(), m_points)
                                    : of(m_shape == Shape::Ellipse ? &Region::ellipse : &Region::rectangle));
        m_regionFor = picture;
    }
    return *m_region;
}

} // namespace lumora
