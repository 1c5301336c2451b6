#include "widgets/FittingLabel.h"

#include "widgets/Theme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

namespace lumora {

namespace {

constexpr int mostLines = 2;
constexpr int lineTightness = 85; // per cent of the font's line height, for two lines
constexpr double smallest = 0.68; // of the label's own font
constexpr double stepOfPoints = 0.5;

int lineHeight(const QFont &font, qsizetype lines) {
    const int height = QFontMetrics(font).height();
    return lines > 1 ? height * lineTightness / 100 : height;
}

} // namespace

FittingLabel::FittingLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize FittingLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(words()) + 2, fontMetrics().height() + 4};
}

QSize FittingLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 6, fontMetrics().height() + 4};
}

bool FittingLabel::isTextWhole() const {
    return fit().isWhole;
}

/// A caption of another control may mark its key with "&".
QString FittingLabel::words() const {
    return buddy() != nullptr ? plainCaption(text()) : text();
}

FittingLabel::Fit FittingLabel::fit() const {
    const QString whole = words();
    const QSize room = contentsRect().size();
    QFont tried = font();
    const double least = tried.pointSizeF() * smallest;
    for (;; tried.setPointSizeF(tried.pointSizeF() - stepOfPoints)) {
        QTextLayout layout(whole, tried);
        QStringList lines;
        bool isWhole = true;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < mostLines;
             line = layout.createLine()) {
            line.setLineWidth(room.width());
            const bool last = lines.size() + 1 == mostLines;
            const QString rest = whole.mid(line.textStart(), last ? -1 : line.textLength()).trimmed();
            lines += QFontMetrics(tried).elidedText(rest, Qt::ElideRight, room.width());
            isWhole = isWhole && lines.last() == rest;
        }
        layout.endLayout();
        isWhole = isWhole && lines.size() * lineHeight(tried, lines.size()) <= room.height();
        if (isWhole || tried.pointSizeF() - stepOfPoints < least) {
            return {tried, lines, isWhole};
        }
    }
}

bool FittingLabel::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), isTextWhole() ? QString() : words(), this);
        return true;
    }
    return QLabel::event(event);
}

void FittingLabel::paintEvent(QPaintEvent *) {
    const Fit shown = fit();
    QPainter painter(this);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    painter.setFont(shown.font);
    const int height = lineHeight(shown.font, shown.lines.size());
    const auto across = QStyle::visualAlignment(layoutDirection(), alignment()) & Qt::AlignHorizontal_Mask;
    const QRect place = contentsRect();
    int top = place.top() + (place.height() - height * static_cast<int>(shown.lines.size())) / 2;
    for (const QString &line : shown.lines) {
        painter.drawText(QRect(place.left(), top, place.width(), height),
                         static_cast<int>(across | Qt::AlignVCenter) | Qt::TextDontClip | Qt::TextSingleLine, line);
        top += height;
    }
}

} // namespace lumora
