#include "output/print/crafts/PhotoDetails.h"

#include "imaging/Scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace lumora {

namespace {

constexpr int leastCells = 2 * detailsOfPhoto;
constexpr int spots = 4;                // of a detail, each way: what it is compared by
constexpr double worthOfContrast = 0.3; // beside the difference: what has more in it is nicer to look at

struct Detail {
    QRectF part;
    std::array<double, std::size_t(3) * spots * spots> colours{};
    double contrast = 0; ///< mean difference from its mean colour, in levels
    double apart = 0;    ///< how much it differs from those that were taken
};

/// The squares that a photo of that size is divided into, as large as so many can be.
QList<QRectF> cellsOf(QSizeF size) {
    double side = 0;
    int columns = 1;
    for (int count = 1; count <= leastCells; ++count) {
        const double one = std::min(size.width() / count, size.height() / std::ceil(double(leastCells) / count));
        if (one > side) {
            side = one;
            columns = count;
        }
    }
    const int rows = (leastCells + columns - 1) / columns;
    QList<QRectF> cells;
    for (int i = 0; i < columns * rows; ++i) {
        const int column = i % columns;
        const int row = i / columns;
        QRectF cell(0, 0, side / size.width(), side / size.height());
        cell.moveCenter({(column + 0.5) / columns, (row + 0.5) / rows});
        cells << cell;
    }
    return cells;
}

Detail detailOf(const QImage &picture, const QRectF &part) {
    Detail detail{.part = part};
    const QRect pixels = QRectF(part.x() * picture.width(), part.y() * picture.height(), part.width() * picture.width(),
                                part.height() * picture.height())
                             .toAlignedRect()
                             .intersected(picture.rect());
    const QImage small = scaled(picture.copy(pixels), spots, spots);
    std::array<double, 3> mean{};
    for (std::size_t i = 0; i < std::size_t(spots) * spots; ++i) {
        const QRgb colour = small.pixel(static_cast<int>(i) % spots, static_cast<int>(i) / spots);
        const std::array<int, 3> levels{qRed(colour), qGreen(colour), qBlue(colour)};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            detail.colours.at(3 * i + channel) = levels.at(channel);
            mean.at(channel) += double(levels.at(channel)) / (spots * spots);
        }
    }
    for (std::size_t i = 0; i < detail.colours.size(); ++i) {
        detail.contrast += std::abs(detail.colours.at(i) - mean.at(i % 3)) / double(detail.colours.size());
    }
    return detail;
}

double difference(const Detail &a, const Detail &b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.colours.size(); ++i) {
        sum += std::abs(a.colours.at(i) - b.colours.at(i));
    }
    return sum / double(a.colours.size());
}

} // namespace

QList<QRectF> differingDetails(const QImage &picture) {
    if (picture.isNull()) {
        return {};
    }
    std::vector<Detail> left;
    for (const QRectF &cell : cellsOf(picture.size())) {
        left.push_back(detailOf(picture, cell));
    }
    QList<QRectF> taken;
    while (taken.size() < detailsOfPhoto) {
        const auto next = std::ranges::max_element(
            left, {}, [](const Detail &one) { return one.apart + worthOfContrast * one.contrast; });
        const Detail chosen = *next;
        left.erase(next);
        for (Detail &one : left) {
            const double apart = difference(one, chosen);
            one.apart = taken.isEmpty() ? apart : std::min(one.apart, apart);
        }
        taken << chosen.part;
    }
    return taken;
}

} // namespace lumora
