#include "ideas/IdeaPicture.h"

#include "widgets/Theme.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <algorithm>

namespace lumora {

namespace {

/// Where the example is painted: a sheet of `size`, and how its pictures come to it.
struct Sheet {
    const Idea &idea;
    QPainter &painter;
    QSizeF size;
    double unit;   ///< a hundredth of the sheet's width
    qreal density; ///< pixels of the screen to one of the sheet

    QRectF rect() const { return {{}, size}; }
    /// The idea's picture, no larger than that place needs it: small ones are read fast.
    QImage picture(int number, QSizeF place) const {
        QImageReader reader(ideaPicturePath(idea, number));
        const QSize wanted = reader.size().scaled((place * density).toSize(), Qt::KeepAspectRatioByExpanding);
        if (wanted.width() < reader.size().width()) {
            reader.setScaledSize(wanted);
        }
        return reader.read();
    }
};

/// The largest place of these proportions in the middle of another.
QRectF fitted(QSizeF proportions, const QRectF &room) {
    QRectF place({}, proportions.scaled(room.size(), Qt::KeepAspectRatio));
    place.moveCenter(room.center());
    return place;
}

QSizeF proportionsOf(const Sheet &sheet, int number) {
    return QImageReader(ideaPicturePath(sheet.idea, number)).size();
}

/// A sheet of white paper with a soft shadow below it.
void paintPaper(const Sheet &sheet, const QRectF &place, double corner) {
    QPainter &painter = sheet.painter;
    painter.setPen(Qt::NoPen);
    for (int i = 3; i > 0; --i) {
        const double grow = i * sheet.unit * 0.35;
        painter.setBrush(QColor(43, 40, 64, 22));
        painter.drawRoundedRect(place.adjusted(-grow / 2, 0, grow / 2, grow), corner + grow, corner + grow);
    }
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(place, corner, corner);
}

void paintFilling(const Sheet &sheet, int number, const QRectF &place) {
    const QImage picture = sheet.picture(number, place.size());
    if (!picture.isNull()) {
        sheet.painter.drawImage(place, picture, fitted(place.size(), picture.rect()));
    }
}

void paintSingle(const Sheet &sheet) {
    const double edge = 2 * sheet.unit;
    const QRectF place = fitted(proportionsOf(sheet, 1), sheet.rect().adjusted(edge, edge, -edge, -edge - sheet.unit));
    paintPaper(sheet, place.adjusted(-sheet.unit, -sheet.unit, sheet.unit, sheet.unit), sheet.unit / 2);
    paintFilling(sheet, 1, place);
}

/// Cut along its tiles; a few pieces are still to be put in their places.
void paintPieces(const Sheet &sheet) {
    constexpr int along = 5;
    struct Loose {
        int column, row;
        double x, y, degrees; ///< beside its place, in pieces
    };
    constexpr Loose loose[] = {{4, 0, 0.35, -0.15, 14}, {3, 3, 0.9, 1.05, -17}, {0, 4, -0.12, 0.55, 9}};
    const double edge = 6 * sheet.unit;
    const QRectF place = fitted(proportionsOf(sheet, 1), sheet.rect().adjusted(edge, edge, -edge, -edge));
    const QImage picture = sheet.picture(1, place.size());
    const QSizeF piece = place.size() / along;
    const auto paintPiece = [&](int column, int row) {
        const QRectF from(picture.width() * column / double(along), picture.height() * row / double(along),
                          picture.width() / double(along), picture.height() / double(along));
        sheet.painter.drawImage(QRectF({-piece.width() / 2, -piece.height() / 2}, piece), picture, from);
    };
    sheet.painter.setPen(QPen(colours::line, sheet.unit / 3, Qt::DashLine));
    sheet.painter.setBrush(colours::paper);
    sheet.painter.drawRect(place);
    const auto isLoose = [&](int column, int row) {
        return std::ranges::any_of(loose, [&](const Loose &l) { return l.column == column && l.row == row; });
    };
    const auto middleOf = [&](double column, double row) {
        return place.topLeft() + QPointF((column + 0.5) * piece.width(), (row + 0.5) * piece.height());
    };
    for (int row = 0; row < along; ++row) {
        for (int column = 0; column < along; ++column) {
            if (!isLoose(column, row)) {
                sheet.painter.save();
                sheet.painter.translate(middleOf(column, row));
                paintPiece(column, row);
                sheet.painter.restore();
            }
        }
    }
    for (const Loose &l : loose) {
        sheet.painter.save();
        sheet.painter.translate(middleOf(l.column + l.x, l.row + l.y));
        sheet.painter.rotate(l.degrees);
        paintPaper(sheet, QRectF({-piece.width() / 2, -piece.height() / 2}, piece), 0);
        paintPiece(l.column, l.row);
        sheet.painter.restore();
    }
}

void paintSeasons(const Sheet &sheet) {
    constexpr double degrees[] = {-2.5, 2, 1.5, -2};
    const QSizeF place(47 * sheet.unit, sheet.size.height() * 0.46);
    for (int i = 0; i < 4; ++i) {
        const QPointF middle(sheet.size.width() * (i % 2 == 0 ? 0.255 : 0.745),
                             sheet.size.height() * (i < 2 ? 0.255 : 0.745));
        const QRectF room(QPointF(-place.width() / 2, -place.height() / 2), place);
        const QRectF picture = fitted(proportionsOf(sheet, i + 1), room);
        sheet.painter.save();
        sheet.painter.translate(middle);
        sheet.painter.rotate(degrees[i]);
        paintPaper(sheet, picture, sheet.unit / 2);
        paintFilling(sheet, i + 1, picture.adjusted(sheet.unit, sheet.unit, -sheet.unit, -sheet.unit));
        sheet.painter.restore();
    }
}

void paintPage(const Sheet &sheet) {
    // In parts of a page of 12 x 9; every panel has the page's own proportions.
    constexpr QRectF panels[] = {{0, 0, 8, 6}, {8, 0, 4, 3}, {8, 3, 4, 3}, {0, 6, 4, 3}, {4, 6, 4, 3}, {8, 6, 4, 3}};
    const double edge = 2 * sheet.unit;
    const QRectF paper = fitted({12, 9}, sheet.rect().adjusted(edge, edge / 2, -edge, -edge));
    paintPaper(sheet, paper, sheet.unit / 2);
    const QRectF page = paper.adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2);
    const double gutter = sheet.unit / 2;
    for (int i = 0; i < sheet.idea.pictures; ++i) {
        const QRectF &part = panels[i];
        const QRectF panel(page.left() + part.left() * page.width() / 12, page.top() + part.top() * page.height() / 9,
                           part.width() * page.width() / 12, part.height() * page.height() / 9);
        const QRectF place = panel.adjusted(gutter, gutter, -gutter, -gutter);
        paintFilling(sheet, i + 1, place);
        sheet.painter.setPen(QPen(colours::ink, sheet.unit / 2));
        sheet.painter.setBrush(Qt::NoBrush);
        sheet.painter.drawRect(place);
    }
}

void paintRows(const Sheet &sheet) {
    const double edge = 2 * sheet.unit;
    const QSizeF row(sheet.size.width() - 2 * edge, sheet.size.height() / sheet.idea.pictures - edge);
    for (int i = 0; i < sheet.idea.pictures; ++i) {
        const QRectF room(QPointF(edge, edge / 2 + i * (row.height() + edge)), row);
        const QRectF place = fitted(proportionsOf(sheet, i + 1), room);
        paintPaper(sheet, place.adjusted(-sheet.unit, -sheet.unit, sheet.unit, sheet.unit), sheet.unit / 2);
        paintFilling(sheet, i + 1, place);
    }
}

/// The back of a card of the memory game.
void paintBack(const Sheet &sheet, const QRectF &card) {
    sheet.painter.setPen(Qt::NoPen);
    sheet.painter.setBrush(colours::plum);
    sheet.painter.drawRoundedRect(card, sheet.unit, sheet.unit);
    QPainterPath star;
    for (int i = 0; i < 10; ++i) {
        const double radius = card.height() * (i % 2 == 0 ? 0.3 : 0.13);
        const QPointF point = QTransform().rotate(36 * i).map(QPointF(0, -radius)) + card.center();
        i == 0 ? star.moveTo(point) : star.lineTo(point);
    }
    star.closeSubpath();
    sheet.painter.setPen(QPen(colours::sun, sheet.unit / 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    sheet.painter.setBrush(colours::sun);
    sheet.painter.drawPath(star);
}

void paintCards(const Sheet &sheet) {
    constexpr int columns = 4;
    constexpr int order[] = {1, 0, 3, 4, 5, 2, 1, 0, 0, 6, 4, 2}; // 0: face down
    const double gap = 1.6 * sheet.unit;
    const double edge = 2 * sheet.unit;
    const QRectF table = fitted({4, 3}, sheet.rect().adjusted(edge, edge / 2, -edge, -edge));
    const QSizeF pitch(table.width() / columns, table.height() / 3);
    for (int i = 0; i < static_cast<int>(std::size(order)); ++i) {
        const QPoint cell(i % columns, i / columns);
        const QPointF corner(cell.x() * pitch.width(), cell.y() * pitch.height());
        const QRectF card = QRectF(table.topLeft() + corner, pitch).adjusted(gap / 2, gap / 2, -gap / 2, -gap / 2);
        const double rim = sheet.unit / 2;
        const QRectF face = card.adjusted(rim, rim, -rim, -rim);
        paintPaper(sheet, card, sheet.unit);
        if (order[i] == 0) {
            paintBack(sheet, face);
        } else {
            paintFilling(sheet, order[i], face);
        }
    }
}

} // namespace

QPixmap paintIdea(const Idea &idea, QSize size, qreal devicePixelRatio) {
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const Sheet sheet{idea, painter, size, size.width() / 100.0, devicePixelRatio};
    void (*const layouts[])(const Sheet &) = {paintSingle, paintPieces, paintSeasons, paintPage, paintRows, paintCards};
    layouts[static_cast<int>(idea.layout)](sheet);
    return pixmap;
}

IdeaPicture::IdeaPicture(QSize size, QWidget *parent) : QWidget(parent) {
    setObjectName("picIdea");
    setFixedSize(size);
}

void IdeaPicture::setIdea(const Idea &idea) {
    m_idea = &idea;
    m_picture = QPixmap(); // painted when it is seen
    update();
}

void IdeaPicture::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const bool otherScreen = m_picture.devicePixelRatio() != devicePixelRatioF();
    if (m_idea != nullptr && (m_picture.isNull() || otherScreen)) {
        m_picture = paintIdea(*m_idea, size(), devicePixelRatioF());
    }
    painter.drawPixmap(0, 0, m_picture);
}

} // namespace lumora
