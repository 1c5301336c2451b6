// A slider whose bar grows from zero: to either side where zero is in the middle.
#pragma once

#include <QSlider>

namespace lumora {

class AdjustSlider : public QSlider {
    Q_OBJECT

  public:
    /// From `least`, 0 or below, to `most`. `usual` is the value of a double click.
    AdjustSlider(const QString &name, int least, int most, int usual, QWidget *parent);

  protected:
    void paintEvent(QPaintEvent *event) override;
    /// Back to the usual value.
    void mouseDoubleClickEvent(QMouseEvent *event) override;

  private:
    qreal centreAt(int value) const;

    int m_usual;
};

} // namespace lumora
