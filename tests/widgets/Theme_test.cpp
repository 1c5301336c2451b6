#include "widgets/Theme.h"

#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

double luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// The contrast of the Web Content Accessibility Guidelines 2.1.
double contrast(const QColor &a, const QColor &b) {
    const double lighter = std::max(luminance(a), luminance(b));
    const double darker = std::min(luminance(a), luminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

TEST(Theme, TextCanBeReadOnEverySurface) {
    using namespace colours;
    for (const QColor &surface : {parchment, paper, hover, pressed, checked, chosen, QColor(Qt::white)}) {
        EXPECT_GE(contrast(ink, surface), 4.5) << surface.name().toStdString();
    }
    for (const QColor &surface : {parchment, paper, QColor(Qt::white)}) {
        EXPECT_GE(contrast(faintInk, surface), 4.5) << surface.name().toStdString();
    }
}

TEST(Theme, CaptionsAreReadAsPeopleSeeThem) {
    const std::pair<const char *, const char *> rows[] = {
        {"Black && White", "Black & White"},
        {"&Open", "Open"},
        {"Crop", "Crop"},
        {"", ""},
        {"Save &", "Save "},
        {"&&&Exit", "&Exit"},
    };
    for (const auto &[text, shown] : rows) {
        EXPECT_EQ(plainCaption(text).toStdString(), shown) << text;
    }
}

TEST(Theme, DisabledPicturesLoseTheirColourAndKeepTheirShape) {
    QPixmap picture(4, 4);
    picture.fill(Qt::transparent);
    QImage image = picture.toImage();
    image.setPixelColor(1, 1, colours::coral);
    const QImage faint = disabledPixmap(QPixmap::fromImage(image)).toImage();
    EXPECT_EQ(faint.pixelColor(0, 0).alpha(), 0);
    const QColor left = faint.pixelColor(1, 1);
    EXPECT_GT(left.alpha(), 80);
    EXPECT_LT(left.alpha(), 200);
    EXPECT_LE(left.saturation(), 8);
    EXPECT_TRUE(disabledPixmap(QPixmap()).isNull());
}

} // namespace
} // namespace lumora
