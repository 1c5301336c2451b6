#include "widgets/Accessibility.h"

#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"
#include "widgets/Theme.h"

#include <QAccessibleWidget>
#include <QButtonGroup>
#include <QFrame>
#include <QLabel>
#include <QScrollArea>
#include <QVariant>

namespace lumora {

namespace {

constexpr const char *roleProperty = "accessibleRole";

/// A control with the role that setAccessibleRole or its class gives it.
class RoleReader : public QAccessibleWidget {
  public:
    using QAccessibleWidget::QAccessibleWidget;

    /// Without a tool tip that only repeats the name. A row of tabs has the name of what it is in.
    QString text(QAccessible::Text kind) const override {
        const QString said = QAccessibleWidget::text(kind);
        if (kind == QAccessible::Description && said == text(QAccessible::Name)) {
            return {};
        }
        QAccessibleInterface *around = role() == QAccessible::PageTabList ? parent() : nullptr;
        return kind == QAccessible::Name && said.isEmpty() && around != nullptr ? nameAround(around) : said;
    }

  private:
    static QString nameAround(QAccessibleInterface *around) {
        QString name;
        for (; around != nullptr && name.isEmpty(); around = around->parent()) {
            name = around->text(QAccessible::Name);
        }
        return name;
    }
};

class PanelReader : public RoleReader {
  public:
    explicit PanelReader(SlidingPanel *panel) : RoleReader(panel, QAccessible::Grouping), m_panel(panel) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_panel->titleLabel()->text() : RoleReader::text(kind);
    }

  private:
    SlidingPanel *m_panel;
};

bool isOneOfSeveral(const QAbstractButton &button) {
    return button.isCheckable() &&
           (button.autoExclusive() || (button.group() != nullptr && button.group()->exclusive()));
}

class ButtonReader : public RoleReader {
  public:
    explicit ButtonReader(PictureButton *button) : RoleReader(button), m_button(button) {}

    QAccessible::Role role() const override {
        const QVariant set = m_button->property(roleProperty);
        return set.isValid()               ? static_cast<QAccessible::Role>(set.toInt())
               : isOneOfSeveral(*m_button) ? QAccessible::RadioButton
               : m_button->isCheckable()   ? QAccessible::CheckBox
                                           : QAccessible::PushButton;
    }

    QAccessible::State state() const override {
        QAccessible::State state = RoleReader::state();
        state.checkable = m_button->isCheckable();
        state.checked = m_button->isChecked();
        state.pressed = m_button->isDown();
        if (role() == QAccessible::PageTab) {
            state.selectable = true;
            state.selected = m_button->isChecked();
        }
        return state;
    }

    /// What is written on the button and is not its name (the zoom) is its description.
    QString text(QAccessible::Text kind) const override {
        QString said = RoleReader::text(kind);
        const QString caption = plainCaption(m_button->text());
        if (!said.isEmpty() || (kind != QAccessible::Name && kind != QAccessible::Description)) {
            return said;
        }
        return kind == QAccessible::Name || caption != text(QAccessible::Name) ? caption : QString();
    }

    QStringList actionNames() const override {
        QStringList names;
        if (m_button->isEnabled()) {
            names += m_button->isCheckable() ? toggleAction() : pressAction();
        }
        return names + RoleReader::actionNames();
    }

    void doAction(const QString &name) override {
        if (name != pressAction() && name != toggleAction()) {
            RoleReader::doAction(name);
        } else if (m_button->isEnabled()) {
            m_button->animateClick(); // later: a dialog that it opens would keep the screen reader waiting
        }
    }

  private:
    PictureButton *m_button;
};

/// A QFrame or one of Lumora's own made of it, which would be said to be the frame of a window.
bool isPlainFrame(const QWidget &widget) {
    const QMetaObject *kind = widget.metaObject();
    while (QByteArrayView(kind->className()).startsWith("lumora::")) {
        kind = kind->superClass();
    }
    return kind == &QFrame::staticMetaObject;
}

QAccessible::Role roleOf(const QWidget &widget) {
    const QVariant set = widget.property(roleProperty);
    if (set.isValid()) {
        return static_cast<QAccessible::Role>(set.toInt());
    }
    if (isPlainFrame(widget)) {
        return widget.children().isEmpty() ? QAccessible::Separator : QAccessible::Client;
    }
    if (qobject_cast<const QScrollArea *>(&widget) != nullptr) {
        return QAccessible::Client; // Qt's own class crashes (6.4) when asked for a scroll bar that has just gone
    }
    const bool isOwnWindow =
        widget.windowType() == Qt::Window && widget.windowFlags().testFlag(Qt::FramelessWindowHint);
    return isOwnWindow ? QAccessible::Window : QAccessible::NoRole;
}

QAccessibleInterface *makeReader(const QString &, QObject *object) {
    if (auto *button = qobject_cast<PictureButton *>(object)) {
        return new ButtonReader(button);
    }
    if (auto *panel = qobject_cast<SlidingPanel *>(object)) {
        return new PanelReader(panel);
    }
    auto *widget = qobject_cast<QWidget *>(object);
    const QAccessible::Role role = widget != nullptr ? roleOf(*widget) : QAccessible::NoRole;
    return role != QAccessible::NoRole ? new RoleReader(widget, role) : nullptr;
}

} // namespace

void installAccessibility() {
    QAccessible::installFactory(makeReader);
}

void setAccessibleRole(QWidget &control, QAccessible::Role role) {
    control.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace lumora
