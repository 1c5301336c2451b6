#include "imaging/decorations/WordPath.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPolygonF>
#include <QRawFont>
#include <QTextLayout>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numbers>

namespace lumora {

namespace {

constexpr int layoutLetters = 128;    // pixels: laid out at one size, so that every size breaks lines alike
constexpr double emptyLine = 3;       // line heights
constexpr double mostArch = 2.0;      // radians from the first letter to the last
constexpr double tightestArch = 1.6;  // line heights: radius of the arch's lowest line
constexpr double waveLength = 5;      // line heights
constexpr double waveHeight = 0.22;   // line heights
constexpr double longestPiece = 0.25; // line heights of a curve that is bent as one
constexpr double compactShape = 1.5;  // width to height
constexpr double leastCompact = 2.5;  // line heights

QFont lettering() {
    QFont font("Andika");
    font.setBold(true);
    font.setPixelSize(layoutLetters);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferOutline);
    return font;
}

QTextOption lineOption() {
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTextDirection(Qt::LayoutDirectionAuto); // each line's own, whatever the program's
    option.setWrapMode(QTextOption::WordWrap);
    return option;
}

QPainterPath outlines(const QTextLine &line) {
    QPainterPath path;
    for (const QGlyphRun &run : line.glyphRuns()) {
        const QRawFont font = run.rawFont();
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        for (qsizetype i = 0; i < glyphs.size(); ++i) {
            path.addPath(font.pathForGlyph(glyphs.at(i)).translated(places.at(i)));
        }
    }
    return path;
}

using Bend = std::function<QPointF(QPointF)>;
using Curve = std::array<QPointF, 4>;

/// A point of the Bézier curve's halves, after de Casteljau.
std::pair<Curve, Curve> halves(const Curve &c) {
    const auto middle = [](QPointF a, QPointF b) { return (a + b) / 2; };
    const QPointF a = middle(c[0], c[1]);
    const QPointF b = middle(c[1], c[2]);
    const QPointF d = middle(c[2], c[3]);
    const QPointF ab = middle(a, b);
    const QPointF bd = middle(b, d);
    const QPointF all = middle(ab, bd);
    return {{c[0], a, ab, all}, {all, bd, d, c[3]}};
}

void addBent(QPainterPath &path, const Curve &curve, double longest, const Bend &bend) {
    const QRectF extent = QPolygonF({curve[0], curve[1], curve[2], curve[3]}).boundingRect();
    if (extent.width() > longest) {
        const auto [first, second] = halves(curve);
        addBent(path, first, longest, bend);
        addBent(path, second, longest, bend);
    } else {
        path.cubicTo(bend(curve[1]), bend(curve[2]), bend(curve[3]));
    }
}

QPainterPath bent(const QPainterPath &path, double longest, const Bend &bend) {
    QPainterPath result;
    result.setFillRule(Qt::WindingFill);
    QPointF at;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        if (element.isMoveTo()) {
            result.moveTo(bend(element));
            at = element;
        } else if (element.isLineTo()) {
            const QPointF to = element;
            addBent(result, {at, at + (to - at) / 3, at + (to - at) * 2 / 3, to}, longest, bend);
            at = to;
        } else {
            const QPointF to = path.elementAt(i + 2);
            addBent(result, {at, element, path.elementAt(i + 1), to}, longest, bend);
            at = to;
            i += 2;
        }
    }
    return result;
}

} // namespace

WordPath wordPath(const QString &text, double lineHeight, double mostWidth) {
    const QFont font = lettering();
    const double fontHeight = QFontMetricsF(font).height(); // a line with letters of another font may be higher
    const double room = std::max(1.0, mostWidth) * fontHeight;
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    double width = 0;
    double y = 0;
    const QStringList paragraphs = text.split('\n');
    for (const QString &paragraph : paragraphs) {
        QTextLayout layout(paragraph, font);
        layout.setTextOption(lineOption());
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(room);
            line.setPosition({0, y});
            y += line.height();
        }
        layout.endLayout();
        for (int i = 0; i < layout.lineCount(); ++i) {
            const QTextLine line = layout.lineAt(i);
            const QRectF place = line.naturalTextRect();
            path.addPath(outlines(line).translated(-place.center().x(), 0));
            width = std::max(width, place.width());
        }
    }
    if (width <= 0) {
        width = emptyLine * fontHeight;
    }
    const double scale = lineHeight / fontHeight;
    const QTransform centred = QTransform::fromTranslate(0, -y / 2) * QTransform::fromScale(scale, scale);
    const QRectF box(-width / 2 * scale, -y / 2 * scale, width * scale, y * scale);
    return {centred.map(path), box};
}

WordPath bentWords(const WordPath &words, double lineHeight, LetteringRow::Course course) {
    const double width = words.box.width();
    const double bottom = words.box.bottom();
    QPainterPath path;
    if (course == LetteringRow::Course::Arch) {
        const double angle = std::min(mostArch, width / (tightestArch * lineHeight));
        const double radius = width / angle; // of the lower edge
        path = bent(words.path, longestPiece * lineHeight, [=](QPointF point) {
            const double at = point.x() / radius;
            const double out = radius + bottom - point.y();
            return QPointF(out * std::sin(at), -out * std::cos(at));
        });
    } else if (course == LetteringRow::Course::Wave) {
        path = bent(words.path, longestPiece * lineHeight, [=](QPointF point) {
            const double at = 2 * std::numbers::pi * point.x() / (waveLength * lineHeight);
            return QPointF(point.x(), point.y() - waveHeight * lineHeight * std::sin(at));
        });
    } else {
        return words;
    }
    const QRectF inked = path.boundingRect();
    if (inked.isEmpty()) {
        return words;
    }
    QRectF box = inked.adjusted(-0.1 * lineHeight, -0.1 * lineHeight, 0.1 * lineHeight, 0.1 * lineHeight);
    path.translate(-box.center());
    box.moveCenter({0, 0});
    return {path, box};
}

double compactWidth(const QString &text) {
    const QFontMetricsF metrics(lettering());
    double total = 0;
    for (const QString &paragraph : text.split('\n')) {
        total += std::max(1.0, metrics.horizontalAdvance(paragraph) / metrics.height());
    }
    return std::max(leastCompact, std::sqrt(total * compactShape));
}

} // namespace lumora
