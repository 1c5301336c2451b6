#include "window/HintBubble.h"

#include "view/PhotoView.h"
#include "widgets/Bubble.h"
#include "widgets/ReadAloud.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <limits>

namespace lumora {

namespace {

constexpr int hintDelay = 250;     // milliseconds: a panel has slid in by then
constexpr int hintFade = 220;      // milliseconds
constexpr int hintRise = 10;       // pixels, while it comes
constexpr int mascotSide = 64;     // pixels
constexpr int hintPadding = 14;    // pixels between the bubble's edge and its text
constexpr int widestText = 250;    // pixels
constexpr int overPhotoText = 180; // pixels, so that it is between two dots of a frame
constexpr int leastText = 104;     // pixels
constexpr int tableMargin = 8;     // pixels to the edge of the table
constexpr double letters = 12;     // points
constexpr double mostHidden = 0.1; // of the bubble, over the photo where it counts as beside it
constexpr char mascot[] = "simple-mode";

int area(const QRect &rect) {
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

} // namespace

// A child of the view and not of its viewport, whose children move with the photo.
HintBubble::HintBubble(PhotoView &view) : QWidget(&view), m_view(view), m_viewport(view.viewport()), m_form{} {
    setObjectName("picHint");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    QFont bold = font();
    bold.setPointSizeF(letters);
    setFont(bold);
    hide();
    m_soon.setSingleShot(true);
    m_soon.setInterval(hintDelay);
    m_fade.setDuration(hintFade);
    m_fade.setStartValue(0.0);
    m_fade.setEndValue(1.0);
    m_fade.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_soon, &QTimer::timeout, this, [this] { fade(true); });
    connect(&m_fade, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(&m_fade, &QVariantAnimation::finished, this, [this] {
        if (m_fade.direction() == QAbstractAnimation::Backward) {
            hide();
        }
    });
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (isVisible()) {
            place();
        }
    });
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this); // before the view, whose tool may have something to say about a press
}

void HintBubble::say(const QString &text, HintedAct act) {
    m_text = text;
    m_act = act;
    m_pressed = false;
    setAccessibleName(text);
    if (isVisible()) {
        place();
        fade(true);
    } else {
        m_soon.start();
    }
}

void HintBubble::dismiss() {
    m_text.clear();
    m_pressed = false;
    m_soon.stop();
    fade(false);
}

void HintBubble::fade(bool in) {
    if (in) {
        place();
        show();
        raise();
        ReadAloud::announce(m_text);
    }
    m_fade.setDirection(in ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    if (!motionWanted()) {
        m_fade.setCurrentTime(in ? hintFade : 0);
        setVisible(in);
    } else if (isVisible() && m_fade.currentValue().toDouble() != (in ? 1.0 : 0.0)) {
        m_fade.start();
    }
}

// --- Place ----------------------------------------------------------------------------------------------------------

/// The bubble, and the mascot at its left or right.
HintBubble::Form HintBubble::rowForm(bool mascotLeft, int textWidth) const {
    const int room = m_view.viewport()->width() - mascotSide - beakLength - 2 * (hintPadding + tableMargin);
    const QSize text =
        fontMetrics().boundingRect(QRect(0, 0, qMin(textWidth, room), 1000), Qt::TextWordWrap, m_text).size();
    const QSize bubble = text + QSize(2 * hintPadding, 2 * hintPadding);
    const int height = qMax(bubble.height(), mascotSide);
    const QSize size(bubble.width() + beakLength + mascotSide + 2 * shadowMargin, height + 2 * shadowMargin);
    Form form{size, QRect(QPoint(shadowMargin, 0), bubble), QRect(0, 0, mascotSide, mascotSide), BubbleSide::Right, {}};
    form.panel.moveTop(shadowMargin + (height - bubble.height()) / 2);
    form.mascot.moveTopLeft({form.panel.right() + 1 + beakLength, shadowMargin + (height - mascotSide) / 2});
    form.tip = {form.panel.right() + beakLength, form.panel.center().y()};
    if (mascotLeft) {
        const auto mirrored = [&](QRect part) {
            part.moveLeft(size.width() - part.right() - 1);
            return part;
        };
        form.panel = mirrored(form.panel);
        form.mascot = mirrored(form.mascot);
        form.side = BubbleSide::Left;
        form.tip.setX(size.width() - form.tip.x());
    }
    return form;
}

/// The bubble above the mascot, for a narrow table; `width` is the bubble's. A word that is wider is not cut.
HintBubble::Form HintBubble::tallForm(int width) const {
    const QRect text = fontMetrics().boundingRect(QRect(0, 0, width - 2 * hintPadding, 1000), Qt::TextWordWrap, m_text);
    const QSize bubble = text.size() + QSize(2 * hintPadding, 2 * hintPadding);
    const int across = qMax(bubble.width(), mascotSide) + 2 * shadowMargin;
    Form form{{across, bubble.height() + beakLength + mascotSide + 2 * shadowMargin},
              QRect(QPoint((across - bubble.width()) / 2, shadowMargin), bubble),
              QRect((across - mascotSide) / 2, 0, mascotSide, mascotSide),
              BubbleSide::Bottom,
              {}};
    form.mascot.moveTop(form.panel.bottom() + 1 + beakLength);
    form.tip = {across / 2, form.panel.bottom() + beakLength};
    return form;
}

void HintBubble::place() {
    const QRect table = m_view.viewport()->geometry();
    const QRect photo = m_view.photoRect().toAlignedRect().translated(table.topLeft()).intersected(table);
    QList<QRect> controls;
    for (const QWidget *each : m_view.findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (each != this && each != m_view.viewport() && each->isVisible() && each->geometry().intersects(table)) {
            controls.append(each->geometry());
        }
    }
    int best = std::numeric_limits<int>::max();
    QPoint corner;
    // The shadow may be over the table's edge, what is seen of the bubble and the mascot not.
    const auto consider = [&](const Form &form, bool left, bool top, bool overPhoto) {
        const QRect seen(0, 0, form.size.width() - 2 * shadowMargin, form.size.height() - 2 * shadowMargin);
        const QRect room = table.adjusted(tableMargin, tableMargin, -tableMargin, -tableMargin);
        QRect at = seen.translated(left ? room.left() : room.right() + 1 - seen.width(),
                                   top ? room.top() : room.bottom() + 1 - seen.height());
        if (overPhoto) { // in the middle of that half of its edge
            const int middle = left ? photo.left() + photo.width() / 4 : photo.right() - photo.width() / 4;
            at.moveLeft(
                qBound(room.left(), middle - seen.width() / 2, qMax(room.left(), room.right() + 1 - seen.width())));
        }
        const int hidden = area(at.intersected(photo));
        if (!overPhoto && hidden > mostHidden * area(seen)) {
            return;
        }
        int cost = overPhoto ? area(seen) : hidden;
        for (const QRect &control : std::as_const(controls)) {
            cost += 10 * area(at.intersected(control));
        }
        if (cost < best) {
            best = cost;
            m_form = form;
            corner = at.topLeft() - QPoint(shadowMargin, shadowMargin);
        }
    };
    const bool leftFirst = window()->isRightToLeft(); // the tool column is at the other side
    for (const bool overPhoto : {false, true}) {
        for (const bool top : {false, true}) {
            for (const bool left : {leftFirst, !leftFirst}) {
                consider(rowForm(left, overPhoto ? overPhotoText : widestText), left, top, overPhoto);
                const int beside = left ? photo.left() - table.left() : table.right() - photo.right();
                if (!overPhoto && beside >= leastText + 2 * (hintPadding + tableMargin)) {
                    consider(tallForm(qMin(beside - 2 * tableMargin, widestText)), left, top, overPhoto);
                }
            }
        }
    }
    setGeometry(QRect(corner, m_form.size));
}

// --- Events ---------------------------------------------------------------------------------------------------------

void HintBubble::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const double seen = m_fade.currentValue().toDouble();
    painter.setOpacity(seen);
    painter.translate(0, (1 - seen) * hintRise);
    paintBubble(painter, m_form.panel, m_form.side, m_form.tip);
    painter.drawPixmap(m_form.mascot, iconPixmap(mascot, mascotSide, devicePixelRatioF()));
    painter.setPen(colours::ink);
    painter.drawText(m_form.panel.adjusted(hintPadding, hintPadding, -hintPadding, -hintPadding),
                     Qt::TextWordWrap | Qt::AlignVCenter | Qt::AlignLeading, m_text);
}

bool HintBubble::eventFilter(QObject *watched, QEvent *event) {
    if (m_text.isEmpty()) {
        return QWidget::eventFilter(watched, event);
    }
    const auto at = [&] { return static_cast<const QMouseEvent *>(event)->position().toPoint(); };
    const bool onPhoto = watched == m_viewport;
    if (onPhoto && event->type() == QEvent::MouseButtonPress) {
        if (m_act == HintedAct::Click) {
            dismiss();
        } else {
            m_pressed = true;
            m_pressedAt = at();
            m_soon.stop();
            fade(false);
        }
    } else if (onPhoto && event->type() == QEvent::MouseButtonRelease && m_pressed) {
        m_pressed = false;
        m_soon.start(); // it was a click, and it is still to be dragged
    }
    const bool isDragged = onPhoto && event->type() == QEvent::MouseMove && m_pressed &&
                           (at() - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
    if (isDragged || (!onPhoto && event->type() == QEvent::KeyPress)) {
        dismiss();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace lumora
