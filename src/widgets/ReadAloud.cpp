#include "widgets/ReadAloud.h"

#include "base/Finger.h"
#include "widgets/Bubble.h"
#include "widgets/Theme.h"
#include "widgets/WidgetAt.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QTabBar>
#include <QTextDocumentFragment>
#include <QWindow>
#include <utility>

namespace lumora {

namespace {

constexpr int focusRestTime = 150; // milliseconds: a key that repeats walks past
constexpr int mostLetters = 600;

ReadAloud *reader = nullptr;

/// Without tags, line breaks, and the signs that are not seen. Some voices would spell what is in capitals.
QString spoken(const QString &text) {
    QString words = Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
    words.removeIf([](QChar letter) { return letter.category() == QChar::Other_Format; });
    words = words.simplified().left(mostLetters);
    return words == QLocale().toUpper(words) ? QLocale().toLower(words) : words;
}

/// The name, and what is told besides where it says more.
QString together(const QString &name, const QString &more) {
    if (name.contains(more, Qt::CaseInsensitive)) {
        return name;
    }
    if (name.isEmpty() || more.contains(name, Qt::CaseInsensitive)) {
        return more;
    }
    return name + (name.back().isPunct() ? " " : ". ") + more;
}

bool hasValue(QAccessible::Role role) {
    return role == QAccessible::Slider || role == QAccessible::SpinBox || role == QAccessible::ComboBox;
}

/// Something that can be named, and where it is on the screen.
struct Thing {
    QString words;
    QRect place;
};

QRect onScreen(const QWidget &widget, const QRect &part) {
    return {widget.mapToGlobal(part.topLeft()), part.size()};
}

/// The entry of a list, the tab or the menu's entry at that place in the widget, or the current one.
Thing partOf(QWidget &widget, const QPoint *at) {
    if (auto *tabs = qobject_cast<QTabBar *>(&widget)) {
        const int tab = at != nullptr ? tabs->tabAt(*at) : tabs->currentIndex();
        return {plainCaption(tabs->tabText(tab)), onScreen(widget, tabs->tabRect(tab))};
    }
    if (auto *menu = qobject_cast<QMenu *>(&widget)) {
        QAction *entry = at != nullptr ? menu->actionAt(*at) : menu->activeAction();
        return entry == nullptr ? Thing{}
                                : Thing{plainCaption(entry->text().section('\t', 0, 0)),
                                        onScreen(widget, menu->actionGeometry(entry))};
    }
    const bool isViewport = at != nullptr && qobject_cast<QAbstractItemView *>(widget.parentWidget()) != nullptr;
    const auto *view = qobject_cast<QAbstractItemView *>(isViewport ? widget.parentWidget() : &widget);
    if (view == nullptr || (isViewport && view->viewport() != &widget)) {
        return {};
    }
    const QModelIndex entry = !isViewport ? view->currentIndex() : view->indexAt(*at);
    const QString name = entry.data(Qt::AccessibleTextRole).toString();
    return {name.isEmpty() ? entry.data().toString() : name, onScreen(*view->viewport(), view->visualRect(entry))};
}

/// The part of the widget at that place, or the widget itself, or the nearest one around it that has a name. A window's
/// own name is not it.
Thing thingAt(QWidget *widget, QPoint at) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        Thing part = partOf(*widget, &at);
        if (!part.words.isEmpty()) {
            return part;
        }
        if (widget->isWindow()) {
            break;
        }
        const QString words = ReadAloud::wordsOf(*widget);
        if (!words.isEmpty()) {
            return {words, onScreen(*widget, widget->rect())};
        }
        at = widget->mapToParent(at);
    }
    return {};
}

} // namespace

ReadAloud::ReadAloud(QObject *parent) : QObject(parent) {
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    connect(&m_rest, &QTimer::timeout, this, &ReadAloud::sayPointed);
    m_focusRest.setSingleShot(true);
    m_focusRest.setInterval(focusRestTime);
    connect(&m_focusRest, &QTimer::timeout, this, &ReadAloud::sayFocused);
    qApp->installEventFilter(this);
    reader = this;
}

ReadAloud::~ReadAloud() {
    reader = nullptr;
}

void ReadAloud::announce(const QString &text) {
    if (reader != nullptr && !text.isEmpty()) {
        reader->m_rest.stop();
        reader->m_focusRest.stop();
        reader->m_sayingName = false;
        reader->say(text);
    }
}

QString ReadAloud::wordsOf(QWidget &control) {
    QAccessibleInterface *thing = QAccessible::queryAccessibleInterface(&control);
    if (thing == nullptr) {
        return {};
    }
    // The toolkit takes a combo box's value for its name, whatever it was given.
    const QString given = control.accessibleName();
    const QString name = spoken(given.isEmpty() ? thing->text(QAccessible::Name) : given);
    const QString value = hasValue(thing->role()) ? spoken(thing->text(QAccessible::Value)) : QString();
    return together(together(name, value), spoken(thing->text(QAccessible::Description)));
}

// --- What happens ---------------------------------------------------------------------------------------------------

bool ReadAloud::eventFilter(QObject *watched, QEvent *event) {
    if (watched->isWindowType()) { // windows get every move of the pointer, their widgets do not
        switch (event->type()) {
        case QEvent::MouseMove:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
            m_under = static_cast<QWindow *>(watched);
            m_pointer = static_cast<QMouseEvent *>(event)->position().toPoint();
            if (event->type() == QEvent::MouseMove) {
                pointerMoved(*static_cast<QMouseEvent *>(event));
            } else {
                pressed(*static_cast<QMouseEvent *>(event));
            }
            break;
        case QEvent::MouseButtonRelease:
            released();
            break;
        case QEvent::KeyPress:
            keyPressed();
            break;
        case QEvent::Leave:
            leave();
            break;
        default:
            break;
        }
    } else if (event->type() == QEvent::Show && watched->isWidgetType()) {
        opened(*static_cast<QWidget *>(watched));
    }
    return QObject::eventFilter(watched, event);
}

void ReadAloud::pointerMoved(const QMouseEvent &event) {
    if (m_named.contains(event.globalPosition().toPoint())) {
        return;
    }
    if (!m_named.isNull()) {
        leave();
    }
    if (event.buttons() == Qt::NoButton) {
        m_rest.start();
    } else if (!m_touching) { // a finger is never quite still
        m_rest.stop();
    }
}

/// What is pressed needs no name until the pointer comes back to it; a finger asks for it by staying.
void ReadAloud::pressed(const QMouseEvent &event) {
    m_focusRest.stop();
    m_focusWords.clear();
    m_touching = isFromFinger(event);
    if (m_touching) {
        leave();
        m_rest.start();
    } else if (const QWidget *window = widgetOf(m_under)) {
        m_rest.stop();
        QWidget *widget = pointedWidget();
        m_named = thingAt(widget, widget->mapFrom(window, m_pointer)).place;
    }
}

void ReadAloud::released() {
    m_rest.stop();
    if (m_heard) { // the finger slides off it
        QMouseEvent away(QEvent::MouseMove, QPointF(-1, -1), m_heard->mapToGlobal(QPointF(-1, -1)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_heard, &away);
    }
    m_heard = nullptr;
    m_touching = false;
}

void ReadAloud::keyPressed() {
    m_rest.stop();
    m_focusRest.start();
}

void ReadAloud::opened(QWidget &widget) {
    if (const auto *bubble = qobject_cast<Bubble *>(&widget)) {
        announce(bubble->label()->text());
    } else if (const auto *box = qobject_cast<QMessageBox *>(&widget)) {
        announce(box->text());
    } else if (qobject_cast<QDialog *>(&widget) != nullptr && widget.isModal()) {
        const QString question = widget.accessibleDescription();
        announce(question.isEmpty() ? widget.windowTitle() : question);
    }
}

// --- What is said ---------------------------------------------------------------------------------------------------

QWidget *ReadAloud::pointedWidget() const {
    return widgetAt(m_under, m_pointer);
}

void ReadAloud::sayPointed() {
    QWidget *widget = pointedWidget();
    if (widget == nullptr) {
        return;
    }
    const Thing thing = thingAt(widget, widget->mapFrom(widget->window(), m_pointer));
    if (thing.words.isEmpty()) {
        return;
    }
    for (QWidget *each = widget; m_touching && m_heard.isNull() && each != nullptr; each = each->parentWidget()) {
        m_heard = qobject_cast<QAbstractButton *>(each);
    }
    m_named = thing.place;
    m_sayingName = true;
    say(thing.words);
}

void ReadAloud::sayFocused() {
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *widget = popup != nullptr && popup->focusWidget() == nullptr ? popup : QApplication::focusWidget();
    if (widget == nullptr) {
        return;
    }
    const Thing part = partOf(*widget, nullptr);
    const QString words = !part.words.isEmpty() ? part.words : widget->isWindow() ? QString() : wordsOf(*widget);
    if (words.isEmpty() || words == m_focusWords) {
        return;
    }
    m_focusWords = words;
    m_sayingName = true;
    say(words);
}

void ReadAloud::leave() {
    m_rest.stop();
    m_named = {};
    if (std::exchange(m_sayingName, false)) {
        Q_EMIT movedOn();
    }
}

void ReadAloud::say(const QString &text) {
    const QString words = spoken(text);
    if (words.isEmpty() || (words == m_words && m_since.isValid() && !m_since.hasExpired(pause))) {
        return;
    }
    m_words = words;
    m_since.start();
    Q_EMIT wordsChosen(words);
}

} // namespace lumora
