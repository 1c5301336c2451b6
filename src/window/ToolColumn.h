// The tool column: the buttons cmdTool1 to cmdTool11 and cmdCropCut in Pager1 on SidePanel1.
#pragma once

#include <QMap>
#include <QWidget>

namespace lumora {

class Pager;
class PictureButton;

/// Rows come from ToolTable. Pressing a button emits a signal; the column itself runs no tool.
class ToolColumn : public QWidget {
    Q_OBJECT

  public:
    explicit ToolColumn(QWidget *parent = nullptr);

    /// The buttons of Simple mode at their places; those with the same top share that row.
    /// `fromLauncher`: the cut-out button is hidden too.
    void setSimple(bool fromLauncher);
    /// Enables all tools.
    void EnableToolbars();
    /// All but the Arrow.
    void DisableToolbars();
    /// Shows that tool as the current one and the others unpressed.
    void setCurrent(const QString &control);
    PictureButton *button(const QString &control) const { return m_buttons.value(control); }

  Q_SIGNALS:
    void pressed(const QString &control);

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    void placeAll();

    QWidget *m_column;
    Pager *m_pager;
    QMap<QString, PictureButton *> m_buttons;
    bool m_simple = false;
};

} // namespace lumora
