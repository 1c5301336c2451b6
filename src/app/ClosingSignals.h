// Ends the program cleanly on SIGTERM, SIGINT and SIGHUP, and when the desktop's session ends: slots connected to
// QCoreApplication::aboutToQuit still run for clean-up. One object, created by runLumora.
#pragma once

#include <QObject>

namespace lumora {

/// Such a signal, and QEvent::Quit, leave the event loop with exit code 0, without asking, once the work that is under
/// way is done. A signal that was ignored when the program started (nohup) stays ignored; the destructor restores the
/// default handling.
class ClosingSignals : public QObject {
    Q_OBJECT

  public:
    explicit ClosingSignals(QObject *parent = nullptr);
    ~ClosingSignals() override;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void end();
};

} // namespace lumora
