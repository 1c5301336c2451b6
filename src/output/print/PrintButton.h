// The print button of the main window, cmdPrint: during the pause after a print it shows how long that still takes.
#pragma once

#include "widgets/PictureButton.h"

namespace lumora {

class PrintButton : public PictureButton {
    Q_OBJECT

  public:
    using PictureButton::PictureButton;

    /// A level that sinks from the top (`left` = `total`) to the bottom, and the time left as a number: minutes and
    /// seconds, or seconds alone. In seconds; `left` 0 shows the button as always.
    void setPause(int left, int total);
    /// The number as it is shown; empty without a pause.
    QString pauseText() const;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    int m_left = 0;
    int m_total = 0;
};

} // namespace lumora
