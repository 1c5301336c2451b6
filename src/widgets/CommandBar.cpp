#include "widgets/CommandBar.h"

#include "widgets/Theme.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <algorithm>

namespace lumora {

namespace {

constexpr int spacing = 2;          // pixels between buttons
constexpr int separatorWidth = 2;   // pixels
constexpr int separatorHeight = 32; // pixels
constexpr int separatorMargin = 4;  // pixels, part of the separator: where it is hidden there is no gap

} // namespace

CommandBar::CommandBar(const QString &name, QWidget *parent) : QWidget(parent), m_row(new QHBoxLayout(this)) {
    setObjectName(name);
    m_row->setContentsMargins(0, 0, 0, 0);
    m_row->setSpacing(spacing);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

PictureButton *CommandBar::addButton(int number, const QString &key, const QString &iconName) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::None, this);
    button->setProperty("key", key);
    connect(button, &QAbstractButton::clicked, this, [this, key] { Q_EMIT buttonClicked(key); });
    m_row->addWidget(button);
    m_items.insert(number, {button, true, false});
    showItems();
    return button;
}

void CommandBar::addSeparator(int number) {
    auto *separator = new QFrame(this);
    separator->setFixedSize(separatorWidth + 2 * separatorMargin, separatorHeight);
    setThemedSheet(*separator,
                   QStringLiteral("background: @line; border-radius: 1px; margin: 0px %1px").arg(separatorMargin));
    m_row->addWidget(separator);
    m_items.insert(number, {separator, true, true});
    showItems();
}

void CommandBar::setTight(int buttonWidth) {
    m_tight = buttonWidth > 0;
    m_row->setSpacing(m_tight ? 0 : spacing);
    for (const Item &item : std::as_const(m_items)) {
        if (!item.separator) {
            item.widget->setMinimumWidth(buttonWidth);
            item.widget->setMaximumWidth(m_tight ? buttonWidth : QWIDGETSIZE_MAX);
        }
    }
    showItems();
}

void CommandBar::setButtonSize(int side, int picture) {
    for (const Item &item : std::as_const(m_items)) {
        if (auto *button = qobject_cast<PictureButton *>(item.widget)) {
            button->setLeastSide(side);
            button->setPictureSize(picture);
        }
    }
}

int CommandBar::buttonsShown() const {
    return static_cast<int>(
        std::ranges::count_if(m_items, [](const Item &item) { return item.on && !item.separator; }));
}

void CommandBar::setButtonOn(int number, bool on) {
    const auto item = m_items.find(number);
    if (item != m_items.end()) {
        item->on = on;
        showItems();
    }
}

bool CommandBar::isButtonOn(int number) const {
    return m_items.value(number).widget && m_items.value(number).on;
}

void CommandBar::showItems() {
    QWidget *waiting = nullptr; // a separator that shows once a button follows it
    bool buttonBefore = false;
    for (const Item &item : std::as_const(m_items)) {
        if (item.separator) {
            item.widget->hide();
            waiting = item.on && buttonBefore && !m_tight ? item.widget : waiting;
            continue;
        }
        item.widget->setVisible(item.on);
        if (item.on) {
            buttonBefore = true;
            if (waiting) {
                waiting->show();
                waiting = nullptr;
            }
        }
    }
}

void CommandBar::setButtonEnabled(const QString &key, bool enabled) {
    if (PictureButton *found = button(key)) {
        if (!enabled && found->hasFocus()) {
            found->clearFocus(); // else a neighbour gets it, and a second press of the same key would do something else
        }
        found->setEnabled(enabled);
    }
}

PictureButton *CommandBar::button(const QString &key) const {
    for (const Item &item : m_items) {
        if (!item.separator && item.widget->property("key").toString() == key) {
            return static_cast<PictureButton *>(item.widget);
        }
    }
    return nullptr;
}

void CommandBar::mousePressEvent(QMouseEvent *event) {
    Q_EMIT barClicked();
    QWidget::mousePressEvent(event);
}

} // namespace lumora
