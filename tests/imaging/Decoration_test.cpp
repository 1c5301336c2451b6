// Decorations: every sticker and style draws something of its own, words of all scripts come out, and what is drawn
// into the photo is the same at every size and wherever the photo is cut into tiles.
#include "imaging/decorations/LetteringTable.h"
#include "imaging/decorations/PaintDecoration.h"
#include "imaging/decorations/StickerTable.h"
#include "imaging/decorations/WordPath.h"

#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <QFile>
#include <QPainter>
#include <QSet>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using DecorationKind = Decoration::Kind;
using test::firstDifference;
using test::nowhere;
using test::photoLike;

const QString arabic = QString::fromUtf8("مرحبا يا قطتي");
const QString hebrew = QString::fromUtf8("שלום לך");
const QString japanese = QString::fromUtf8("こんにちは、猫さん");

Decoration sticker(int row, QPointF centre, double size, double angle = 0) {
    return {.row = row, .text = {}, .centre = centre, .size = size, .angle = angle, .speaker = {}};
}

Decoration words(DecorationKind kind, const QString &text, QPointF centre, double size, int row = 0) {
    return {.kind = kind, .row = row, .text = text, .centre = centre, .size = size, .speaker = {}};
}

/// One of each kind and style, on a photo that is `scale` times 640 x 480.
std::vector<Decoration> oneOfEach(double scale) {
    std::vector<Decoration> all = {sticker(0, {100, 100}, 120), sticker(25, {600, 300}, 150, 30),
                                   words(DecorationKind::SpeechBubble, "Who is there?", {300, 120}, 30),
                                   words(DecorationKind::ThoughtBubble, "Hm", {470, 130}, 26)};
    for (int row = 0; row < static_cast<int>(letterings().size()); ++row) {
        all.push_back(words(DecorationKind::Words, "Style", {150.0 + 70 * row, 250.0 + 45 * row}, 44, row));
    }
    all[2].speaker = QPointF(220, 330);
    for (Decoration &each : all) {
        each.centre *= scale;
        each.size *= scale;
        if (each.speaker) {
            *each.speaker *= scale;
        }
    }
    return all;
}

QImage plain(QSize size, QRgb colour) {
    QImage photo(size, QImage::Format_RGB32);
    photo.fill(colour);
    return photo;
}

/// The mean difference of their colours, 0 to 255.
double difference(const QImage &a, const QImage &b) {
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            sum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

TEST(Decorations, SixtyStickersEachWithItsOwnDrawing) {
    QSet<QByteArray> drawings;
    QSet<QString> texts;
    int row = 0;
    for (const StickerRow &each : stickers()) {
        SCOPED_TRACE(each.name);
        QFile file(stickerDrawing(each));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        drawings.insert(file.readAll());
        texts.insert(QString::fromUtf8(each.text));
        for (const QRgb ground : {qRgb(255, 255, 255), qRgb(0, 0, 0)}) { // to be seen on every photo
            const QImage photo = plain({160, 160}, ground);
            QImage drawn = decorated(photo, {sticker(row, {80, 80}, 128)});
            EXPECT_GT(difference(drawn, photo), 5);
            QPainter(&drawn).fillRect(16, 16, 128, 128, QColor::fromRgb(ground));
            EXPECT_EQ(firstDifference(drawn, photo), nowhere) << "reaches out of its square";
        }
        ++row;
    }
    EXPECT_EQ(stickers().size(), 60U);
    EXPECT_EQ(drawings.size(), 60);
    EXPECT_EQ(texts.size(), 60);
    EXPECT_EQ(letterings().size(), 5U);
}

TEST(Decorations, NothingIsDrawnOutsideTheBounds) {
    const QImage photo = plain({640, 480}, qRgb(90, 160, 90));
    for (Decoration each : oneOfEach(1)) {
        for (const double angle : {0.0, 37.0, 180.0}) {
            each.angle = angle;
            const QImage drawn = decorated(photo, {each});
            EXPECT_GT(difference(drawn, photo), 0.1);
            QImage covered = drawn;
            const QRect bounds = placeOf(each).mapRect(shapeOf(each).bounds).toAlignedRect().adjusted(-1, -1, 1, 1);
            QPainter(&covered).fillRect(bounds, QColor(90, 160, 90));
            EXPECT_EQ(firstDifference(covered, photo), nowhere) << int(each.kind) << " " << each.row << " " << angle;
            EXPECT_TRUE(shapeOf(each).bounds.contains(shapeOf(each).box) || each.hasWords());
        }
    }
}

TEST(Decorations, LookTheSameAtEverySize) {
    const QImage small = decorated(plain({640, 480}, qRgb(200, 220, 240)), oneOfEach(1));
    const QImage large = decorated(plain({2560, 1920}, qRgb(200, 220, 240)), oneOfEach(4));
    const QImage reduced = large.scaled(small.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    EXPECT_LT(difference(small, reduced), 1.0); // the edges' smoothing
    // Sharp: an edge of the large picture is no wider than in the small one.
    const auto steepest = [](const QImage &picture) {
        int most = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 1; x < picture.width(); ++x) {
                most = std::max(most, std::abs(qGray(picture.pixel(x, y)) - qGray(picture.pixel(x - 1, y))));
            }
        }
        return most;
    };
    EXPECT_GE(steepest(large), steepest(small) - 10);
}

TEST(Decorations, TilesLeaveNoTrace) {
    // Reaches over the tiles' edges in both directions; the reference is drawn in one piece.
    const QImage photo = photoLike(2300, 600);
    const std::vector<Decoration> all = {sticker(3, {2048, 256}, 300, 20),
                                         words(DecorationKind::SpeechBubble, "Over the edge", {2000, 300}, 40)};
    QImage reference = photo;
    {
        QPainter painter(&reference);
        StickerDrawings drawings;
        for (const Decoration &each : all) {
            paintDecoration(painter, shapeOf(each), placeOf(each), drawings);
        }
    }
    EXPECT_LT(difference(decorated(photo, all), reference), 0.02);
    EXPECT_NE(firstDifference(decorated(photo, all), photo), nowhere);
}

TEST(Decorations, HolesStayAndWhatIsNotCoveredStays) {
    const QImage photo = photoLike(300, 200, true);
    const QImage drawn = decorated(photo, {sticker(52, {80, 80}, 100)});
    EXPECT_EQ(drawn.format(), photo.format());
    int same = 0;
    for (int y = 0; y < 200; ++y) {
        for (int x = 140; x < 300; ++x) {
            same += drawn.pixel(x, y) == photo.pixel(x, y) ? 1 : 0;
        }
    }
    EXPECT_EQ(same, 160 * 200);
    EXPECT_EQ(qAlpha(drawn.pixel(80, 80)), 255); // the middle of the heart
    EXPECT_EQ(firstDifference(decorated(photo, {}), photo), nowhere);
    EXPECT_TRUE(decorated({}, {sticker(0, {1, 1}, 10)}).isNull());
}

TEST(Decorations, WordsOfEveryScriptHaveShapes) {
    for (const QString &text : {QString("Hello"), arabic, hebrew, japanese, arabic + " Lumora 123"}) {
        SCOPED_TRACE(text.toStdString());
        const WordPath straight = wordPath(text, 100, 14);
        EXPECT_GT(straight.path.elementCount(), 20);
        EXPECT_GT(straight.path.boundingRect().height(), 25);
        EXPECT_NEAR(straight.path.boundingRect().center().x(), 0, 25);
        EXPECT_NEAR(straight.box.center().x(), 0, 0.01);
        for (const auto course : {LetteringRow::Course::Arch, LetteringRow::Course::Wave}) {
            const WordPath bent = bentWords(straight, 100, course);
            // As many outlines as before: nothing falls apart where letters join.
            EXPECT_EQ(bent.path.toSubpathPolygons().size(), straight.path.toSubpathPolygons().size());
            EXPECT_TRUE(bent.box.contains(bent.path.boundingRect()));
        }
    }
}

/// Letters that join are fewer outlines than the same letters one by one.
TEST(Decorations, ArabicLettersJoin) {
    const auto outlines = [](const QString &text) {
        QPainterPath path = wordPath(text, 100, 14).path;
        return path.simplified().toSubpathPolygons().size();
    };
    const QString word = QString::fromUtf8("سلسل");
    qsizetype apart = 0;
    for (const QChar letter : word) {
        apart += outlines(QString(letter));
    }
    EXPECT_LT(outlines(word), apart);
}

/// The full stop is where a reader expects the end.
TEST(Decorations, EachLineHasItsOwnDirection) {
    const struct {
        QString text;
        bool fromRight;
    } rows[] = {{QString::fromUtf8("ا."), true}, {QString::fromUtf8("ו."), true}, {"l.", false}};
    for (const auto &[text, fromRight] : rows) {
        QRectF letter, stop;
        for (const QPolygonF &outline : wordPath(text, 100, 14).path.toSubpathPolygons()) {
            (outline.boundingRect().height() > 25 ? letter : stop) |= outline.boundingRect();
        }
        ASSERT_FALSE(letter.isEmpty() || stop.isEmpty());
        EXPECT_EQ(stop.center().x() < letter.center().x(), fromRight) << text.toStdString();
    }
}

TEST(Decorations, ArchRisesInTheMiddleAndLinesAreBroken) {
    const WordPath straight = wordPath("HHHHHHHHHH", 100, 14);
    const WordPath arch = bentWords(straight, 100, LetteringRow::Course::Arch);
    const auto topAt = [&](double from, double to) {
        double top = 1e9;
        for (const QPolygonF &letter : arch.path.toSubpathPolygons()) {
            const QRectF box = letter.boundingRect();
            if (box.center().x() > from && box.center().x() < to) {
                top = std::min(top, box.top());
            }
        }
        return top;
    };
    EXPECT_LT(topAt(-60, 60), topAt(-1000, -150) - 20);
    EXPECT_LT(topAt(-60, 60), topAt(150, 1000) - 20);

    EXPECT_NEAR(wordPath("one", 100, 14).box.height(), 100, 1);
    EXPECT_NEAR(wordPath("one\ntwo", 100, 14).box.height(), 200, 1);
    EXPECT_NEAR(wordPath("one two three", 100, 2).box.height(), 300, 3);
    EXPECT_NEAR(wordPath("", 100, 14).box.width(), 300, 1); // room for words
}

TEST(Decorations, TheTailPointsAtTheSpeakerWhateverTheTurn) {
    for (const DecorationKind kind : {DecorationKind::SpeechBubble, DecorationKind::ThoughtBubble}) {
        for (const double angle : {0.0, 90.0, -30.0}) {
            Decoration bubble = words(kind, "Yes", {300, 200}, 30);
            bubble.angle = angle;
            bubble.speaker = QPointF(150, 420);
            const QPointF tip = placeOf(bubble).map(shapeOf(bubble).tail);
            EXPECT_LT(std::hypot(tip.x() - 150, tip.y() - 420), 0.01);
            const QImage photo = plain({640, 480}, qRgb(90, 160, 90));
            const QImage drawn = decorated(photo, {bubble});
            QImage around = drawn.copy(140, 405, 20, 20);
            EXPECT_GT(difference(around, photo.copy(0, 0, 20, 20)), 3) << "nothing at the tip";
        }
    }
}

TEST(Decorations, TellsHowFarItIs) {
    TaskControl control;
    const TaskControl::Scope scope(&control);
    decorated(plain({600, 900}, 0), oneOfEach(1));
    EXPECT_GT(control.percent(), 50); // tiles are told as they are done
}

} // namespace
} // namespace lumora
