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

    /// Not for children: hidden in Simple mode.
    PictureButton *cmdOptions() const { return m_options; }

  Q_SIGNALS:
    void optionsWanted();
    void minimiseWanted();
    void exitWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

  private:
    PictureButton *m_options;
};

} // namespace lumora
