// Finding the controls that a script names, and telling whether a person could reach them.
#pragma once

#include <QList>
#include <QPoint>
#include <QString>

class QWidget;

namespace lumora::play {

/// A control, or why there is none.
struct FoundControl {
    QWidget *widget = nullptr;
    QString problem;
};

/// The windows that are open, oldest first; menus and other pop-ups too, tool tips not.
QList<QWidget *> openWindows();

/// What a window or control is called: its object name, its class where it has none.
QString nameOf(const QWidget &widget);

/// The control of that name: "cmdOpen", or "frmSave.cmdYes" with each part inside the one before. A part is an object
/// name, a value of the dynamic property "key", a class name, or what is written on a button; in this order. An open
/// pop-up is searched first, then the active modal window, then the active window, then the others. A visible control
/// is preferred to a hidden one.
FoundControl findControl(const QString &name);

/// The window that keys go to: an open pop-up, the modal window, the one with the keyboard, the one in front.
QWidget *keyboardWindow();

/// Gives the window the keyboard: where there is no window manager nobody else hands it to a window that is clicked.
void activate(const QWidget &window);

/// Why a person could not click this control now: "it is hidden", "it is disabled", "the window frmSave is in front of
/// it", ...; empty when they could. Scrolls the areas it is in so that it comes into view.
QString obstacle(QWidget &widget);

/// A point of the control, in its own pixels, at which a click reaches it; its centre where that does.
/// False when every point is covered by something else.
bool findClickPoint(const QWidget &widget, QPoint &point);

/// What a control says: the text of labels, buttons, fields and lists (of the current row), the value of sliders, the
/// title of a window. With a property, that property as text ("true" and "false" for yes and no).
QString valueOf(const QWidget &widget, const QString &property = {});

/// A text without the marks of shortcut letters.
QString withoutMnemonic(QString text);

} // namespace lumora::play
