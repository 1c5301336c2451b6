// The question "Print ?" of Advanced mode: frmPrint prints one copy; frmPrint2 also asks how many, and where on the
// page. Above it is the page as it will come out.
#pragma once

#include "output/print/PrintJob.h"
#include "widgets/BorderlessDialog.h"

class QCheckBox;
class QLabel;
class QVBoxLayout;

namespace lumora {

struct AppContext;
class CopiesBox;
class DeviceLists;
class PagePreview;
class PrinterChoice;

class frmPrint : public BorderlessDialog {
    Q_OBJECT

  public:
    /// For the photo on the table. `helper` as HelperRun takes it.
    frmPrint(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner);

    /// Shows the question, modal over its owner. Returns the job after Yes; a PDF job has no file yet.
    std::optional<PrintJob> ask();
    bool wantsPdf() const;

  protected:
    frmPrint(const QString &name, AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner);

    /// The row above the answers, for further controls.
    QVBoxLayout *questions() const { return m_questions; }
    void showPage();
    virtual PrintLayout layoutWanted() const { return {}; }
    virtual int copies() const { return 1; }

  private:
    void addAnswers();

    AppContext &m_ctx;
    PrinterChoice *m_printer;
    PagePreview *picPrint;
    QLabel *lblPrompt;
    QLabel *lblDevice;
    QVBoxLayout *m_questions;
};

class frmPrint2 : public frmPrint {
    Q_OBJECT

  public:
    frmPrint2(AppContext &ctx, DeviceLists &devices, const QString &helper, QWidget *owner);

  protected:
    PrintLayout layoutWanted() const override;
    int copies() const override;

  private:
    CopiesBox *m_copies;
    QCheckBox *chkCentre;
    QCheckBox *chkFit2Page;
};

} // namespace lumora
