// A second use of a button: holding it down. The command row's undo button has one.
#pragma once

#include <QObject>
#include <QTimer>

class QAbstractButton;

namespace lumora {

/// Belongs to the button. A press that is held for `time` is no click any more, wherever it is let go.
class LongPress : public QObject {
    Q_OBJECT

  public:
    static constexpr int time = 500; ///< milliseconds

    explicit LongPress(QAbstractButton *button);

  Q_SIGNALS:
    /// The button has been held down that long, and still is.
    void held();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    QAbstractButton *m_button;
    QTimer m_timer;
    bool m_held = false;
};

} // namespace lumora
