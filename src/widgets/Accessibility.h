// What a screen reader is told about Lumora's own controls.
#pragma once

#include <QAccessible>

class QWidget;

namespace lumora {

/// Once for the application. Costs nothing as long as no screen reader asks.
///
/// A button's text or tool tip is its name and is not read a second time; one of several that exclude each other is a
/// radio button; a panel has the name of its title; a window of its own is a window, a line between buttons a
/// separator.
void installAccessibility();

/// What kind of control it is said to be, where its class does not tell. Before a screen reader has asked for it, that
/// is where the control is made.
void setAccessibleRole(QWidget &control, QAccessible::Role role);

} // namespace lumora
