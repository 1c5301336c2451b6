// What darkens a window while another one above it waits for an answer, so that the eye goes to the question.
#pragma once

#include <QWidget>

namespace lumora {

/// A child of the window, over all of it as long as a modal window blocks it. The mouse does not meet it.
class Veil : public QWidget {
    Q_OBJECT

  public:
    explicit Veil(QWidget *window);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace lumora
