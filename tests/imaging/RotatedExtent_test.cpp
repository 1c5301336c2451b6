// What can be cut out of a rotated picture: nothing of the white corners in it, and nothing larger without them.
#include "imaging/transforms/RotatedExtent.h"

#include "imaging/transforms/Transform.h"

#include <gtest/gtest.h>
#include <vector>

namespace lumora {
namespace {

/// How many pixels of any rectangle of a rotated black picture have something of the white corners.
class Whiteness {
  public:
    explicit Whiteness(const QImage &rotated) : m_size(rotated.size()) {
        m_sums.resize(size_t(m_size.width() + 1) * (m_size.height() + 1));
        for (int y = 0; y < m_size.height(); ++y) {
            const auto *row = reinterpret_cast<const QRgb *>(rotated.constScanLine(y));
            for (int x = 0, inRow = 0; x < m_size.width(); ++x) {
                inRow += row[x] != 0xFF000000 ? 1 : 0;
                m_sums[at(x + 1, y + 1)] = m_sums[at(x + 1, y)] + inRow;
            }
        }
    }
    int in(int left, int top, QSize size) const {
        const int right = left + size.width();
        const int bottom = top + size.height();
        return m_sums[at(right, bottom)] - m_sums[at(left, bottom)] - m_sums[at(right, top)] + m_sums[at(left, top)];
    }
    /// Wherever it is put.
    bool canHold(QSize size) const {
        for (int top = 0; top + size.height() <= m_size.height(); ++top) {
            for (int left = 0; left + size.width() <= m_size.width(); ++left) {
                if (in(left, top, size) == 0) {
                    return true;
                }
            }
        }
        return false;
    }

  private:
    size_t at(int x, int y) const { return size_t(y) * (m_size.width() + 1) + size_t(x); }
    QSize m_size;
    std::vector<int> m_sums;
};

/// Of those proportions, the shorter side two pixels longer: one is lost where the middle is between two pixels, and
/// one to whole pixels.
QSize enlarged(QSize size, QSize proportions) {
    const int side = std::min(size.width(), size.height()) + 2;
    const bool lying = proportions.width() >= proportions.height();
    const int longer = std::max(proportions.width(), proportions.height());
    const int following = int(std::lround(double(longer) * side / std::min(proportions.width(), proportions.height())));
    return lying ? QSize(following, side) : QSize(side, following);
}

TEST(RotatedExtent, TheInsideIsFreeOfWhiteAndAsLargeAsCanBe) {
    const QSize sizes[] = {{320, 240}, {240, 320}, {201, 200}, {200, 200}, {301, 60}, {61, 300}, {400, 23}, {9, 7}};
    const double angles[] = {0.1,  0.7, 1,    3.3,  7.3,  15, 29.9, 44.9, 45,
                             45.1, 60,  77.7, 89.5, 89.9, 91, 120,  135,  179.2};
    for (const QSize size : sizes) {
        QImage black(size, QImage::Format_RGB32);
        black.fill(Qt::black);
        for (const double angle : angles) {
            for (const double degrees : {angle, -angle}) {
                SCOPED_TRACE(testing::Message() << size.width() << " x " << size.height() << " by " << degrees);
                const QImage turned = rotated(black, degrees);
                ASSERT_EQ(turned.size(), rotatedExtent(size, degrees));
                const QRect part = insideRotated(size, degrees);
                ASSERT_TRUE(turned.rect().contains(part));
                const Whiteness white(turned);
                EXPECT_EQ(white.in(part.left(), part.top(), part.size()), 0);
                const bool stands = (size.width() > size.height()) != (part.width() > part.height());
                const QSize proportions = stands ? size.transposed() : size;
                for (const QSize kind : {size, size.transposed()}) { // neither as it is nor as it stands
                    const QSize larger = enlarged(part.size(), kind);
                    EXPECT_FALSE(white.canHold(larger)) << larger.width() << " x " << larger.height();
                }
                const double kept =
                    double(std::max(part.width(), part.height())) / std::max(size.width(), size.height());
                EXPECT_NEAR(part.width(), proportions.width() * kept, 1);
                EXPECT_NEAR(part.height(), proportions.height() * kept, 1);
            }
        }
    }
}

TEST(RotatedExtent, NothingGoesWhereThereIsNoCorner) {
    EXPECT_EQ(insideRotated({300, 200}, 0), QRect(0, 0, 300, 200));
    EXPECT_EQ(insideRotated({300, 200}, 180), QRect(0, 0, 300, 200));
    EXPECT_EQ(insideRotated({300, 200}, 90), QRect(0, 0, 200, 300));
    EXPECT_EQ(insideRotated({300, 200}, -90), QRect(0, 0, 200, 300));
    EXPECT_EQ(insideRotated({1, 500}, 30), QRect());
}

} // namespace
} // namespace lumora
