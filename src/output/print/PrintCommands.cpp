#include "output/print/PrintCommands.h"

#include "output/print/frmPrint.h"
#include "output/print/frmSimplePrint.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"

#include <QFileInfo>

namespace lumora {

PrintCommands::PrintCommands(AppContext &ctx, DeviceLists &devices, QWidget *owner, AskForPdf askForPdf, QString helper)
    : QObject(owner), m_ctx(ctx), m_devices(devices), m_owner(owner), m_askForPdf(std::move(askForPdf)),
      m_helper(std::move(helper)), m_lock(ctx) {}

bool PrintCommands::UseAdvancedPrint() const {
    return !m_ctx.flags.SimpleModeOn;
}

void PrintCommands::print() {
    if (!m_ctx.photo.PhotoLoaded() || m_lock.isLocked()) {
        return;
    }
    if (UseAdvancedPrint()) {
        PrintPhotos();
    } else {
        ask<frmSimplePrint>();
    }
}

void PrintCommands::PrintPhotos() {
    if (!m_ctx.photo.PhotoLoaded()) {
        return;
    }
    switch (m_ctx.fields.txtDlgs) {
    case DialogStyle::Own:
        Q_EMIT buttonsToRefresh();
        ask<frmPrint>();
        break;
    case DialogStyle::System:
        Q_EMIT buttonsToRefresh();
        ask<frmPrint2>();
        break;
    case DialogStyle::Other:
        Q_EMIT failed(oddSetting(m_ctx.texts, Setting::DialogStyle));
        break;
    }
}

template <typename Window> void PrintCommands::ask() {
    m_lock.LoadPrintTimer();
    Window window(m_ctx, m_devices, m_helper, m_owner);
    if (const auto job = window.ask()) {
        run(*job, window.wantsPdf());
    }
}

void PrintCommands::run(PrintJob job, bool wantsPdf) {
    if (wantsPdf) {
        job.pdfFile = m_askForPdf();
        if (job.pdfFile.isEmpty()) {
            return;
        }
    }
    PrintResult result = PrintResult::NoMemory;
    m_ctx.tasks.run([&] { result = doPrintJob(job, m_helper); }, Stopping::Offered);
    if (result == PrintResult::Printed || result == PrintResult::Waiting) {
        m_lock.begin();
    }
    say(result, job);
    Q_EMIT buttonsToRefresh();
}

void PrintCommands::say(PrintResult result, const PrintJob &job) {
    const Texts &texts = m_ctx.texts;
    switch (result) {
    case PrintResult::Printed:
        Q_EMIT done(texts.text("PrintSent"));
        break;
    case PrintResult::Waiting:
        Q_EMIT failed(texts.text("PrintWaiting"));
        break;
    case PrintResult::Saved:
        Q_EMIT done(texts.text("StatusSaved") + " " + QFileInfo(job.pdfFile).fileName());
        break;
    case PrintResult::NoPrinter:
        Q_EMIT failed(texts.text("PrintNoPrinter"));
        break;
    case PrintResult::Refused:
        Q_EMIT failed(texts.text("PrintRefused"));
        break;
    case PrintResult::NoAnswer:
        Q_EMIT failed(texts.text("PrintNoAnswer"));
        break;
    case PrintResult::NotWritable:
        Q_EMIT failed(plainWords(texts, PictureError::NotWritable));
        break;
    case PrintResult::NoRoom:
        Q_EMIT failed(plainWords(texts, PictureError::DiskFull));
        break;
    case PrintResult::NoMemory:
        Q_EMIT failed(plainWords(texts, PictureError::NoMemory));
        break;
    case PrintResult::Cancelled:
        break; // the task has said so
    }
}

} // namespace lumora
