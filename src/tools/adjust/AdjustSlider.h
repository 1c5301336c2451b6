// A slider with zero in the middle: its bar grows from there to either side.
#pragma once

#include <QSlider>

namespace lumora {

class AdjustSlider : public QSlider {
    Q_OBJECT

  public:
    AdjustSlider(const QString &name, int most, QWidget *parent);

  protected:
    void paintEvent(QPaintEvent *event) override;
    /// Back to the middle.
    void mouseDoubleClickEvent(QMouseEvent *event) override;
};

} // namespace lumora
