// pnlProgress: says that something takes a while, shows how far it is, and offers to stop it where that can be done.
#pragma once

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QWidget>

namespace lumora {

class PictureButton;

/// A crayon stroke: as long as what is done, or, while that is not known, one that runs to and fro.
class BusyBar : public QWidget {
    Q_OBJECT

  public:
    explicit BusyBar(QWidget *parent = nullptr);

    /// Per cent, 0 to 100; -1 when it is not known.
    void setPercent(int percent);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    QTimer m_timer;
    int m_step = 0;
    int m_percent = -1;
};

/// A child of the window, hidden at first. The button has the keyboard meanwhile; Esc stops as well.
class ProgressPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ProgressPanel(QWidget *window);

    void begin(bool canBeStopped);
    /// In the middle of the window, or in its lower corner over the tools, where it leaves a picture that is coming in
    /// to be seen.
    enum class Place { Middle, Corner };
    void setPlace(Place place);
    /// Per cent, 0 to 100; -1 when it is not known. 100 or more hides the panel, less shows it.
    void setPercent(int percent);
    /// Gives the keyboard back to who had it.
    void end();

  Q_SIGNALS:
    void stopWanted();

  protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

  private:
    void settle();

    BusyBar *m_bar;
    PictureButton *cmdStop;
    Place m_place = Place::Middle;
    QPointer<QWidget> m_hadKeyboard;
};

} // namespace lumora
