// Offers to recover the photo of a crashed session, once, after the main window is shown. Created by the main window.
#pragma once

#include "document/RecoveryCopy.h"

#include <QObject>
#include <memory>
#include <thread>

class QWidget;

namespace lumora {

struct AppContext;
class Recovery;
class RecoveryFolder;

/// Looks for recovery copies in its own thread, so that the start is not delayed; when there is one, asks frmRecover
/// over `owner`. Yes opens it as an unsaved photo (undoable), No removes it, cancelling keeps it for the next start.
/// Copies that cannot be read are put aside, and the user is told.
class RecoveryOffer : public QObject {
    Q_OBJECT

  public:
    RecoveryOffer(AppContext &ctx, Recovery &recovery, QWidget *owner);
    ~RecoveryOffer() override;

  Q_SIGNALS:
    /// The question is about to be shown; other hints should be hidden.
    void asking();
    /// The photo is about to be loaded; the canvas should be shown.
    void canvasWanted();
    /// The photo was loaded.
    void opened();
    /// Loading failed, and the copy is kept for the next start; a message for the status line.
    void failed(const QString &text);

  private:
    void search(const QString &folder);
    void ask();
    void tellDamaged();
    void whenVisible(void (RecoveryOffer::*what)());
    void open();

    AppContext &m_ctx;
    Recovery &m_recovery;
    QWidget *m_owner;
    KeptPhoto m_photo;
    int m_damaged = 0; ///< copies that could not be read
    std::unique_ptr<RecoveryFolder> m_left;
    std::jthread m_thread;
};

} // namespace lumora
