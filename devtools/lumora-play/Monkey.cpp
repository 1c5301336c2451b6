#include "Monkey.h"

#include "Controls.h"
#include "Desktop.h"
#include "Hand.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QTabBar>
#include <array>

namespace lumora::play {

namespace {

constexpr int pressesToRest = 12; // Esc, until it counts as a program that does not come to rest
constexpr int reach = 60;         // pixels that a drag may end beyond the view
constexpr int edgeWidth = 4;      // pixels on either side of the photo's edge that count as on it
const QKeyCombination selectAll = Qt::ControlModifier | Qt::Key_A;

constexpr std::array keys = {"Escape", "Return", "Tab",    "Shift+Tab", "Left", "Right", "Up",
                             "Down",   "Ctrl+Z", "Ctrl+Y", "+",         "-",    "Space", "Shift+Left"};
constexpr std::array sliderKeys = {Qt::Key_Home,     Qt::Key_End, Qt::Key_PageUp,
                                   Qt::Key_PageDown, Qt::Key_Up,  Qt::Key_Down};
constexpr std::array texts = {"", "0", "7", "45", "640", "5001", "99999", "-12", "3.5", "abc"};
/// Everywhere also what a field for a name or a message may get.
constexpr std::array moreTexts = {"",
                                  "0",
                                  "7",
                                  "45",
                                  "640",
                                  "99999",
                                  "-12",
                                  "abc",
                                  "my / picture?",
                                  "\xc3\x96zg\xc3\xbcr \xe2\x98\xba",
                                  "a text that is much longer than any field of any window can ever show at once"};
constexpr std::array addresses = {"", "gran", "gran@home.example", "gran@home.example;dad@work.example"};
constexpr std::array wheelTurns = {-3, -1, 1, 3};

/// Scroll bars are worked with the photo, or they would be half of all controls.
bool isControl(const QWidget &widget) {
    const QWidget *parent = widget.parentWidget();
    const bool isPart =
        qobject_cast<const QAbstractSpinBox *>(parent) != nullptr || qobject_cast<const QComboBox *>(parent) != nullptr;
    return !isPart && qobject_cast<const QScrollBar *>(&widget) == nullptr &&
           (qobject_cast<const QAbstractButton *>(&widget) != nullptr ||
            qobject_cast<const QAbstractSlider *>(&widget) != nullptr ||
            qobject_cast<const QAbstractSpinBox *>(&widget) != nullptr ||
            qobject_cast<const QComboBox *>(&widget) != nullptr ||
            qobject_cast<const QLineEdit *>(&widget) != nullptr ||
            qobject_cast<const QAbstractItemView *>(&widget) != nullptr ||
            qobject_cast<const QTabBar *>(&widget) != nullptr);
}

/// As a script would call it.
QString called(const QWidget &control) {
    const QString key = control.property("key").toString();
    if (key.isEmpty()) {
        return nameOf(control);
    }
    const QWidget *bar = control.parentWidget();
    while (bar->objectName().isEmpty() && bar->parentWidget() != nullptr) {
        bar = bar->parentWidget();
    }
    return nameOf(*bar) + '.' + key;
}

QString said(const QPoint &point) {
    return QString("%1,%2").arg(point.x()).arg(point.y());
}

/// The child of the window that the control is in.
const QWidget *groupOf(const QWidget &control, const QWidget &window) {
    const QWidget *group = &control;
    while (group->parentWidget() != &window && group->parentWidget() != nullptr) {
        group = group->parentWidget();
    }
    return group;
}

QRect photoOn(const Program &program) {
    const QSize size = program.picture().size();
    return {program.onCanvas({0, 0}), program.onCanvas({size.width() - 1, size.height() - 1})};
}

QPoint held(QPoint point, const QRect &area) {
    return {qBound(area.left(), point.x(), area.right()), qBound(area.top(), point.y(), area.bottom())};
}

} // namespace

Monkey::Monkey(Program &program, Hand &hand, unsigned seed, int count, const QString &folder)
    : m_program(program), m_hand(hand), m_dice(seed), m_count(count), m_folder(folder),
      m_walk(folder.isEmpty() ? Walk::Photo : Walk::Everywhere), m_action("before the first"),
      m_order(program.orderCheck(m_walk)) {
    if (m_walk == Walk::Everywhere) {
        m_files = QDir(folder).entryList(QDir::Files, QDir::Name);
    }
}

QString Monkey::report(const QString &reason) const {
    return QString("action %1 (%2): %3").arg(m_number).arg(m_action, reason);
}

QString Monkey::problem() const {
    if (m_program.isMoving()) {
        return report("something is still moving");
    }
    if (m_program.picture().isNull()) {
        return report("the photo is gone");
    }
    if (m_number >= m_count + pressesToRest && !isDone()) {
        return report("it does not come to rest");
    }
    const QString disorder = m_order();
    return disorder.isEmpty() ? QString() : report(disorder);
}

bool Monkey::isDone() const {
    return m_number >= m_count && QApplication::activePopupWidget() == nullptr &&
           QApplication::activeModalWidget() == nullptr && m_program.isAtRest() &&
           (m_walk == Walk::Photo || keyboardWindow() == m_program.canvas()->window());
}

QString Monkey::act() {
    ++m_number;
    QWidget *window = keyboardWindow();
    QWidget *popup = QApplication::activePopupWidget();
    QWidget *canvas = m_program.canvas();
    activate(*window);
    const int kind = upTo(20);
    const int leaves = m_walk == Walk::Photo ? 4 : 2; // of 20 actions in a modal window
    auto *files = qobject_cast<QFileDialog *>(window);
    if (m_number > m_count || (window->isModal() && kind < leaves)) {
        m_hand.press(*window, Qt::Key_Escape);
        m_action = "key Escape";
    } else if (popup != nullptr) {
        m_action = workPopup(*popup);
    } else if (files != nullptr && !m_files.isEmpty()) {
        m_action = answer(*files);
    } else if (m_walk == Walk::Everywhere && upTo(20) == 0) {
        m_action = goElsewhere(*window);
    } else if (kind < 12 || window->isModal()) {
        m_action = workControl(*window);
    } else if (kind < 17 && canvas != nullptr && canvas->window() == window) {
        m_action = workPhoto(*window, *canvas);
    } else {
        m_action = pressKey(*window);
    }
    if (window->isModal()) {
        m_action += " in " + nameOf(*window);
    }
    return QString("%1: %2").arg(m_number).arg(m_action);
}

/// An item of the menu or list that is open, or Esc.
QString Monkey::workPopup(QWidget &popup) {
    const bool escapes = upTo(4) == 0;
    if (auto *menu = qobject_cast<QMenu *>(&popup); menu != nullptr && !escapes) {
        QList<QAction *> items;
        for (QAction *action : menu->actions()) {
            if (action->isVisible() && action->isEnabled() && !action->isSeparator()) {
                items << action;
            }
        }
        if (!items.isEmpty()) {
            QAction *item = oneOf(items);
            m_hand.click(*menu, menu->actionGeometry(item).center());
            return QString("item %1 %2").arg(nameOf(*menu), withoutMnemonic(item->text()));
        }
    }
    if (auto *list = popup.findChild<QAbstractItemView *>(); list != nullptr && !escapes) {
        const QPoint point = anywhere(list->viewport()->rect());
        m_hand.click(*list->viewport(), point);
        return QString("click %1 at %2").arg(nameOf(*list), said(point));
    }
    m_hand.press(popup, Qt::Key_Escape);
    return "key Escape";
}

// --- Controls -------------------------------------------------------------------------------------------------------

bool Monkey::isLeftAlone(const QWidget *widget, Walk walk) const {
    while (widget != nullptr && !m_program.isLeftAlone(*widget, walk)) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

std::vector<std::vector<QWidget *>> Monkey::reachableControls(const QWidget &window) const {
    std::vector<std::vector<QWidget *>> groups;
    const QWidget *last = nullptr;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        QPoint point;
        if (widget->window() == &window && isControl(*widget) && widget->isVisible() && widget->isEnabled() &&
            !isLeftAlone(widget, m_walk) && findClickPoint(*widget, point)) {
            const QWidget *group = groupOf(*widget, window);
            if (group != last) {
                groups.emplace_back();
                last = group;
            }
            groups.back().push_back(widget);
        }
    }
    return groups;
}

QString Monkey::workControl(QWidget &window) {
    const auto groups = reachableControls(window);
    if (groups.empty()) {
        return pressKey(window);
    }
    // What was raised last comes last: a bar or a panel that has just opened is tried more often than the rest.
    const std::vector<QWidget *> &group = upTo(2) == 0 ? groups.back() : oneOf(groups);
    const std::vector<QWidget *> &others = oneOf(groups);
    return work(*oneOf(group), others);
}

QString Monkey::work(QWidget &control, const std::vector<QWidget *> &others) {
    if (auto *slider = qobject_cast<QAbstractSlider *>(&control)) {
        return slide(*slider);
    }
    if (qobject_cast<QLineEdit *>(&control) != nullptr || qobject_cast<QAbstractSpinBox *>(&control) != nullptr) {
        return write(control);
    }
    if (auto *list = qobject_cast<QAbstractItemView *>(&control)) {
        const QPoint point = anywhere(list->viewport()->rect());
        m_hand.click(*list->viewport(), point);
        return QString("click %1 at %2").arg(called(control), said(point));
    }
    return press(control, others);
}

QString Monkey::slide(QAbstractSlider &slider) {
    const QPoint from = anywhere(slider.rect());
    const QPoint to = anywhere(slider.rect());
    switch (upTo(3)) {
    case 0: {
        const Qt::Key key = oneOf(sliderKeys);
        m_hand.click(slider, from);
        m_hand.press(*slider.window(), key);
        return QString("click %1 at %2, key %3")
            .arg(called(slider), said(from), QKeySequence(key).toString(QKeySequence::PortableText));
    }
    case 1:
        m_hand.click(slider, from);
        return QString("click %1 at %2").arg(called(slider), said(from));
    default:
        m_hand.drag(slider, {from, to});
        return QString("drag %1 from %2 to %3").arg(called(slider), said(from), said(to));
    }
}

QString Monkey::write(QWidget &field) {
    const bool isAddress = m_walk == Walk::Everywhere && field.objectName().contains("Address");
    const QString text = QString::fromUtf8(m_walk == Walk::Photo ? oneOf(texts)
                                           : isAddress           ? oneOf(addresses)
                                                                 : oneOf(moreTexts));
    QPoint point;
    findClickPoint(field, point);
    m_hand.click(field, point);
    m_hand.press(*field.window(), selectAll);
    if (text.isEmpty()) {
        m_hand.press(*field.window(), Qt::Key_Delete);
    }
    m_hand.type(*field.window(), text);
    const int end = upTo(3);
    if (end > 0) {
        m_hand.press(*field.window(), end == 1 ? Qt::Key_Return : Qt::Key_Tab);
    }
    return QString("type %1 \"%2\"%3").arg(called(field), text, end == 0 ? "" : end == 1 ? ", Return" : ", Tab");
}

/// A click; now and then a double click, or a click with another one so soon after it that nothing has settled.
QString Monkey::press(QWidget &control, const std::vector<QWidget *> &others) {
    QPoint point;
    findClickPoint(control, point);
    const int way = upTo(10);
    if (way == 0) {
        m_hand.doubleClick(control, point);
        return "double click " + called(control);
    }
    m_hand.click(control, point);
    QWidget *next = oneOf(others);
    if (way == 1 && next != &control && findClickPoint(*next, point)) {
        m_hand.click(*next, point);
        return QString("click %1, at once click %2").arg(called(control), called(*next));
    }
    return "click " + called(control);
}

// --- Photo ----------------------------------------------------------------------------------------------------------

QPoint Monkey::anywhere(const QRect &area) {
    const int x = upTo(qMax(1, area.width()));
    const int y = upTo(qMax(1, area.height()));
    return area.topLeft() + QPoint(x, y);
}

/// A point of the canvas: on the photo, at its edge, or anywhere.
QPoint Monkey::onPhoto(const QWidget &canvas) {
    const QRect photo = photoOn(m_program);
    const QPoint inside = anywhere(photo.intersected(canvas.rect()));
    const int off = upTo(2 * edgeWidth + 1) - edgeWidth;
    switch (upTo(8)) {
    case 0:
        return held({upTo(2) == 0 ? photo.left() + off : photo.right() + off, inside.y()}, canvas.rect());
    case 1:
        return held({inside.x(), upTo(2) == 0 ? photo.top() + off : photo.bottom() + off}, canvas.rect());
    case 2:
        return anywhere(canvas.rect());
    default:
        return held(inside, canvas.rect());
    }
}

QString Monkey::workPhoto(QWidget &window, QWidget &canvas) {
    const QPoint from = onPhoto(canvas);
    const QWidget *hit = window.childAt(canvas.mapTo(&window, from));
    if (hit == nullptr || (hit != &canvas && !canvas.isAncestorOf(hit))) {
        return pressKey(window); // a panel or a bar is there
    }
    const QString at = QString(" the photo at %1").arg(said(from));
    switch (upTo(13)) {
    case 12:
        if (auto *bar = canvas.parentWidget()->findChild<QScrollBar *>(); bar->isVisible()) {
            return slide(*bar);
        }
        [[fallthrough]];
    case 0:
        m_hand.click(canvas, from, {Qt::RightButton, {}});
        return "right click" + at;
    case 1:
        m_hand.doubleClick(canvas, from);
        return "double click" + at;
    case 2:
    case 3: {
        const int notches = oneOf(wheelTurns);
        const bool zooms = upTo(2) == 0;
        m_hand.wheel(canvas, from, notches, zooms ? Qt::ControlModifier : Qt::NoModifier);
        return QString("wheel%1 %2 over%3").arg(zooms ? " with Ctrl" : "").arg(notches).arg(at);
    }
    case 4:
    case 5:
    case 6:
        m_hand.click(canvas, from);
        return "click" + at;
    default:
        break;
    }
    std::vector<QPoint> way = {from};
    QString words = "drag" + at;
    for (int legs = 1 + upTo(4); legs > 0; --legs) {
        way.push_back(anywhere(canvas.rect().adjusted(-reach, -reach, reach, reach)));
        words += ' ' + said(way.back());
    }
    switch (upTo(8)) {
    case 0:
        m_hand.drag(canvas, way, {Qt::MiddleButton, {}});
        return words + " with the middle button";
    case 1:
        m_hand.hold(window, Qt::Key_Space);
        m_hand.drag(canvas, way);
        m_hand.letGo(window, Qt::Key_Space);
        return words + " with Space";
    case 2:
    case 3:
        m_hand.drag(canvas, way, {Qt::LeftButton, Qt::ShiftModifier});
        return words + " with Shift";
    default:
        m_hand.drag(canvas, way);
        return words;
    }
}

QString Monkey::pressKey(QWidget &window) {
    QString key = oneOf(keys);
    if ((key == "Return" || key == "Space") && isLeftAlone(window.focusWidget(), m_walk)) {
        key = "Tab"; // it would press what has the keyboard
    }
    m_hand.press(window, QKeySequence::fromString(key)[0]);
    return "key " + key;
}

// --- Everywhere
// ----------------------------------------------------------------------------------------------------------

/// Confirms the modal window; gives the window a file; or uses what a walk at the photo leaves alone, which is little
/// of a window, so chance alone would seldom meet it.
QString Monkey::goElsewhere(QWidget &window) {
    std::vector<QWidget *> doors;
    for (const auto &group : reachableControls(window)) {
        for (QWidget *control : group) {
            const QString name = control->objectName();
            if (window.isModal() ? name == "cmdYes" || name == "cmdOK" : isLeftAlone(control, Walk::Photo)) {
                doors.push_back(control);
            }
        }
    }
    if (!window.isModal() && !m_files.isEmpty() && upTo(3) == 0) {
        return giveFile(window);
    }
    if (doors.empty()) {
        return pressKey(window);
    }
    return press(*oneOf(doors), doors);
}

/// Drops a file on the window, or copies one in the desktop, to be pasted.
QString Monkey::giveFile(QWidget &window) {
    const QString name = oneOf(m_files);
    if (upTo(2) == 0) {
        copyInDesktop(m_folder + '/' + name);
        return "copy " + name;
    }
    return (dropOn(window, m_folder + '/' + name) ? "drop " : "drop in vain ") + name;
}

/// Chooses one of the files, or a name for a new one beside them.
QString Monkey::answer(QFileDialog &dialog) {
    static constexpr std::array newNames = {"saved.jpg", "saved.png", "saved.gif", "saved.tif", "saved.pdf", "saved"};
    auto *name = dialog.findChild<QLineEdit *>("fileNameEdit");
    const bool isFolder = dialog.fileMode() == QFileDialog::Directory;
    const bool saves = dialog.acceptMode() == QFileDialog::AcceptSave;
    const QString file = isFolder ? QString() : saves ? QString(oneOf(newNames)) : oneOf(m_files);
    if (name == nullptr) {
        m_hand.press(dialog, Qt::Key_Escape);
        return "key Escape";
    }
    m_hand.click(*name, name->rect().center());
    m_hand.press(dialog, selectAll);
    m_hand.type(dialog, m_folder + '/' + file);
    m_hand.press(dialog, Qt::Key_Return);
    return "choose " + file;
}

} // namespace lumora::play
