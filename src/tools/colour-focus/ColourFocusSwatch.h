// The chosen colour of the colour focus, large.
#pragma once

#include <QColor>
#include <QWidget>

namespace lumora {

class ColourFocusSwatch : public QWidget {
    Q_OBJECT

  public:
    explicit ColourFocusSwatch(QWidget *parent);

    /// An invalid colour is none: an empty place with the picker's drawing.
    void setColour(const QColor &colour);
    const QColor &colour() const { return m_colour; }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QColor m_colour;
};

} // namespace lumora
