#include "widgets/Theme.h"

#include "support/TestFiles.h"
#include "widgets/Tick.h"

#include <QFontInfo>
#include <QLabel>
#include <QRawFont>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
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
    const std::pair<colours::Set, double> sets[] = {{colours::usual, 4.5}, {colours::highContrast, 7}};
    for (const auto &[set, least] : sets) {
        for (const QColor &surface :
             {set.parchment, set.paper, set.hover, set.pressed, set.checked, QColor(Qt::white)}) {
            EXPECT_GE(contrast(set.ink, surface), least) << surface.name().toStdString();
        }
        for (const QColor &surface : {set.parchment, set.paper, QColor(Qt::white)}) {
            EXPECT_GE(contrast(set.faintInk, surface), least) << surface.name().toStdString();
        }
    }
}

TEST(Theme, HighContrastIsHighForWhateverIsPainted) {
    const colours::Set &set = colours::highContrast;
    for (const QColor &filled : {set.sun, set.coral}) { // below ink
        EXPECT_GE(contrast(set.ink, filled), 7) << filled.name().toStdString();
    }
    for (const QColor &surface : {set.parchment, set.paper}) {
        for (const QColor &drawn : {set.line, set.disabledInk, set.link, set.focus, set.litEdge, set.checkedEdge,
                                    set.grip, set.sky, set.leaf, set.plum}) {
            EXPECT_GE(contrast(drawn, surface), 7) << drawn.name().toStdString();
        }
    }
    for (const QColor &surface : {set.hover, set.checked}) { // dots and ticks
        EXPECT_GE(contrast(set.sky, surface), 7) << surface.name().toStdString();
    }
}

TEST(Theme, TheLookChangesInOpenWindows) {
    applyTheme(*qApp);
    QWidget window;
    QLabel words("Words", &window), remark("A remark", &window), line(&window);
    setFaint(remark);
    setThemedSheet(line, "background: @line");
    line.setGeometry(0, 0, 40, 40);
    window.show();
    const auto painted = [&] { return line.grab().toImage().pixelColor(20, 20); };
    const double before = words.fontMetrics().horizontalAdvance("Words");
    EXPECT_EQ(painted(), colours::usual.line);
    applyTheme(*qApp, {.highContrast = true, .easyLetters = true});
    EXPECT_EQ(painted(), colours::highContrast.line);
    EXPECT_EQ(remark.palette().color(QPalette::WindowText), colours::highContrast.faintInk);
    EXPECT_EQ(words.palette().color(QPalette::WindowText), colours::highContrast.ink);
    EXPECT_GE(words.fontMetrics().horizontalAdvance("Words"), 1.1 * before);
    applyTheme(*qApp);
    EXPECT_EQ(painted(), colours::usual.line);
    EXPECT_EQ(remark.palette().color(QPalette::WindowText), colours::usual.faintInk);
    EXPECT_EQ(words.fontMetrics().horizontalAdvance("Words"), before);
}

TEST(Theme, ATickIsHitAnywhereInItsRow) {
    applyTheme(*qApp);
    QWidget window;
    Tick tick("Grid", &window);
    Choice choice("Always", &window);
    window.resize(400, 120);
    tick.setGeometry(20, 5, 360, 44);
    choice.setGeometry(20, 60, 360, 44);
    window.show();
    for (QAbstractButton *each : {static_cast<QAbstractButton *>(&tick), static_cast<QAbstractButton *>(&choice)}) {
        EXPECT_GE(each->sizeHint().height(), 44);
        for (const QPoint &at : {QPoint(2, 2), QPoint(200, 2), QPoint(357, 41), QPoint(2, 41)}) {
            const QSignalSpy clicked(each, &QAbstractButton::clicked);
            QTest::mouseClick(each, Qt::LeftButton, {}, at);
            EXPECT_EQ(clicked.count(), 1) << each->metaObject()->className() << ' ' << at.x() << ' ' << at.y();
        }
    }
}

TEST(Theme, DisabledWordsCanStillBeRead) {
    applyTheme(*qApp);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        const QColor ink = QApplication::palette().color(QPalette::Disabled, role);
        EXPECT_GE(contrast(ink, colours::parchment), 3.0);
        EXPECT_TRUE(qApp->styleSheet().contains("QPushButton:disabled { background: " + colours::parchment.name() +
                                                "; color: " + ink.name()));
    }
}

TEST(Theme, HasTheLettersOfEveryLanguage) {
    applyTheme(*qApp);
    QList<QRawFont> fonts;
    for (const QString &family : QApplication::font().families()) {
        EXPECT_EQ(QFontInfo(QFont(family)).family(), family);
        fonts << QRawFont::fromFont(QFont(family));
    }
    ASSERT_GT(test::languageFiles().size(), 1);
    for (const QString &file : test::languageFiles()) {
        QString missing;
        for (const char32_t letter : QString::fromUtf8(test::contents(file)).toUcs4()) {
            const bool isSeen = letter > ' ' && QChar::category(letter) != QChar::Other_Format;
            if (isSeen &&
                std::ranges::none_of(fonts, [&](const QRawFont &font) { return font.supportsCharacter(letter); })) {
                missing += QString::fromUcs4(&letter, 1);
            }
        }
        EXPECT_EQ(missing, "") << qPrintable(file);
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

TEST(Theme, ArrowsPointWithTheReadingDirection) {
    const char *icons[] = {"undo", ":/icons/redo.svg", "exit", "save", "rotate1", "help"};
    std::vector<QImage> usual;
    for (const char *icon : icons) {
        usual.push_back(iconPixmap(icon, 32, 1).toImage());
    }
    const QLocale before;
    QApplication::setLayoutDirection(Qt::RightToLeft);
    for (const char *language : {"he", "ar"}) {
        QLocale::setDefault(QLocale(language));
        for (size_t i = 0; i < std::size(icons); ++i) {
            const bool mirrored = i < 3 || (icons[i] == QLatin1String("help") && language == QLatin1String("ar"));
            const QImage expected = mirrored ? usual[i].mirrored(true, false) : usual[i];
            // Half-covered pixels may be rounded otherwise.
            const QImage shown = iconPixmap(icons[i], 32, 1).toImage();
            int different = 0;
            for (int y = 0; y < 32; ++y) {
                for (int x = 0; x < 32; ++x) {
                    different += std::abs(qAlpha(shown.pixel(x, y)) - qAlpha(expected.pixel(x, y))) > 60 ||
                                 std::abs(qGray(shown.pixel(x, y)) - qGray(expected.pixel(x, y))) > 60;
                }
            }
            EXPECT_LT(different, 20) << icons[i] << ' ' << language;
        }
    }
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QLocale::setDefault(before);
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
