// The main window's own bar: drags the window, minimises it, leaves the editor.
#pragma once

#include "widgets/TitleStrip.h"

namespace lumora {

class PictureButton;

/// A title strip with cmdOptions, cmdMin and cmdExit. Holding its picture down asks for the options too. A double click
/// on the strip switches between the whole screen and a window.
class MainBar : public TitleStrip {
    Q_OBJECT

  public:
    explicit MainBar(QWidget *parent = nullptr);

    PictureButton *cmdOptions() const { return m_options; }
    /// Without the options, which are not for children, and with larger buttons.
    void setSimple(bool simple);
    /// In a low window the buttons are no larger.
    void fitInto(int windowHeight);

  Q_SIGNALS:
    void optionsWanted();
    void minimiseWanted();
    void exitWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

  private:
    PictureButton *m_options;
    bool m_simple = false;
};

} // namespace lumora
