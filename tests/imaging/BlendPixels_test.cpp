#include "imaging/kernels/BlendPixels.h"

#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <gtest/gtest.h>
#include <vector>

namespace lumora {
namespace {

/// Each byte by itself, as the header says.
std::uint32_t blendSlowly(std::uint32_t a, std::uint32_t b, unsigned weight) {
    std::uint32_t result = 0;
    for (const int shift : {0, 8, 16, 24}) {
        const unsigned mixed = ((a >> shift) & 255) * (256 - weight) + ((b >> shift) & 255) * weight;
        result |= ((mixed + 128) >> 8) << shift;
    }
    return result;
}

TEST(BlendPixels, everyVersionRoundsEachByte) {
    const QImage picture = test::photoLike(131, 2, true);
    const auto *a = reinterpret_cast<const std::uint32_t *>(picture.constScanLine(0));
    const auto *b = reinterpret_cast<const std::uint32_t *>(picture.constScanLine(1));
    test::forEachTarget([&] {
        for (const unsigned weight : {0U, 1U, 100U, 128U, 255U, 256U}) {
            for (const std::size_t count : {std::size_t(1), std::size_t(3), std::size_t(16), std::size_t(131)}) {
                std::vector<std::uint32_t> rows(count + 1, 7);
                std::vector<std::uint32_t> columns(count + 1, 7);
                std::vector<std::uint32_t> expectedRows(count + 1, 7);
                std::vector<std::uint32_t> expectedColumns(count + 1, 7);
                std::vector<std::int32_t> first(count);
                std::vector<std::int32_t> second(count);
                std::vector<std::uint32_t> weights(count);
                for (std::size_t i = 0; i < count; ++i) {
                    first[i] = static_cast<std::int32_t>(i * 37 % 131);
                    second[i] = 130 - first[i];
                    const unsigned own = (weight + static_cast<unsigned>(i) * 11) % 257;
                    weights[i] = own * 0x00010001U;
                    expectedRows[i] = blendSlowly(a[i], b[i], weight);
                    expectedColumns[i] = blendSlowly(a[first[i]], a[second[i]], own);
                }
                blendRows({a, count}, {b, count}, weight, std::span(rows).first(count));
                blendPairs(a, {first, second, weights}, std::span(columns).first(count));
                ASSERT_EQ(rows, expectedRows) << count << ' ' << weight;
                ASSERT_EQ(columns, expectedColumns) << count << ' ' << weight;
            }
        }
    });
}

} // namespace
} // namespace lumora
