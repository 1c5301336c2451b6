// Ends the program cleanly when the system tells it to (SIGTERM, SIGINT, SIGHUP): whoever listens to
// QCoreApplication::aboutToQuit can still put things in order. One object, made by runLumora.
#pragma once

#include <QObject>

namespace lumora {

/// Such a signal leaves the event loop with exit code 0, without asking. A signal that was ignored when the program
/// started (nohup) stays ignored; afterwards the system's own handling is back.
class ClosingSignals : public QObject {
    Q_OBJECT

  public:
    explicit ClosingSignals(QObject *parent = nullptr);
    ~ClosingSignals() override;
};

} // namespace lumora
