#include "imaging/Picture.h"
#include "imaging/PictureBuffers.h"
#include "support/TestPictures.h"
#include "support/TightMemory.h"

#include <gtest/gtest.h>
#include <optional>
#include <thread>
#include <vector>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

TEST(Picture, newPictureHasTheFormatAndRefusesWhatCannotBe) {
    EXPECT_EQ(newPicture(30, 20).format(), QImage::Format_RGB32);
    EXPECT_EQ(newPicture(30, 20, false).format(), QImage::Format_ARGB32);
    EXPECT_EQ(newPicture(3000, 2000).size(), QSize(3000, 2000));
    const std::pair<int, int> refused[] = {{0, 5},         {5, 0},          {-1, 5},         {5, -3},
                                           {20000, 10001}, {2147483647, 1}, {1, 2147483647}, {100'000'000, 1}};
    for (const auto &[width, height] : refused) {
        EXPECT_TRUE(newPicture(width, height).isNull()) << width << " x " << height;
    }
}

TEST(Picture, largeBuffersAreAlignedKeptAndGivenBack) {
    releaseKeptBuffers();
    ASSERT_EQ(idleBufferBytes(), 0U);
    const uchar *first = nullptr;
    {
        QImage picture = newPicture(2000, 1500);
        first = picture.constBits();
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(first) % (2U << 20), 0U);
        const QImage shared = picture;
        picture = QImage();
        EXPECT_EQ(idleBufferBytes(), 0U) << "somebody still shares it";
        EXPECT_EQ(shared.constBits(), first);
    }
    EXPECT_GT(idleBufferBytes(), 0U);
    const QImage again = newPicture(1999, 1500, false);
    EXPECT_EQ(again.constBits(), first) << "the kept buffer is used again";
    EXPECT_EQ(idleBufferBytes(), 0U);
    { const QImage another = newPicture(4000, 3000); }
    const QImage small = newPicture(1000, 500);
    EXPECT_GT(idleBufferBytes(), 40U << 20) << "a small picture does not sit on a large buffer";
    releaseKeptBuffers();
    EXPECT_EQ(idleBufferBytes(), 0U);
}

TEST(Picture, onlyAFewBuffersStayIdle) {
    releaseKeptBuffers();
    {
        std::vector<QImage> pictures;
        pictures.reserve(12);
        for (int i = 0; i < 12; ++i) {
            pictures.push_back(newPicture(2000, 2000));
        }
    }
    EXPECT_LE(idleBufferBytes(), 2 * std::size_t(16) << 20);
    { const QImage huge = newPicture(16000, 12000); } // 768 MB, never touched
    EXPECT_LE(idleBufferBytes(), std::size_t(512) << 20);
    { const QImage older[2] = {newPicture(6000, 4000), newPicture(6000, 4000)}; }
    { const QImage newer = newPicture(12000, 8000); }
    EXPECT_LE(idleBufferBytes(), std::size_t(512) << 20);
    EXPECT_GE(idleBufferBytes(), std::size_t(384'000'000)) << "a larger photo has no use for the smaller one's buffers";
    releaseKeptBuffers();
}

TEST(Picture, buffersMayComeAndGoOnSeveralThreads) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 200; ++i) {
                QImage picture = newPicture(700 + 10 * (i % 5), 400 + t);
                const PixelView pixels = writeView(picture);
                pixels.row(0)[0] = static_cast<std::uint8_t>(t);
                pixels.row(pixels.height - 1)[0] = static_cast<std::uint8_t>(i);
                ASSERT_EQ(pixels.row(0)[0], t);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    releaseKeptBuffers();
}

TEST(Picture, writingDetachesFromThoseThatShare) {
    for (const QSize size : {QSize(7, 5), QSize(1100, 700)}) {
        QImage picture = newPicture(size.width(), size.height(), false);
        picture.fill(qRgba(10, 20, 30, 40));
        const QImage shared = picture;
        writeView(picture).row(2)[4 * 3] = 99;
        EXPECT_EQ(shared.pixel(3, 2), qRgba(10, 20, 30, 40));
        EXPECT_EQ(picture.pixel(3, 2), qRgba(10, 20, 99, 40));
        const uchar *own = picture.constBits();
        EXPECT_EQ(writeView(picture).data, own) << "no second copy when it is not shared";
    }
    QImage nothing;
    EXPECT_TRUE(writeView(nothing).isEmpty());
    EXPECT_TRUE(readView(QImage(4, 4, QImage::Format_Grayscale8)).isEmpty());
}

TEST(Picture, everyFormatBecomesAPicture) {
    const QImage opaque = photoLike(67, 5);
    const QImage transparent = photoLike(67, 5, true);
    struct Row {
        const char *name;
        QImage image;
        QImage::Format format;
    };
    QImage undefinedAlpha = opaque;
    reinterpret_cast<QRgb *>(undefinedAlpha.scanLine(4))[66] &= 0x00FFFFFF;
    const Row rows[] = {
        {"as it is", opaque, QImage::Format_RGB32},
        {"opaque with an alpha channel", opaque.convertToFormat(QImage::Format_ARGB32), QImage::Format_RGB32},
        {"undefined alpha bytes", undefinedAlpha, QImage::Format_RGB32},
        {"transparent", transparent, QImage::Format_ARGB32},
        {"premultiplied", transparent.convertToFormat(QImage::Format_ARGB32_Premultiplied), QImage::Format_ARGB32},
        {"24 bits", opaque.convertToFormat(QImage::Format_RGB888), QImage::Format_RGB32},
        {"grey", opaque.convertToFormat(QImage::Format_Grayscale16), QImage::Format_RGB32},
        {"palette", opaque.convertToFormat(QImage::Format_Indexed8), QImage::Format_RGB32},
        {"16 bits a channel", transparent.convertToFormat(QImage::Format_RGBA64), QImage::Format_ARGB32},
    };
    for (const Row &row : rows) {
        const QImage picture = toPicture(row.image);
        EXPECT_EQ(picture.format(), row.format) << row.name;
        QImage expected = row.image.convertToFormat(row.format);
        for (int y = 0; row.format == QImage::Format_RGB32 && y < expected.height(); ++y) {
            for (int x = 0; x < expected.width(); ++x) {
                reinterpret_cast<QRgb *>(expected.scanLine(y))[x] |= 0xFF000000;
            }
        }
        EXPECT_EQ(std::memcmp(picture.constBits(), expected.constBits(), std::size_t(expected.sizeInBytes())), 0)
            << row.name;
    }
    EXPECT_TRUE(toPicture(QImage()).isNull());
}

#ifndef __SANITIZE_ADDRESS__ // its shadow memory needs the address space
TEST(Picture, memoryRefusedIsANullPictureAndIdleBuffersAreTriedFirst) {
    { const QImage kept = newPicture(6000, 4000); }
    std::optional<test::TightMemory> tight(60 << 20);
    const QImage fits = newPicture(7500, 4500); // 135 MB: only in place of the idle 96 MB
    const QImage refused = newPicture(16000, 12000);
    QImage shared = fits;
    const PixelView copy = writeView(shared);
    tight.reset();
    EXPECT_FALSE(fits.isNull());
    EXPECT_TRUE(refused.isNull());
    EXPECT_TRUE(copy.isEmpty()) << "no memory for an own copy";
    EXPECT_EQ(shared.constBits(), fits.constBits());
    releaseKeptBuffers();
}
#endif

} // namespace
} // namespace lumora
