// The main window's own bar: drags the window, minimises it, leaves the editor.
#pragma once

#include "widgets/TitleStrip.h"

namespace lumora {

/// A title strip with cmdMin and cmdExit; a double click on the strip switches between the whole screen and a window.
class MainBar : public TitleStrip {
    Q_OBJECT

  public:
    explicit MainBar(QWidget *parent = nullptr);

  Q_SIGNALS:
    void minimiseWanted();
    void exitWanted();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};

} // namespace lumora
