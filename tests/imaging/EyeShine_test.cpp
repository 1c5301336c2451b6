// Eyes in a flash, drawn so that it is known of each pixel what it shows.
#include "imaging/transforms/EyeShine.h"

#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <QBuffer>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace lumora {
namespace {

using enum EyeShine;

struct Face {
    const char *name;
    QColor skin, white, iris;
};

// Skins and furs.
const Face faces[] = {
    {"fair", {238, 200, 178}, {225, 220, 215}, {86, 110, 140}},
    {"tan", {205, 155, 120}, {220, 212, 200}, {92, 60, 34}},
    {"dark", {96, 62, 46}, {205, 195, 180}, {50, 32, 22}},
    {"ginger", {190, 120, 60}, {150, 130, 60}, {120, 110, 40}},
    {"grey", {120, 118, 115}, {110, 118, 80}, {96, 104, 60}},
    {"black", {38, 35, 34}, {60, 55, 45}, {70, 52, 30}},
    {"white", {225, 222, 216}, {190, 185, 170}, {88, 96, 116}},
};

struct Shine {
    EyeShine kind;
    QColor middle, edge;
};

const Shine shines[] = {
    {Orange, {255, 168, 60}, {226, 112, 30}},  {Orange, {250, 140, 48}, {200, 84, 24}},
    {Pink, {255, 150, 170}, {232, 100, 128}},  {Pink, {250, 120, 140}, {214, 70, 96}},
    {Green, {190, 255, 150}, {90, 210, 90}},   {Green, {120, 240, 190}, {40, 170, 120}},
    {White, {240, 246, 248}, {205, 218, 224}}, {White, {235, 238, 220}, {196, 200, 178}},
};

constexpr int over = 6; // pixels of the drawing for one of the picture

/// An eye in the middle of a square: its picture, and how much of each pixel is the pupil and the glint.
struct Eye {
    QImage picture;
    QImage pupil; ///< grey: 255 where the whole pixel shows the pupil
    QImage glint;
};

QImage reducedBy(const QImage &drawing) {
    return drawing.scaled(drawing.size() / over, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

/// `radius`: of the pupil, in pixels. The lid hangs over the upper `lid` of its height.
Eye drawnEye(const Face &face, const Shine &shine, double radius, double lid) {
    const double r = radius * over;
    const int side = int(std::ceil(radius * 7)) * over;
    const QPointF middle(side / 2.0, side / 2.0);
    QImage drawing(side, side, QImage::Format_RGB32);
    QImage pupil(side, side, QImage::Format_RGB32);
    pupil.fill(Qt::black);
    QImage glint = pupil;
    QPainter painter(&drawing);
    painter.fillRect(drawing.rect(), face.skin);
    std::minstd_rand random(5);
    for (int i = 0; i < 400; ++i) { // pores or hair
        const QPointF at(double(random() % unsigned(side)), double(random() % unsigned(side)));
        painter.setPen(QPen(i % 2 == 0 ? face.skin.lighter(112) : face.skin.darker(112), r / 12));
        painter.drawLine(at, at + QPointF(r / 4, r / 3));
    }
    painter.setPen(Qt::NoPen);
    QPainterPath opening;
    opening.addEllipse(middle, 2.6 * r, 1.7 * r);
    painter.setClipPath(opening);
    painter.fillRect(drawing.rect(), face.white);
    painter.setBrush(face.iris);
    painter.drawEllipse(middle, 1.6 * r, 1.6 * r);
    QRadialGradient light(middle, r);
    light.setColorAt(0, shine.middle);
    light.setColorAt(0.6, shine.middle);
    light.setColorAt(1, shine.edge);
    painter.setBrush(light);
    painter.drawEllipse(middle, r, r);
    const QPointF flash = middle + QPointF(-0.3 * r, 0.1 * r);
    painter.setBrush(Qt::white);
    painter.drawEllipse(flash, 0.22 * r, 0.22 * r);
    painter.setClipping(false);
    QPainterPath upper;
    upper.addRect(0, 0, side, middle.y() - r + 2 * r * lid);
    painter.setClipPath(opening);
    painter.fillPath(upper, face.skin.darker(115));
    painter.end();
    QPainter mask(&pupil);
    mask.setPen(Qt::NoPen);
    mask.setBrush(Qt::white);
    mask.drawEllipse(middle, r, r);
    mask.fillPath(upper, Qt::black);
    mask.setBrush(Qt::black);
    mask.drawEllipse(flash, 0.22 * r, 0.22 * r);
    mask.end();
    mask.begin(&glint);
    mask.setPen(Qt::NoPen);
    mask.setBrush(Qt::white);
    mask.drawEllipse(flash, 0.22 * r, 0.22 * r);
    mask.fillPath(upper, Qt::black);
    mask.end();
    return {reducedBy(drawing), reducedBy(pupil), reducedBy(glint)};
}

/// As a camera stores it.
QImage asJpeg(const QImage &picture) {
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    picture.save(&file, "JPG", 92);
    return QImage::fromData(file.data()).convertToFormat(QImage::Format_RGB32);
}

int change(QRgb before, QRgb after) {
    return std::max({std::abs(qRed(before) - qRed(after)), std::abs(qGreen(before) - qGreen(after)),
                     std::abs(qBlue(before) - qBlue(after))});
}

/// How many pixels of a part of the eye are as they should be, of how many.
struct Score {
    int good = 0;
    int all = 0;
    void add(bool isGood) {
        good += isGood ? 1 : 0;
        ++all;
    }
    double share() const { return all == 0 ? 1 : double(good) / all; }
};

struct Scores {
    Score dark, glint, around;
};

/// Whether nothing of the eye's pupil and glint is within so many pixels.
bool isApart(const Eye &eye, int x, int y, int distance) {
    for (int v = std::max(0, y - distance); v <= std::min(eye.pupil.height() - 1, y + distance); ++v) {
        const QRgb *pupil = test::row(eye.pupil, v);
        const QRgb *glint = test::row(eye.glint, v);
        for (int u = std::max(0, x - distance); u <= std::min(eye.pupil.width() - 1, x + distance); ++u) {
            if (qGray(pupil[u]) != 0 || qGray(glint[u]) != 0) {
                return false;
            }
        }
    }
    return true;
}

/// `mixed`: over so many pixels the file has mixed colours.
Scores scoresOf(const Eye &eye, const QImage &before, const QImage &after, int mixed) {
    Scores scores;
    for (int y = 0; y < before.height(); ++y) {
        const QRgb *pupil = test::row(eye.pupil, y);
        const QRgb *glint = test::row(eye.glint, y);
        const QRgb *was = test::row(before, y);
        const QRgb *is = test::row(after, y);
        for (int x = 0; x < before.width(); ++x) {
            if (qGray(pupil[x]) == 255) {
                scores.dark.add(std::max({qRed(is[x]), qGreen(is[x]), qBlue(is[x])}) <= 80);
            } else if (qGray(glint[x]) == 255) {
                scores.glint.add(change(was[x], is[x]) <= 24);
            } else if (isApart(eye, x, y, mixed)) {
                scores.around.add(change(was[x], is[x]) <= 12);
            }
        }
    }
    return scores;
}

TEST(EyeShine, OnlyThePupilGetsDark) {
    const struct {
        double radius, lid, ring; ///< pixels of the pupil; share of it; in radii of the pupil
    } cases[] = {{3, 0, 1.4}, {3, .2, 2}, {6, .2, 1.4}, {12, 0, 2}, {12, .2, 1.2}, {24, .2, 1.4}};
    for (const Shine &shine : shines) {
        for (const Face &face : faces) {
            for (const auto &[radius, lid, ring] : cases) {
                const Eye eye = drawnEye(face, shine, radius, lid);
                for (const bool jpeg : {false, true}) {
                    SCOPED_TRACE(testing::Message()
                                 << "shine " << shine.middle.name().toStdString() << ' ' << face.name << " radius "
                                 << radius << " lid " << lid << " ring " << ring << (jpeg ? " JPEG" : ""));
                    const QImage before = jpeg ? asJpeg(eye.picture) : eye.picture;
                    QImage after = before;
                    const int x = before.width() / 2 + int(radius / 5); // never quite in the middle
                    const int y = before.height() / 2 + int(radius / 6);
                    EXPECT_EQ(darkenEyeShine(after, x, y, int(std::ceil(radius * ring)), shine.kind),
                              EyeShineOutcome::Done);
                    const Scores scores = scoresOf(eye, before, after, jpeg ? 2 : 0);
                    EXPECT_GE(scores.dark.share(), radius < 5 ? 0.85 : 0.95); // one of seven
                    EXPECT_GE(scores.around.share(), radius < 5 ? 0.96 : 0.985);
                    if (scores.glint.all > 3) { // fewer a JPEG file may have lost
                        EXPECT_GE(scores.glint.share(), 0.85);
                    }
                }
            }
        }
    }
}

TEST(EyeShine, WhereNothingShinesNothingChanges) {
    for (const Shine &shine : shines) {
        for (const Face &face : faces) {
            SCOPED_TRACE(testing::Message() << "shine " << shine.middle.name().toStdString() << ' ' << face.name);
            const Eye eye = drawnEye(face, shine, 12, 0);
            QImage picture = eye.picture;
            EXPECT_EQ(darkenEyeShine(picture, 10, 10, 9, shine.kind), EyeShineOutcome::NotFound); // skin or fur
            EXPECT_EQ(darkenEyeShine(picture, 42, 42, 5, shine.kind), EyeShineOutcome::NotFound); // a part of the pupil
            EXPECT_EQ(test::firstDifference(picture, eye.picture), test::nowhere);
        }
    }
}

TEST(EyeShine, NothingBeyondTheDiscChanges) {
    constexpr int far = std::numeric_limits<int>::max();
    const struct {
        int x, y, radius;
    } clicks[] = {{0, 0, 20}, {199, 3, 80},         {-5, 60, 30},    {100, 75, 0},   {100, 75, 1},        {50, 40, 9},
                  {5, 5, -1}, {far, -far, far / 2}, {120, 149, far}, {100, 75, 300}, {100, 10 - far, far}};
    for (const bool transparent : {false, true}) {
        const QImage photo = test::photoLike(200, 150, transparent);
        for (const auto &[x, y, radius] : clicks) {
            for (const EyeShine kind : {Orange, Pink, Green, White}) {
                QImage picture = photo;
                const EyeShineOutcome outcome = darkenEyeShine(picture, x, y, radius, kind);
                EXPECT_EQ(outcome == EyeShineOutcome::Done, picture != photo);
                for (int v = 0; v < photo.height(); ++v) {
                    for (int u = 0; u < photo.width(); ++u) {
                        const QRgb was = photo.pixel(u, v);
                        const QRgb is = picture.pixel(u, v);
                        ASSERT_EQ(qAlpha(was), qAlpha(is));
                        ASSERT_TRUE(was == is || std::hypot(double(u) - x, double(v) - y) <= radius) << u << ' ' << v;
                    }
                }
            }
        }
    }
    QImage none;
    EXPECT_EQ(darkenEyeShine(none, 0, 0, 5, Green), EyeShineOutcome::NotFound);
}

} // namespace
} // namespace lumora
