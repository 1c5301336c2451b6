#include "widgets/PictureButton.h"

#include "widgets/FittedText.h"
#include "widgets/Theme.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>

namespace lumora {

namespace {

constexpr int padding = 8;       // pixels between edge and picture
constexpr int captionMargin = 3; // pixels between edge and a caption below the picture
constexpr int gap = 4;           // pixels between picture and a caption beside it
constexpr int mostCaptionLines = 2;
constexpr int widestCaption = 132; // pixels: a longer caption below its picture wraps
constexpr int tightness = 72;      // per cent of the font's line height: descenders do not touch the next line

} // namespace

PictureButton::PictureButton(QWidget *parent) : QAbstractButton(parent), m_leastSide(smallestButton) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

PictureButton::PictureButton(const QString &iconName, CaptionPlace place, QWidget *parent) : PictureButton(parent) {
    m_iconName = iconName;
    m_captionPlace = place;
}

void PictureButton::setIconName(const QString &name) {
    m_iconName = name;
    update();
}

void PictureButton::setPicture(const QPixmap &picture) {
    m_picture = picture;
    update();
}

void PictureButton::setPictureSize(QSize pixels) {
    m_pictureSize = pixels.expandedTo({16, 16}).boundedTo({512, 512});
    updateGeometry();
    update();
}

void PictureButton::setCaptionPlace(CaptionPlace place) {
    m_captionPlace = place;
    updateGeometry();
    update();
}

void PictureButton::setLeastSide(int pixels) {
    m_leastSide = pixels;
    updateGeometry();
}

void PictureButton::setCaptionGap(int pixels) {
    m_gap = pixels;
    updateGeometry();
    update();
}

void PictureButton::setLook(Look look) {
    m_look = look;
    update();
}

void PictureButton::setHoverColour(const QColor &colour) {
    m_hoverColour = colour;
    update();
}

QColor PictureButton::hoverColour() const {
    return m_hoverColour.isValid() ? m_hoverColour : colours::hover;
}

QSize PictureButton::sizeHint() const {
    QSize size = m_pictureSize + QSize(2 * padding, 2 * padding);
    if (captionShown()) {
        const int wide = fontMetrics().horizontalAdvance(plainCaption(text())) + 2;
        if (m_captionPlace == CaptionPlace::Beside) {
            size.rwidth() += wide + gap + 2 * padding;
        } else {
            size.setWidth(qMax(size.width(), qMin(wide, widestCaption) + 2 * captionMargin));
            size.setHeight(heightAt(size.width()));
        }
    }
    return size.expandedTo({m_leastSide, m_leastSide});
}

QSize PictureButton::minimumSizeHint() const {
    QSize size = m_pictureSize + QSize(2 * padding, 2 * padding);
    if (captionShown() && m_captionPlace == CaptionPlace::Below) {
        size.setHeight(sizeHint().height());
    }
    return size.expandedTo({m_leastSide, m_leastSide});
}

int PictureButton::heightAt(int width) const {
    int height = m_pictureSize.height() + 2 * padding;
    if (captionShown() && m_captionPlace == CaptionPlace::Below) {
        const auto lines = captionLines(width - 2 * captionMargin, captionFont(width - 2 * captionMargin)).size();
        height += m_gap + static_cast<int>(lines) * fontMetrics().height();
    }
    return qMax(height, m_leastSide);
}

int PictureButton::leastHeightAt(int width) const {
    const int caption = heightAt(width) - m_pictureSize.height() - 2 * padding - m_gap; // none where this is negative
    return heightAt(width) - qMax(0, caption) * (100 - tightness) / 100;
}

bool PictureButton::event(QEvent *event) {
    switch (event->type()) {
    case QEvent::ToolTip:
        return showTip(static_cast<QHelpEvent *>(event)->globalPos());
    case QEvent::ToolTipChange:
        if (text().isEmpty()) {
            setAccessibleName(plainCaption(toolTip()));
        }
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

bool PictureButton::showTip(const QPoint &globalPosition) {
    QString tip = plainCaption(toolTip());
    if (tip.isEmpty()) {
        tip = isCaptionWhole() && captionShown() ? QString() : plainCaption(text());
    }
    QToolTip::showText(globalPosition, tip, this);
    return true;
}

void PictureButton::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

PictureButton::Places PictureButton::places() const {
    const QRect inside = rect().adjusted(padding, padding, -padding, -padding);
    if (!captionShown()) {
        return {inside, {}};
    }
    if (m_captionPlace == CaptionPlace::Beside) {
        const QRect picture(inside.topLeft(), QSize(m_pictureSize.width(), inside.height()));
        const QRect caption = inside.adjusted(m_pictureSize.width() + gap + padding, 0, 0, 0);
        return {QStyle::visualRect(layoutDirection(), rect(), picture),
                QStyle::visualRect(layoutDirection(), rect(), caption)};
    }
    // Two lines are kept free below the picture, so that the pictures of a row are level whatever their captions.
    const QRect across = rect().adjusted(captionMargin, padding, -captionMargin, -padding);
    const int lineHeight = fontMetrics().height();
    const int captionHeight =
        static_cast<int>(captionLines(across.width(), captionFont(across.width())).size()) * lineHeight;
    const int spare = across.height() - m_pictureSize.height() - m_gap - mostCaptionLines * lineHeight;
    // In a lower button the lines move together before the picture becomes smaller.
    const int room = across.height() - m_gap - m_pictureSize.height();
    const int lines = qMax(captionHeight * tightness / 100, qMin(captionHeight, room));
    const int pictureHeight = qMin(m_pictureSize.height(), across.height() - m_gap - lines);
    const QRect picture(across.left(), across.top() + qMax(0, spare / 2), across.width(), pictureHeight);
    return {picture, QRect(across.left(), picture.bottom() + 1 + m_gap, across.width(), lines)};
}

bool PictureButton::isCaptionWhole() const {
    const int width = places().caption.width();
    return !captionShown() || isWhole(captionLines(width, captionFont(width)));
}

bool PictureButton::isWhole(const QStringList &lines) const {
    return lines.join(QString()).remove(' ') == plainCaption(text()).remove(' ');
}

QFont PictureButton::captionFont(int width) const {
    QFont letters = font();
    if (!isWhole(captionLines(width, letters)) && letters.pointSizeF() > 0) {
        letters.setPointSizeF(letters.pointSizeF() * smallestLetters);
    }
    return letters;
}

QStringList PictureButton::captionLines(int width, const QFont &letters) const {
    QString caption = plainCaption(text());
    const QFontMetrics metrics(letters);
    if (m_captionPlace == CaptionPlace::Beside && metrics.horizontalAdvance(caption) <= width) {
        return {caption};
    }
    caption.replace('/', QStringLiteral("/\u200B")); // a line may end after a stroke
    const auto broken = [&](const QString &words) {
        QTextLayout layout(words, letters);
        QStringList lines;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            const bool last = lines.size() + 1 == mostCaptionLines;
            QString rest = words.mid(line.textStart(), last ? -1 : line.textLength()).trimmed();
            rest.remove(u'\u200B').remove(wordJoiner);
            lines += metrics.elidedText(rest, Qt::ElideRight, width);
            if (last) {
                break;
            }
        }
        layout.endLayout();
        return lines;
    };
    const QStringList lines = broken(brokenAtBlanks(caption));
    return isWhole(lines) ? lines : broken(caption);
}

QPixmap PictureButton::currentPicture(QSize size, qreal devicePixelRatio) const {
    if (m_picture.isNull()) {
        return iconPixmap(m_iconName, qMin(size.width(), size.height()), devicePixelRatio);
    }
    QPixmap fitted = m_picture.scaled(size * devicePixelRatio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    fitted.setDevicePixelRatio(devicePixelRatio);
    return fitted;
}

void PictureButton::paintSurface(QPainter &painter) const {
    QColor surface = m_look == Look::Raised ? colours::paper : QColor(Qt::transparent);
    QColor edge = m_look == Look::Raised ? colours::line : QColor(Qt::transparent);
    constexpr qreal edgeWidth = 2;
    if (isEnabled() && isDown()) {
        surface = colours::pressed;
        edge = colours::litEdge;
    } else if (isEnabled() && underMouse()) {
        surface = hoverColour();
        edge = surface.alpha() == 255 ? colours::litEdge : QColor(surface.rgb());
    } else if (isChecked()) { // filled: an edge is what the keyboard has
        surface = colours::checked;
        edge = colours::checkedEdge;
    }
    if (!isEnabled() && m_look == Look::Raised) {
        surface = colours::parchment;
    }
    painter.setPen(QPen(edge, edgeWidth));
    painter.setBrush(surface);
    const qreal inset = edgeWidth / 2;
    const QRectF box = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    painter.drawRoundedRect(box, buttonCorner, buttonCorner);
}

void PictureButton::paintCaption(QPainter &painter, const QRect &place) const {
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
    const QFont letters = captionFont(place.width());
    const QStringList lines = captionLines(place.width(), letters);
    painter.setFont(letters);
    // Beside a picture two lines move together until they fit the button.
    const int height = qMin(fontMetrics().height(), place.height() / static_cast<int>(lines.size()));
    int top = place.top() + (place.height() - height * static_cast<int>(lines.size())) / 2;
    const auto across = m_captionPlace == CaptionPlace::Beside
                            ? QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)
                            : Qt::Alignment(Qt::AlignHCenter);
    for (const QString &line : lines) {
        painter.drawText(QRect(place.left(), top, place.width(), height),
                         static_cast<int>(across | Qt::AlignVCenter) | Qt::TextDontClip, line);
        top += height;
    }
}

void PictureButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paintSurface(painter);
    if (isDown()) {
        painter.translate(0, 1);
    }
    const Places place = places();
    QPixmap picture = currentPicture(m_pictureSize.boundedTo(place.picture.size()), devicePixelRatioF());
    if (!isEnabled()) {
        picture = disabledPixmap(picture);
    }
    QRectF target({}, picture.deviceIndependentSize());
    target.moveCenter(QRectF(place.picture).center());
    painter.drawPixmap(target.topLeft().toPoint(), picture);
    if (captionShown()) {
        paintCaption(painter, place.caption);
    }
}

} // namespace lumora
