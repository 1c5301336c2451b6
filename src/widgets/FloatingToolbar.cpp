#include "widgets/FloatingToolbar.h"

#include "widgets/Theme.h"

#include <QHash>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace lumora {

namespace {

constexpr int padding = 10;       // pixels between the bar's edge and its items
constexpr int spacing = 4;        // pixels between items
constexpr int narrowestItem = 96; // pixels
constexpr int widestItem = 184;   // pixels
constexpr int frame = shadowMargin + padding;

} // namespace

FloatingToolbar::FloatingToolbar(const QString &name, QWidget *window) : QWidget(window) {
    setObjectName(name);
    hide();
}

PictureButton *FloatingToolbar::addItem(const QString &key, const QString &iconName) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::Below, this);
    button->setProperty("key", key);
    button->setPictureSize(m_pictureSize);
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
        button->setPicture(picture);
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
        showBeside(m_button);
    }
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
        const int share = (wanted - 2 * padding - (count - 1) * spacing) / count;
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
    const int fitting = qBound(1, (room + spacing) / (cell.width() + spacing), count);
    const int rows = (count + fitting - 1) / fitting;
    m_columns = (count + rows - 1) / rows;
    for (int i = 0; i < count; ++i) {
        const int x = frame + i % m_columns * (cell.width() + spacing);
        const int y = frame + i / m_columns * (cell.height() + spacing);
        m_items[i]->setGeometry(QRect({x, y}, cell));
    }
    resize(2 * frame + m_columns * (cell.width() + spacing) - spacing,
           2 * frame + rows * (cell.height() + spacing) - spacing);
    for (PictureButton *button : std::as_const(m_items)) {
        button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), button->geometry()));
    }
}

void FloatingToolbar::showBeside(QWidget *button) {
    const QWidget *window = parentWidget();
    if (m_items.isEmpty() || !window) {
        return;
    }
    m_button = button;
    const QRect beside(button->mapTo(window, QPoint(0, 0)), button->size());
    const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
    const int start = rightToLeft ? window->width() - beside.left() : beside.right() + 1;
    layOut(qMax(narrowestItem, window->width() - start - 2 * padding - 8));
    // The panel begins at the button's side; the shadow's margin may cover the button.
    int x = rightToLeft ? beside.left() - 4 - width() + shadowMargin : beside.right() + 5 - shadowMargin;
    int y = beside.center().y() - height() / 2;
    x = qBound(-shadowMargin, x, qMax(-shadowMargin, window->width() - width() + shadowMargin));
    y = qBound(-shadowMargin, y, qMax(-shadowMargin, window->height() - height() + shadowMargin));
    move(x, y);
    show();
    raise();
    m_items.first()->setFocus(Qt::PopupFocusReason);
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
    // Before the items see them: a button takes arrow keys for Tab.
    return event->type() == QEvent::KeyPress && moveFocus(static_cast<QKeyEvent *>(event)->key())
               ? true
               : QWidget::eventFilter(watched, event);
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
