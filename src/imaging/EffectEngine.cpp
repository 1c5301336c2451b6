#include "imaging/EffectEngine.h"

#include "imaging/Picture.h"
#include "imaging/kernels/RowBands.h"

#include <cstring>
#include <new>

namespace lumora {

namespace {

void copyPixels(ConstPixelView source, PixelView target, int y, int begin, int end) {
    if (begin < end) {
        std::memcpy(target.row(y) + begin * 4, source.row(y) + begin * 4, std::size_t(end - begin) * 4);
    }
}

/// Copies every pixel outside the region.
void copyOutside(ConstPixelView source, PixelView target, const Region &region) {
    forRowBands(source.height, source.width, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            int done = 0;
            for (const Region::Span span : region.row(y)) {
                copyPixels(source, target, y, done, span.begin);
                done = span.end;
            }
            copyPixels(source, target, y, done, source.width);
        }
    });
}

} // namespace

bool EffectEngine::setRectangularRegion(int left, int top, int right, int bottom) {
    m_shape = Shape::Rectangle;
    m_box = {left, top, right, bottom};
    return true;
}

bool EffectEngine::setEllipticalRegion(int x1, int y1, int x2, int y2) {
    m_shape = Shape::Ellipse;
    m_box = {x1, y1, x2, y2};
    return true;
}

bool EffectEngine::setLassoRegion(std::vector<PicturePoint> points) {
    m_shape = Shape::Lasso;
    m_lasso = std::move(points);
    return true;
}

Region EffectEngine::currentRegion() const {
    if (m_shape == Shape::Lasso) {
        return Region::lasso(m_picture.width(), m_picture.height(), m_lasso);
    }
    const auto make = m_shape == Shape::Ellipse ? &Region::ellipse : &Region::rectangle;
    return make(m_picture.width(), m_picture.height(), m_box.left, m_box.top, m_box.right, m_box.bottom);
}

QImage EffectEngine::changed(const Operation &operation) const {
    return operation(m_picture, wholeOf(readView(m_picture)));
}

/// Pixels outside the region are copied. The operation may thus read beyond the region without changing anything there.
QImage EffectEngine::changedInRegion(const Operation &operation) const {
    const Region region = currentRegion();
    if (region.isEmpty()) {
        return m_picture;
    }
    QImage result = operation(m_picture, region.bounds());
    if (result.size() != m_picture.size()) {
        return {};
    }
    const PixelView target = writeView(result);
    if (target.isEmpty()) {
        return {};
    }
    copyOutside(readView(m_picture), target, region);
    return result;
}

bool EffectEngine::apply(const Operation &operation, bool limitToRegion) {
    m_outOfMemory = false;
    if (readView(m_picture).isEmpty()) {
        return false;
    }
    try {
        const bool limited = limitToRegion && m_shape != Shape::None;
        const QImage result = limited ? changedInRegion(operation) : changed(operation);
        if (!result.isNull()) {
            m_picture = result;
        } else {
            // Operations give nothing for either reason; another picture of the size tells which.
            m_outOfMemory = newPicture(m_picture.width(), m_picture.height()).isNull();
        }
        return !result.isNull();
    } catch (const std::bad_alloc &) {
        m_outOfMemory = true;
        return false;
    }
}

} // namespace lumora
