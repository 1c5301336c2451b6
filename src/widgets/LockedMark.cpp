#include "widgets/LockedMark.h"

#include "widgets/Theme.h"

#include <QAbstractButton>
#include <QEvent>
#include <QPainter>

namespace lumora {

namespace {

constexpr int markSize = 22; // pixels
constexpr const char *markName = "locked";

/// A padlock in the corner of a button where its picture is, or behind a text that leaves room for it.
class LockedMark : public QWidget {
  public:
    explicit LockedMark(QWidget &control) : QWidget(&control) {
        setObjectName(markName);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFixedSize(markSize, markSize);
        control.installEventFilter(this);
        place();
    }

    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutDirectionChange) {
            place();
        } else if (event->type() == QEvent::EnabledChange && parentWidget()->isEnabled()) {
            parentWidget()->setEnabled(false); // what enables it knows of no lock
        }
        return false;
    }

  protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.drawPixmap(0, 0, iconPixmap("locked", markSize, devicePixelRatioF()));
    }

  private:
    void place() {
        const QWidget &control = *parentWidget();
        const auto *button = qobject_cast<const QAbstractButton *>(&control);
        const int end = control.width() - markSize - 3;
        if (button != nullptr && !button->isCheckable()) {
            move(control.isRightToLeft() ? end : 3, 3);
            setVisible(true);
        } else {
            move(control.isRightToLeft() ? 3 : end, (control.height() - markSize) / 2);
            setVisible(button != nullptr && control.width() >= control.sizeHint().width() + markSize + 3);
        }
    }
};

} // namespace

void showLocked(QWidget &control, const QString &why) {
    control.setEnabled(false);
    control.setToolTip(why);
    if (control.findChild<QWidget *>(markName, Qt::FindDirectChildrenOnly) == nullptr) {
        new LockedMark(control);
    }
}

} // namespace lumora
