#include "widgets/FloatingToolbar.h"

#include "widgets/Accessibility.h"
#include "widgets/PanelDragger.h"
#include "widgets/Theme.h"

#include <QHash>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace lumora {

namespace {

constexpr int barPadding = 10;    // pixels between the bar's edge and its items
constexpr int itemSpacing = 4;    // pixels between items
constexpr int narrowestItem = 96; // pixels
constexpr int widestItem = 184;   // pixels
constexpr int restTime = 200;     // milliseconds until the pointer counts as resting
constexpr int captionGap = 8;     // pixels between a picture and its word
constexpr int frame = shadowMargin + barPadding;

} // namespace

FloatingToolbar::FloatingToolbar(const QString &name, QWidget *window) : QWidget(window) {
    setObjectName(name);
    setAccessibleRole(*this, QAccessible::ToolBar);
    setCursor(Qt::OpenHandCursor);
    PanelDragger::install(this, {shadowMargin, shadowMargin, shadowMargin, shadowMargin});
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, [this] { point(m_nextPointed); });
    hide();
}

PictureButton *FloatingToolbar::addItem(const QString &key, const QString &iconName) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::Below, this);
    button->setProperty("key", key);
    button->setPictureSize(m_pictureSize);
    button->setCaptionGap(captionGap);
    button->setCursor(Qt::ArrowCursor);
    button->installEventFilter(this);
    connect(button, &QAbstractButton::clicked, this, [this, key] { Q_EMIT itemClicked(key); });
    m_items += button;
    return button;
}

PictureButton *FloatingToolbar::item(const QString &key) const {
    for (PictureButton *button : m_items) {
        if (button->property("key").toString() == key) {
            return button;
        }
    }
    return nullptr;
}

void FloatingToolbar::setItemPicture(const QString &key, const QPixmap &picture) {
    if (PictureButton *button = item(key)) {
        const QSize before = pictureRoom(m_pictureSize);
        button->setPicture(picture);
        if (isVisible() && m_button && pictureRoom(m_pictureSize) != before) {
            place();
        }
    }
}

void FloatingToolbar::setItemEnabled(const QString &key, bool enabled) {
    if (PictureButton *button = item(key)) {
        button->setEnabled(enabled);
    }
}

void FloatingToolbar::setWidthTwips(int width) {
    m_widthTwips = width;
    if (isVisible() && m_button) {
        place();
    }
}

/// The room for the pictures of all items: no higher than the highest of them, so that no air is above the words.
QSize FloatingToolbar::pictureRoom(int side) const {
    int height = 0;
    for (const PictureButton *button : m_items) {
        const QSize picture = button->picture().isNull() ? QSize(side, side) : button->picture().size();
        height = qMax(height, picture.scaled(side, side, Qt::KeepAspectRatio).height());
    }
    return {side, height};
}

void FloatingToolbar::setPictureSize(int pixels) {
    m_pictureSize = pixels;
    for (PictureButton *button : std::as_const(m_items)) {
        button->setPictureSize(pixels);
    }
}

QSize FloatingToolbar::itemSize(int room) const {
    QSize size(narrowestItem, smallestButton);
    for (const PictureButton *button : m_items) {
        size = size.expandedTo(button->sizeHint());
    }
    const int wanted = twips(m_widthTwips);
    if (wanted > 0) {
        // The items share the bar's set width, so that the bar is neither half empty nor ragged.
        const auto count = static_cast<int>(m_items.size());
        const int share = (wanted - 2 * barPadding - (count - 1) * itemSpacing) / count;
        size.setWidth(qBound(narrowestItem, share, widestItem));
    }
    size.setWidth(qMin(size.width(), room));
    size.setHeight(smallestButton);
    for (const PictureButton *button : m_items) {
        size.setHeight(qMax(size.height(), button->heightAt(size.width())));
    }
    return size;
}

void FloatingToolbar::layOut(int room) {
    const auto count = static_cast<int>(m_items.size());
    const QSize cell = itemSize(room);
    const int fitting = qBound(1, (room + itemSpacing) / (cell.width() + itemSpacing), count);
    const int rows = (count + fitting - 1) / fitting;
    m_columns = (count + rows - 1) / rows;
    for (int i = 0; i < count; ++i) {
        const int x = frame + i % m_columns * (cell.width() + itemSpacing);
        const int y = frame + i / m_columns * (cell.height() + itemSpacing);
        m_items[i]->setGeometry(QRect({x, y}, cell));
    }
    resize(2 * frame + m_columns * (cell.width() + itemSpacing) - itemSpacing,
           2 * frame + rows * (cell.height() + itemSpacing) - itemSpacing);
    for (PictureButton *button : std::as_const(m_items)) {
        button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), button->geometry()));
    }
}

bool FloatingToolbar::fitInto(int room, int height) {
    for (const double scale : {1.0, 0.8, 0.6, 0.45}) {
        for (PictureButton *button : std::as_const(m_items)) {
            button->setPictureSize(pictureRoom(qRound(m_pictureSize * scale)));
        }
        layOut(room);
        if (this->height() - 2 * shadowMargin <= height) {
            return true;
        }
    }
    return false;
}

void FloatingToolbar::showBeside(QWidget *button) {
    if (m_items.isEmpty() || parentWidget() == nullptr) {
        return;
    }
    m_button = button;
    setAccessibleName(button->accessibleName());
    place();
    show();
    raise();
    m_items.first()->setFocus(Qt::PopupFocusReason);
}

void FloatingToolbar::place() {
    const QWidget *window = parentWidget();
    const QWidget *button = m_button;
    QRect beside(button->mapTo(window, QPoint(0, 0)), button->size());
    if (m_column) {
        beside.setLeft(m_column->mapTo(window, QPoint(0, 0)).x());
        beside.setWidth(m_column->width());
    }
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const int start = rightToLeft ? window->width() - beside.left() : beside.right() + 1;
    const int around = 2 * barPadding + 8;
    if (!fitInto(qMax(narrowestItem, window->width() - start - around), window->height())) {
        fitInto(window->width() - around, window->height()); // over what it should be beside
    }
    // The panel begins at the button's side; the shadow's margin may cover the button.
    int x = rightToLeft ? beside.left() - 4 - width() + shadowMargin : beside.right() + 5 - shadowMargin;
    int y = beside.center().y() - height() / 2;
    x = qBound(-shadowMargin, x, qMax(-shadowMargin, window->width() - width() + shadowMargin));
    // Where it can, it leaves the status line below the column free.
    const int panelHeight = height() - 2 * shadowMargin;
    const int columnEnd = m_column ? m_column->mapTo(window, QPoint(0, m_column->height())).y() : window->height();
    const int end = panelHeight <= columnEnd ? columnEnd : window->height();
    y = qBound(-shadowMargin, y, qMax(-shadowMargin, end - height() + shadowMargin));
    move(x, y);
}

void FloatingToolbar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRect panel = rect().adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    paintSoftShadow(painter, panel, panelCorner);
    paintPanel(painter, panel, panelCorner);
}

bool FloatingToolbar::moveFocus(int key) {
    const int forward = layoutDirection() == Qt::RightToLeft ? -1 : 1;
    const QHash<int, int> steps = {
        {Qt::Key_Right, forward}, {Qt::Key_Left, -forward}, {Qt::Key_Down, m_columns}, {Qt::Key_Up, -m_columns}};
    const int step = steps.value(key);
    const auto count = static_cast<int>(m_items.size());
    int at = static_cast<int>(m_items.indexOf(qobject_cast<PictureButton *>(focusWidget()))) + step;
    while (step != 0 && at >= 0 && at < count && !m_items[at]->isEnabled()) {
        at += step;
    }
    if (step != 0 && at >= 0 && at < count) {
        m_items[at]->setFocus(Qt::TabFocusReason);
    }
    return step != 0;
}

bool FloatingToolbar::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave) {
        m_nextPointed = event->type() == QEvent::Enter ? watched->property("key").toString() : QString();
        m_rest.start();
    }
    // Before the items see them: a button takes arrow keys for Tab.
    return event->type() == QEvent::KeyPress && moveFocus(static_cast<QKeyEvent *>(event)->key())
               ? true
               : QWidget::eventFilter(watched, event);
}

void FloatingToolbar::point(const QString &key) {
    m_rest.stop();
    if (key != m_pointed) {
        m_pointed = key;
        Q_EMIT itemPointed(key);
    }
}

void FloatingToolbar::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    point({});
    Q_EMIT hidden();
}

void FloatingToolbar::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    hide();
    if (m_button) {
        m_button->setFocus(Qt::PopupFocusReason);
    }
}

} // namespace lumora
