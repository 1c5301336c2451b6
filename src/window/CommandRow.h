// The command row of the main window: the four big buttons, the zoom, and Toolbar1.
#pragma once

#include <QWidget>

class QHBoxLayout;

namespace lumora {

class CommandBar;
class PictureButton;
class PrintButton;

/// In a narrow window its buttons stand closer and, if need be, become narrower.
class CommandRow : public QWidget {
    Q_OBJECT

  public:
    static constexpr int emailButton = 10; ///< its number in Toolbar1

    explicit CommandRow(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

    PictureButton *cmdOpen() const { return m_open; }
    PictureButton *cmdSave() const { return m_save; }
    PictureButton *cmdScan() const { return m_scan; }
    PrintButton *cmdPrint() const { return m_print; }
    PictureButton *cmdSetZoom() const { return m_setZoom; }
    CommandBar *Toolbar1() const { return m_toolbar; }

    /// Larger buttons, as far as the window is wide enough.
    void setSimple(bool simple);

    /// The disk moves once: the photo is saved. Not where the desktop asks for less motion.
    void showSaved();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

  private:
    PictureButton *addButton(const char *name, const char *icon);
    void add(PictureButton *button, const char *name);
    struct Measures;
    const Measures &measures() const;
    void settle();
    void setTight(int buttonWidth);

    QHBoxLayout *m_row;
    PictureButton *m_open, *m_save, *m_scan, *m_setZoom;
    PrintButton *m_print;
    CommandBar *m_toolbar;
    bool m_simple = false;
    int m_tight = 0; ///< width of each button in pixels where the window is too narrow for the usual row, else 0
};

} // namespace lumora
