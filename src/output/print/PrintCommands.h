// The print button: which window asks, the job in the background, what the status line says, and the pause afterwards.
// Owned by the main window, which connects to the signals.
#pragma once

#include "output/print/PrintJob.h"
#include "output/print/PrintLock.h"

#include <QObject>
#include <functional>

class QWidget;

namespace lumora {

struct AppContext;
class DeviceLists;

class PrintCommands : public QObject {
    Q_OBJECT

  public:
    /// Asks for the path of the PDF file to write; an empty text when the person does not want to.
    using AskForPdf = std::function<QString()>;

    /// `owner` owns the windows. `helper` as HelperRun takes it.
    PrintCommands(AppContext &ctx, DeviceLists &devices, QWidget *owner, AskForPdf askForPdf, QString helper = {});

    /// The print button: the window of the mode. Does nothing without a photo and during the pause.
    void print();
    /// Advanced mode's question: frmPrint with Lumora's own dialogs, frmPrint2 with the desktop's; nothing for any
    /// other style and without a photo.
    void PrintPhotos();
    /// Advanced mode: the questions; Simple mode: frmSimplePrint.
    bool UseAdvancedPrint() const;

    PrintLock &lock() { return m_lock; }

  Q_SIGNALS:
    void buttonsToRefresh();
    /// Words for the status line.
    void done(const QString &message);
    void failed(const QString &message);

  private:
    template <typename Window> void ask();
    void run(PrintJob job, bool wantsPdf);
    void say(PrintResult result, const PrintJob &job);

    AppContext &m_ctx;
    DeviceLists &m_devices;
    QWidget *m_owner;
    AskForPdf m_askForPdf;
    QString m_helper;
    PrintLock m_lock;
};

} // namespace lumora
