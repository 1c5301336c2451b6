// The tool column: the buttons cmdTool1 to cmdTool11 and cmdCropCut in Pager1 on SidePanel1.
#pragma once

#include <QMap>
#include <QWidget>
#include <vector>

class QLabel;

namespace lumora {

class Pager;
class PictureButton;

/// Rows come from ToolTable. Pressing a button emits a signal; the column itself runs no tool.
class ToolColumn : public QWidget {
    Q_OBJECT

  public:
    explicit ToolColumn(QWidget *parent = nullptr);

    /// The buttons of Simple mode, large, each with its caption below it: their places are stretched to the column's
    /// height; those with the same top share that row. A column too low for that has them as in Advanced mode.
    /// `fromLauncher`: the cut-out button is hidden too.
    void setSimple(bool fromLauncher);
    /// Enables all tools.
    void EnableToolbars();
    /// All but the Arrow.
    void DisableToolbars();
    /// Shows that tool as the current one and the others unpressed.
    void setCurrent(const QString &control);
    /// While a tool has the screen to itself its picture and name, "Done" and "Back" are there instead of the buttons.
    void showAlone(const QString &iconName, const QString &name);
    /// The buttons are there again.
    void showButtons();
    PictureButton *button(const QString &control) const { return m_buttons.value(control); }

  Q_SIGNALS:
    void pressed(const QString &control);
    /// "Done" and "Back".
    void doneWanted();
    void backWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    using Row = std::vector<PictureButton *>;
    void makeAlone();
    void placeAll();
    static void placeRow(const Row &row, int top, int height);
    static void enlarge(const Row &row, int height);
    static int buttonWidth(const Row &row);

    QWidget *m_column;
    Pager *m_pager;
    QMap<QString, PictureButton *> m_buttons;
    QWidget *m_alone;                ///< what is there instead of the pager
    PictureButton *m_back = nullptr; ///< in m_alone
    QLabel *m_aloneTool, *m_aloneName;
    bool m_simple = false;
};

} // namespace lumora
