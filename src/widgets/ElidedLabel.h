// A label of one line that shortens what does not fit, so that a long path never widens its window.
#pragma once

#include <QLabel>

namespace lumora {

/// text() stays whole; the tool tip shows it whole where it is shortened on the screen.
class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    /// Paints `text` shortened into `place`.
    void paintText(QPainter &painter, const QRect &place, const QString &text) const;

  private:
    Qt::TextElideMode m_mode;
};

} // namespace lumora
