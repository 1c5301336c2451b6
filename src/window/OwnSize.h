// The size of the main window while it is not maximised, from one start to the next.
#pragma once

#include <QObject>
#include <QSize>

class QScreen;
class QWidget;

namespace lumora {

class Settings;

class OwnSize : public QObject {
    Q_OBJECT

  public:
    /// Belongs to the window and writes its last size at the end.
    OwnSize(QWidget *window, Settings &settings);
    ~OwnSize() override;

    /// The window will be maximised there; what it is restored to is the size that it had last and at most nine tenths
    /// of the screen. Before it is shown.
    void openOn(const QScreen *screen);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    QWidget *m_window;
    Settings &m_settings;
    QSize m_size; ///< of the window when it was last not maximised; empty: as the settings say
};

} // namespace lumora
