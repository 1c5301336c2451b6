// pnlProgress: says that something takes a while, with a bar that keeps moving.
#pragma once

#include <QLabel>
#include <QTimer>
#include <QWidget>

namespace lumora {

/// A bar without an end: a crayon stroke that runs to and fro.
class BusyBar : public QWidget {
    Q_OBJECT

  public:
    explicit BusyBar(QWidget *parent = nullptr);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    QTimer m_timer;
    int m_step = 0;
};

/// A child of the window, in its middle while shown; hidden at first.
class ProgressPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ProgressPanel(QWidget *window);

    void begin();
    void end() { hide(); }

  protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace lumora
