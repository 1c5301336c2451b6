#include "document/PhotoSelection.h"

#include <algorithm>
#include <cmath>
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
    if (points.empty()) {
        clear();
        return;
    }
    const auto [left, right] = std::ranges::minmax(points, {}, &PicturePoint::x);
    const auto [top, bottom] = std::ranges::minmax(points, {}, &PicturePoint::y);
    const auto down = [](double value) { return static_cast<int>(std::floor(value)); };
    const auto up = [](double value) { return static_cast<int>(std::ceil(value)); };
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
        const int right = m_box.x() + m_box.width();
        const int bottom = m_box.y() + m_box.height();
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
