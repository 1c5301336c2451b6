// Lets a bar or panel that floats inside its window be dragged to another place in it.
#pragma once

#include <QMargins>
#include <QObject>
#include <QPoint>

class QWidget;

namespace lumora {

/// A left press on whatever of the panel is no control takes it; it follows the pointer and stays inside its parent.
class PanelDragger : public QObject {
    Q_OBJECT

  public:
    /// For as long as the panel lives. `beyond`: pixels of the panel, its shadow, that may leave the parent.
    static void install(QWidget *panel, const QMargins &beyond);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    PanelDragger(QWidget *panel, const QMargins &beyond);

    QWidget *m_panel;
    QMargins m_beyond;
    QPoint m_grip; ///< from the panel's corner to the pointer
    bool m_held = false;
};

} // namespace lumora
