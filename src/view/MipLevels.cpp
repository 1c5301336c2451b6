#include "view/MipLevels.h"

#include "imaging/Scale.h"

namespace lumora {

MipLevels::Level MipLevels::forScale(const QImage &photo, double scale, double coarsest) {
    if (photo.cacheKey() != m_photo) {
        m_levels.fill(QImage());
        m_photo = photo.cacheKey();
    }
    size_t level = 0; // how often the size is halved
    while (level < m_levels.size() && scale * (2 << level) <= 1.0 && (2 << level) <= coarsest) {
        ++level;
    }
    if (level == 0) {
        return {photo, 1};
    }
    const int factor = 1 << level;
    QImage &kept = m_levels[level - 1];
    if (kept.isNull()) {
        kept = boxReduced(photo, factor);
    }
    return kept.isNull() ? Level{photo, 1} : Level{kept, factor};
}

} // namespace lumora
