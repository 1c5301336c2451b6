// The six floating tool bars FT1 to FT6 of the main window, made from the table in FloatingBars.
#pragma once

#include <QMap>
#include <QObject>
#include <QString>

class QWidget;

namespace lumora {

class FloatingToolbar;

/// At most one of them is open. Forwards clicks; runs no tool itself.
class FloatingBarSet : public QObject {
    Q_OBJECT

  public:
    explicit FloatingBarSet(QWidget *window);

    FloatingToolbar *bar(const QString &name) const { return m_bars.value(name); }
    /// The bar that belongs to that tool button, or null.
    FloatingToolbar *barOfTool(const QString &control) const;
    /// The tool button that the open bar belongs to; empty while none is open.
    QString openTool() const;
    /// The widths in Simple mode.
    void setSimple(bool fromLauncher);
    void HideFloatingToolbars();
    bool isAnyOpen() const;
    /// Whether that is a bar or a part of one.
    bool holds(const QWidget *part) const;

  Q_SIGNALS:
    /// An item of the bar that belongs to that tool button.
    void itemClicked(const QString &control, const QString &key);
    /// The pointer rests on that item, or, with an empty key, on none of that bar any more.
    void itemPointed(const QString &control, const QString &key);
    /// A bar was closed, by whomever.
    void barHidden();

  private:
    QMap<QString, FloatingToolbar *> m_bars;
};

} // namespace lumora
