// Offers what a crashed program left, once, when the main window has come up. Made by the main window.
#pragma once

#include <QImage>
#include <QObject>
#include <memory>
#include <thread>

class QWidget;

namespace lumora {

struct AppContext;
class Recovery;
class RecoveryFolder;

/// Looks for left copies in a thread of its own, so that the start never waits; with one, asks frmRecover over `owner`.
/// Yes opens it as an unsaved photo (undoable), No removes it, no answer leaves it for the next start.
class RecoveryOffer : public QObject {
    Q_OBJECT

  public:
    RecoveryOffer(AppContext &ctx, Recovery &recovery, QWidget *owner);
    ~RecoveryOffer() override;

  Q_SIGNALS:
    /// The question comes up; what else invites the user is to step back.
    void asking();
    /// The photo is about to come into the canvas, which is to be seen.
    void canvasWanted();
    /// It has come.
    void opened();
    /// It has not, and stays for the next start; plain words for the status line.
    void failed(const QString &text);

  private:
    void search();
    void ask();
    void open();

    AppContext &m_ctx;
    Recovery &m_recovery;
    QWidget *m_owner;
    QImage m_photo;
    std::unique_ptr<RecoveryFolder> m_left;
    std::jthread m_thread;
};

} // namespace lumora
